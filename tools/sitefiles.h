#pragma once

#include "diagnostics.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QUrl>

#include <vector>

namespace helpbuild {

class DocSite;
struct PlannedTopic;

/// Writes the files of a web site: images, style sheets, scripts and whatever else pages refer to. Each keeps
/// its name and stays beside the pages that it lay beside.
class SiteFiles
{
public:
    /// `targetFolder` holds the pages, at the paths of their topics.
    SiteFiles(const DocSite& docSite, const std::vector<PlannedTopic>& topics, const QString& targetFolder,
              Diagnostics& messages);

    /// Place in the site of the file that stands at `path` in the documentation, with all that it refers to;
    /// empty when it can't be read.
    QString Take(const QString& path);

    /// The same for a script of a page at `base`, which the names in it are relative to.
    QString TakeScript(const QString& path, const QUrl& base);

    /// Takes the files that a script names. `base` is what its names are relative to.
    void TakeNamedIn(const QByteArray& script, const QUrl& base);

    /// The style sheet as it stands at `place` in the site. `base` is what its references were relative to.
    QString Sheet(const QString& text, const QUrl& base, const QString& place, const SourcePlace& source);

    void Write(const QString& place, const QByteArray& data);

    /// False when a file could not be written.
    bool IsSound() const { return sound; }

    /// Files taken.
    int Count() const { return count; }

private:
    QString PlaceOf(const QString& path);
    void WriteContent(const QString& path, const QString& place, const QByteArray& data);

    const DocSite& site;
    QString folder;
    Diagnostics& diagnostics;
    QHash<QString, QString> folders; ///< Of pages: in the documentation, and in the site.
    QHash<QString, QString> places;  ///< By path in the documentation.
    QSet<QString> taken;             ///< Places, in lower case.
    QSet<QString> scanned;           ///< Scripts, with what their names are relative to.
    int count = 0;
    bool sound = true;
};

} // namespace helpbuild
