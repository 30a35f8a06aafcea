#pragma once

#include "addresstable.h"
#include "diagnostics.h"
#include "pagescan.h"
#include "sitefolder.h"
#include "topicplan.h"

#include <QString>

#include <memory>
#include <vector>

namespace helpbuild {

class DocSite;
class SiteFiles;

/// Writes topics as a static web site, and the tables that tell where in it each topic is.
class SiteWriter
{
public:
    /// `findings` takes what the pages give to report, `messages` what ends the build. The topics may still
    /// get their titles before the end.
    SiteWriter(const DocSite& docSite, const std::vector<PlannedTopic>& plannedTopics,
               const SiteFacts& siteFacts, const QString& folderOfSite, Diagnostics& messages,
               Diagnostics& findings);
    ~SiteWriter();

    bool Open();

    /// `copies` are the numbers of further entries of the page, `file` is its file for messages.
    bool WritePage(const PlannedTopic& topic, const std::vector<int>& copies, const HtmlDocument& document,
                   const PageParts& parts, const QString& file);

    /// A page that was made for an entry without one.
    bool WriteMadePage(const PlannedTopic& topic, const QString& html);

    /// What a link in the page of `from` says to lead to `to`.
    QString Link(const PlannedTopic& from, const PlannedTopic& to) const;

    /// Writes the home page and the tables, when all topics have their titles.
    bool WriteTables();

    /// Brings all into place.
    bool Install() { return folder.Install(); }

    /// What was written, in one line.
    QString Result() const;

private:
    QByteArray HomePage() const;
    void AddContents(const std::vector<int>& ids, QString& html) const;
    QString ContentsLink(const PlannedTopic& topic) const;
    bool WriteFile(const QString& path, const QByteArray& data);
    bool CheckWritten();
    const PlannedTopic& TopicAt(int id) const { return topics[static_cast<std::size_t>(id) - 1]; }

    const DocSite& site;
    const std::vector<PlannedTopic>& topics;
    SiteFacts facts;
    QString query;
    Diagnostics& diagnostics;
    Diagnostics& pageFindings;
    SiteFolder folder;
    std::unique_ptr<SiteFiles> files;
};

} // namespace helpbuild
