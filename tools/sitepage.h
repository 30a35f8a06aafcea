#pragma once

#include "diagnostics.h"
#include "pagescan.h"
#include "textedit.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace helpbuild {

class DocSite;
class SiteFiles;

/// What the pages of a web site share.
struct SiteParts
{
    const DocSite& site;
    SiteFiles& files;
    Diagnostics& diagnostics;
    QString query; ///< Behind the path in links between pages.
};

/// Writes a page as it stands in a web site: the author's, with links that lead to where pages and files are
/// now.
class SitePage
{
public:
    /// `path` is the page's place in the documentation, `file` its file for messages.
    SitePage(const HtmlDocument& htmlDocument, const PageParts& pageParts, const QString& path,
             const QString& file, const SiteParts& siteParts);

    /// The page, with the files that it refers to taken along.
    QByteArray Write();

private:
    void WriteRedirects();
    void WriteScripts();
    void WriteSheets();
    void WriteReference(const PageReference& reference);
    void WriteLink(const PageReference& reference);
    void WriteFile(const PageReference& reference);
    void WriteInlineStyle(const PageReference& reference);
    QString TopicLink(const QString& path) const;
    QString FileLink(const QString& path);
    void ReplaceReference(const TextRange& attribute, const QString& old, const QString& reference);
    void Report(Finding finding, int position, const QString& text);
    SourcePlace PlaceAt(int position) const;

    const HtmlDocument& document;
    const PageParts& parts;
    const SiteParts shared; // A copy: callers pass a temporary of references.
    QString pagePath;
    QString pageFile;
    QString place; ///< Of the page in the site.
    QUrl base;
    EditList edits;
};

} // namespace helpbuild
