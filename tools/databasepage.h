#pragma once

#include "diagnostics.h"
#include "pagescan.h"
#include "textedit.h"

#include <QStringList>
#include <QUrl>

#include <vector>

namespace helpbuild {

class DocSite;
class ImageStore;
class ScriptStore;
class SheetStore;

/// What the pages of a database share.
struct SharedParts
{
    const DocSite& site;
    ImageStore& images;
    SheetStore& sheets;
    ScriptStore& scripts;
    Diagnostics& diagnostics;
};

/// Writes a page in the form in which the database holds it: one that stays itself under the viewer's work on
/// the text, and in which nothing refers to where the page once stood.
class DatabasePage
{
public:
    /// `path` is the page's place in the documentation, `file` its file for messages.
    DatabasePage(const HtmlDocument& htmlDocument, const PageParts& pageParts, const QString& path,
                 const QString& file, const SharedParts& sharedParts);

    /// False, with the error in the diagnostics, when an image can't be read.
    bool Write();

    const QString& Html() const { return html; }
    const QStringList& ImageKeys() const { return imageKeys; }

private:
    void WriteFrame();
    void WriteScripts();
    bool TakeScript(const PageScript& script, QByteArray& block);
    void WriteSheets();
    void WriteLinkedSheet(const PageSheet& sheet);
    void WritePageSheet(const PageSheet& sheet);
    bool HasFileReferences(const QString& sheet) const;
    bool WriteReference(const PageReference& reference);
    void WriteLink(const PageReference& reference);
    void WriteExternalLink(const PageReference& reference, const QString& address);
    bool WriteImage(const PageReference& reference);
    bool WriteInlineStyle(const PageReference& reference);
    void WriteForm(const PageReference& reference);
    void WriteDeadReference(const PageReference& reference, const char* what);
    bool ImageText(const QString& value, int position, QString& text);

    bool IsDropped(int position) const;
    void ReplaceAttribute(const PageReference& reference, const QString& value);
    void RemoveAttribute(const TextRange& attribute);
    QByteArray AttributeName(const TextRange& name) const;
    void Report(Finding finding, int position, const QString& text);
    int LineAt(int position) const;

    const HtmlDocument& document;
    const PageParts& parts;
    const SharedParts shared; // A copy: callers pass a temporary of references.
    QString pagePath;
    QString pageFile;
    QUrl base;
    EditList edits;
    int hrefLimit = 0; ///< In the unchanged text: before it no other href may look like a style sheet's.
    bool scriptsNameSheets = false;
    QString html;
    QStringList imageKeys;
    mutable std::vector<int> lineStarts;
};

} // namespace helpbuild
