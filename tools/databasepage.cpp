#include "databasepage.h"

#include "cssprep.h"
#include "docsite.h"
#include "imagestore.h"
#include "pageedit.h"
#include "scriptstore.h"
#include "sheetstore.h"
#include "textguard.h"

#include <algorithm>

namespace helpbuild {
namespace {

QString Quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

} // namespace

DatabasePage::DatabasePage(const HtmlDocument& htmlDocument, const PageParts& pageParts, const QString& path,
                           const QString& file, const SharedParts& sharedParts)
    : document(htmlDocument)
    , parts(pageParts)
    , shared(sharedParts)
    , pagePath(path)
    , pageFile(file)
    , base(DocSite::AddressOf(path))
{
    if (!parts.base.isEmpty())
        base = base.resolved(QUrl(parts.base));
}

bool DatabasePage::Write()
{
    WriteFrame();
    WriteScripts();
    WriteSheets();
    for (const PageReference& reference : parts.references) {
        if (!IsDropped(reference.tag.begin) && !WriteReference(reference))
            return false;
    }
    for (const TextRange& name : parts.otherHrefs) {
        if (name.begin < hrefLimit)
            edits.Insert(name.end, " ");
    }
    DecodeLetters(document.Text(), parts.rawText, edits);

    const EditedText edited = edits.Apply(document.Text(), parts.rawText);
    int limit = 0;
    for (const MarkedRange& mark : edited.marks) {
        if (mark.mark == Mark::SheetLink || scriptsNameSheets)
            limit = std::max(limit, mark.range.end);
    }
    html = QString::fromUtf8(GuardPage(edited, limit));
    return true;
}

// The tags that the search and the viewer's files rely on, and the parts that go.
void DatabasePage::WriteFrame()
{
    for (const TextRange& range : parts.dropped)
        edits.Remove(range);
    DeclareUtf8(document, parts, edits);
    if (!parts.frames && !parts.bodyTag)
        edits.Insert(parts.bodyStart, "<body>");
    if (parts.frames)
        Report(Finding::LeftOut, 0, QStringLiteral("the page is made of frames"));

    for (std::size_t i = 0; i < parts.redirects.size(); ++i) {
        edits.Remove(parts.redirects[i]);
        const QString reference = parts.redirectTargets.at(static_cast<int>(i));
        const Target target = shared.site.Resolve(reference, base, pagePath);
        if (reference.isEmpty())
            continue;
        Report(Finding::LeftOut, parts.redirects[i].begin,
               QLatin1String("the page leads on to ") + Quoted(reference) + QLatin1String(" by itself"));
        if (target.kind == Target::Topic)
            edits.Insert(parts.bodyStart,
                         "<p><a href =" + AttributeValue(shared.site.TopicLink(target.path)) + '>' +
                             reference.toHtmlEscaped().toUtf8() + "</a></p>");
    }
}

// All scripts go to one place, since the viewer takes everything between the first and the last for
// scripts. It is the place of the last: each finds above it what it found before, and more.
void DatabasePage::WriteScripts()
{
    QByteArray block;
    int place = 0;
    bool deferred = false;
    for (const PageScript& script : parts.scripts) {
        if (IsDropped(script.element.begin))
            continue;
        edits.Remove(script.element);
        if (!TakeScript(script, block))
            continue;
        place = std::max(place, script.element.begin);
        deferred = deferred || script.deferred;
    }
    if (deferred)
        place = std::max(place, parts.bodyEnd);
    if (!block.isEmpty()) {
        edits.Insert(place, block, Mark::Scripts);
        if (scriptsNameSheets)
            hrefLimit = place;
    }
    if (!parts.frames && !parts.bodyEndTag)
        edits.Insert(parts.bodyEnd, "</body>");
}

bool DatabasePage::TakeScript(const PageScript& script, QByteArray& block)
{
    const int position = script.element.begin;
    if (!script.runs) {
        if (!script.data)
            Report(Finding::LeftOut, position,
                   QStringLiteral("a script of a kind that the viewer can't carry"));
        return false;
    }
    ScriptStore::Script stored;
    if (script.reference.isEmpty()) {
        if (script.text.trimmed().isEmpty())
            return false;
        stored = shared.scripts.AddText(script.text, base);
    } else {
        const Target target = shared.site.Resolve(script.reference, base, pagePath);
        if (target.kind == Target::External || target.kind == Target::Special) {
            Report(Finding::LeftOut, position,
                   QLatin1String("the script ") + Quoted(script.reference) +
                       QLatin1String(" is on a server"));
            return false;
        }
        if (target.kind == Target::File)
            stored = shared.scripts.AddFile(target.path, base);
        if (stored.fileName.isEmpty()) {
            Report(Finding::MissingFile, position,
                   QLatin1String("the script ") + Quoted(script.reference) + QLatin1String(" doesn't exist"));
            return false;
        }
    }
    if (stored.writesInPlace)
        Report(Finding::LeftOut, position,
               QStringLiteral("a script writes into the page, and may do so at another place"));
    block += "<script src=\"scripts/" + stored.fileName.toUtf8() + "\"></script>";
    scriptsNameSheets = scriptsNameSheets || stored.namesSheets;
    for (const QString& key : qAsConst(stored.imageKeys)) {
        if (!imageKeys.contains(key))
            imageKeys << key;
    }
    return true;
}

void DatabasePage::WriteSheets()
{
    for (const PageSheet& sheet : parts.sheets) {
        if (IsDropped(sheet.element.begin))
            continue;
        if (sheet.linked)
            WriteLinkedSheet(sheet);
        else if (HasFileReferences(sheet.value))
            WritePageSheet(sheet);
    }
}

void DatabasePage::WriteLinkedSheet(const PageSheet& sheet)
{
    const Target target = shared.site.Resolve(sheet.value, base, pagePath);
    if (target.kind == Target::Special) {
        // "href =", so that the viewer doesn't take it for the beginning of a sheet's name.
        edits.Replace(sheet.attribute, "href =" + AttributeValue(sheet.value));
        return;
    }
    if (target.kind == Target::External) {
        // Without a network the page would wait for it.
        Report(Finding::LeftOut, sheet.element.begin,
               QLatin1String("the style sheet ") + Quoted(sheet.value) + QLatin1String(" is on a server"));
        edits.Remove(sheet.element);
        return;
    }
    const QString name = target.kind == Target::File ? shared.sheets.Add(target.path) : QString();
    if (name.isEmpty()) {
        Report(Finding::MissingFile, sheet.element.begin,
               QLatin1String("the style sheet ") + Quoted(sheet.value) + QLatin1String(" doesn't exist"));
        edits.Remove(sheet.element);
        return;
    }
    edits.Replace(sheet.attribute, "href=\"styles/" + name.toUtf8() + '"', Mark::SheetLink);
    hrefLimit = std::max(hrefLimit, sheet.attribute.begin);
}

// A sheet of the page that refers to files becomes a file itself, beside them.
void DatabasePage::WritePageSheet(const PageSheet& sheet)
{
    const QString name = shared.sheets.AddText(sheet.value, base, {pageFile, LineAt(sheet.content.begin)});
    QByteArray link = "<link rel=\"stylesheet\"";
    if (!sheet.media.isEmpty())
        link += " media=" + AttributeValue(sheet.media);
    link += " href=\"styles/" + name.toUtf8() + "\">";
    edits.Replace(sheet.element, link, Mark::SheetLink);
    hrefLimit = std::max(hrefLimit, sheet.element.begin);
}

bool DatabasePage::HasFileReferences(const QString& sheet) const
{
    const std::vector<CssReference> references = ScanStyleSheet(sheet);
    return std::any_of(references.begin(), references.end(), [this](const CssReference& reference) {
        const Target target = shared.site.Resolve(reference.value, base, QString());
        return reference.isImport || target.kind == Target::File || target.kind == Target::Topic;
    });
}

bool DatabasePage::IsDropped(int position) const
{
    return std::any_of(parts.dropped.begin(), parts.dropped.end(),
                       [position](const TextRange& range) { return range.Contains(position); });
}

void DatabasePage::ReplaceAttribute(const PageReference& reference, const QString& value)
{
    edits.Replace(reference.attribute, AttributeName(reference.name) + '=' + AttributeValue(value));
}

void DatabasePage::RemoveAttribute(const TextRange& attribute)
{
    helpbuild::RemoveAttribute(document, attribute, edits);
}

QByteArray DatabasePage::AttributeName(const TextRange& name) const
{
    const QByteArray text = document.Text().mid(name.begin, name.end - name.begin);
    const bool early = name.begin < hrefLimit && text.toLower().endsWith("href");
    return early ? QByteArray(text + ' ') : text;
}

void DatabasePage::Report(Finding finding, int position, const QString& text)
{
    shared.diagnostics.Report(finding, {pageFile, LineAt(position)}, text);
}

int DatabasePage::LineAt(int position) const
{
    if (lineStarts.empty()) {
        lineStarts.push_back(0);
        for (int i = document.Text().indexOf('\n'); i >= 0; i = document.Text().indexOf('\n', i + 1))
            lineStarts.push_back(i + 1);
    }
    const auto next = std::upper_bound(lineStarts.begin(), lineStarts.end(), position);
    return static_cast<int>(next - lineStarts.begin());
}

} // namespace helpbuild
