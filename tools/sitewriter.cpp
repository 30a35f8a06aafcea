#include "sitewriter.h"

#include "docsite.h"
#include "sitefiles.h"
#include "sitepage.h"
#include "weblink.h"

#include <QDir>
#include <QFile>

namespace helpbuild {

SiteWriter::SiteWriter(const DocSite& docSite, const std::vector<PlannedTopic>& plannedTopics,
                       const SiteFacts& siteFacts, const QString& folderOfSite, Diagnostics& messages,
                       Diagnostics& findings)
    : site(docSite)
    , topics(plannedTopics)
    , facts(siteFacts)
    , query(LinkQuery(siteFacts.language))
    , diagnostics(messages)
    , pageFindings(findings)
    , folder(folderOfSite, siteFacts.language, messages)
{
}

SiteWriter::~SiteWriter() = default;

bool SiteWriter::Open()
{
    if (!folder.Open())
        return false;
    files = std::make_unique<SiteFiles>(site, topics, folder.PageFolder(), pageFindings);
    return true;
}

bool SiteWriter::WritePage(const PlannedTopic& topic, const std::vector<int>& copies,
                           const HtmlDocument& document, const PageParts& parts, const QString& file)
{
    const QByteArray html =
        SitePage(document, parts, topic.page, file, {site, *files, pageFindings, query}).Write();
    files->Write(topic.filePath, html);
    // Further entries have paths of their own, in the same folder.
    for (const int id : copies)
        files->Write(TopicAt(id).filePath, html);
    return CheckWritten();
}

bool SiteWriter::WriteMadePage(const PlannedTopic& topic, const QString& html)
{
    files->Write(topic.filePath, html.toUtf8());
    return CheckWritten();
}

QString SiteWriter::Link(const PlannedTopic& from, const PlannedTopic& to) const
{
    return RelativeLink(from.filePath, to.filePath) + query;
}

bool SiteWriter::WriteTables()
{
    return WriteFile(folder.HomeFile(), HomePage()) &&
           WriteFile(folder.TableFile(), AddressTable(facts, topics)) &&
           WriteFile(folder.MapFile(), AddressMap(facts, topics));
}

QString SiteWriter::Result() const
{
    return QStringLiteral("%1: %2 pages, %3 files")
        .arg(QDir::toNativeSeparators(folder.FinalFolder()))
        .arg(topics.size())
        .arg(files->Count());
}

QByteArray SiteWriter::HomePage() const
{
    const PlannedTopic& home = topics.front();
    const QString title = home.title.toHtmlEscaped();
    QString html = QLatin1String("<!DOCTYPE html>\n<html lang=\"") + facts.language +
                   QLatin1String("\">\n<head>\n<meta charset=\"utf-8\">\n<title>") + title +
                   QLatin1String("</title>\n</head>\n<body>\n<h1><a href=\"") + ContentsLink(home) +
                   QLatin1String("\">") + title + QLatin1String("</a></h1>\n");
    AddContents(home.children, html);
    html += QLatin1String("</body>\n</html>\n");
    return html.toUtf8();
}

void SiteWriter::AddContents(const std::vector<int>& ids, QString& html) const
{
    if (ids.empty())
        return;
    html += QLatin1String("<ul>\n");
    for (const int id : ids) {
        const PlannedTopic& topic = TopicAt(id);
        html += QLatin1String("<li><a href=\"") + ContentsLink(topic) + QLatin1String("\">") +
                topic.title.toHtmlEscaped() + QLatin1String("</a>\n");
        AddContents(topic.children, html);
        html += QLatin1String("</li>\n");
    }
    html += QLatin1String("</ul>\n");
}

QString SiteWriter::ContentsLink(const PlannedTopic& topic) const
{
    const QString link = QLatin1String("OriginalData/") + EncodedPath(topic.filePath) + query;
    return link.toHtmlEscaped();
}

bool SiteWriter::WriteFile(const QString& path, const QByteArray& data)
{
    QFile file(path);
    return (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.flush()) ||
           diagnostics.Fail({path, 0}, QLatin1String("can't be written to: ") + file.errorString());
}

bool SiteWriter::CheckWritten()
{
    return files->IsSound() || diagnostics.Fail({folder.Folder(), 0}, QStringLiteral("can't be written to"));
}

} // namespace helpbuild
