#include "pagebuilder.h"

#include "multireplace.h"

#include <QVector>

#include <array>
#include <utility>

namespace {

struct Span
{
    int at = -1;
    int size = 0;

    bool Found() const { return at >= 0; }
    int End() const { return at + size; }
};

// The marks below are ASCII, in lower case, and hold a character that is no letter. Looking for that one
// first is what makes the scan fast. Letters are compared as a case-insensitive QRegExp does, which is not
// how QString compares: it takes the long s for an s.
bool StandsAt(const QString& text, int at, QLatin1String mark)
{
    if (at < 0 || at + mark.size() > text.size())
        return false;
    for (int i = 0; i < mark.size(); ++i) {
        const QChar c = text.at(at + i);
        if (c != mark.at(i) && c.toLower() != mark.at(i))
            return false;
    }
    return true;
}

int AnchorOf(QLatin1String mark)
{
    int anchor = 0;
    while (mark.at(anchor) >= QLatin1Char('a') && mark.at(anchor) <= QLatin1Char('z'))
        ++anchor;
    return anchor;
}

int FirstMark(const QString& text, QLatin1String mark, int from)
{
    const int anchor = AnchorOf(mark);
    int found = text.indexOf(mark.at(anchor), from + anchor);
    while (found >= 0 && !StandsAt(text, found - anchor, mark))
        found = text.indexOf(mark.at(anchor), found + 1);
    return found < 0 ? -1 : found - anchor;
}

int LastMark(const QString& text, QLatin1String mark, int notBefore)
{
    const int anchor = AnchorOf(mark);
    for (int at = text.size() - mark.size(); at >= notBefore; --at) {
        if (text.at(at + anchor) == mark.at(anchor) && StandsAt(text, at, mark))
            return at;
    }
    return -1;
}

/// What the greedy expression "opening.*closing" matches: from the first opening to the last closing.
Span Longest(const QString& text, QLatin1String opening, QLatin1String closing)
{
    const int first = FirstMark(text, opening, 0);
    const int last = first < 0 ? -1 : LastMark(text, closing, first + opening.size());
    return last < 0 ? Span() : Span{first, last + closing.size() - first};
}

/// What the minimal expression matches: from the next opening to the closing after it.
Span Shortest(const QString& text, QLatin1String opening, QLatin1String closing, int from)
{
    const int first = FirstMark(text, opening, from);
    const int next = first < 0 ? -1 : FirstMark(text, closing, first + opening.size());
    return next < 0 ? Span() : Span{first, next + closing.size() - first};
}

const QLatin1String kScriptOpening("<script");
const QLatin1String kScriptClosing("</script>");
const QLatin1String kScriptDir("scripts/");
const QLatin1String kScriptEnding(".js");
const QLatin1String kLinkOpening("href=\"");
const QLatin1String kSheetClosing(".css\"");

QVector<QString> ScriptElements(const QString& run)
{
    QVector<QString> tags;
    Span tag = Shortest(run, kScriptOpening, kScriptClosing, 0);
    while (tag.Found()) {
        tags.append(run.mid(tag.at, tag.size));
        tag = Shortest(run, kScriptOpening, kScriptClosing, tag.End());
    }
    return tags;
}

QVector<QString> ScriptFiles(const QString& run)
{
    QVector<QString> files;
    Span file = Shortest(run, kScriptDir, kScriptEnding, 0);
    while (file.Found()) {
        const QString name = run.mid(file.at + kScriptDir.size(), file.size - kScriptDir.size());
        files.append(name);
        file = Shortest(run, kScriptDir, kScriptEnding, file.at + name.size());
    }
    return files;
}

const JsFileContent* FindScript(const QList<JsFileContent>& scripts, const QString& name)
{
    for (const JsFileContent& script : scripts) {
        if (script.FileName == name)
            return &script;
    }
    return nullptr;
}

QString InlineElement(const JsFileContent& script)
{
    return QLatin1String("\r\n<Script>") + script.Content + QLatin1String("</Script>");
}

QString JoinScripts(const QVector<QString>& files, const QList<JsFileContent>& scripts)
{
    QString inlined;
    for (const QString& name : files) {
        if (const JsFileContent* script = FindScript(scripts, name))
            inlined += InlineElement(*script);
    }
    return inlined;
}

// Scripts add up: the element of each file gets all scripts so far.
QString FillElements(QString run, const QVector<QString>& tags, const QVector<QString>& files,
                     const QList<JsFileContent>& scripts, const QString& page)
{
    QString inlined;
    for (int i = 0; i < files.size(); ++i) {
        const JsFileContent* script = FindScript(scripts, files.at(i));
        if (!script)
            continue;
        if (i >= tags.size()) {
            qFatal("help database: page \"%s\" refers to script file %d (\"%s\") but has %d script elements",
                   qUtf8Printable(page), i + 1, qUtf8Printable(files.at(i)), tags.size());
        }
        inlined += InlineElement(*script);
        run.replace(tags.at(i), inlined);
    }
    return run;
}

QString SheetLink(const QString& link, const QString& styleRoot)
{
    const QString target = styleRoot + QLatin1String("/styles/");
    int separator = link.lastIndexOf(QLatin1Char('/'));
    if (separator < 0)
        separator = link.lastIndexOf(QLatin1Char('\\'));

    QString redirected = link;
    if (separator >= 0)
        redirected = kLinkOpening + target + link.midRef(separator + 1);
    else
        redirected.replace(kLinkOpening, QLatin1String("href =\"") + target);
    redirected.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return redirected;
}

const std::array<std::pair<QLatin1String, QLatin1String>, 4> kFoldedLinks{{
    {QLatin1String("href=\"../articles_registration"), QLatin1String("href=\"../articles")},
    {QLatin1String("href=\"./articles_registration"), QLatin1String("href=\"./articles")},
    {QLatin1String("href=\"../categories_registration"), QLatin1String("href=\"../categories")},
    {QLatin1String("href=\"./categories_registration"), QLatin1String("href=\"./categories")},
}};

} // namespace

QString InlineScripts(QString html, const QList<JsFileContent>& scripts, const QString& page)
{
    const Span found = Longest(html, kScriptOpening, kScriptClosing);
    if (!found.Found())
        return html;

    const QString run = html.mid(found.at, found.size);
    const QVector<QString> tags = ScriptElements(run);
    const QVector<QString> files = ScriptFiles(run);
    int length = 0;
    for (const QString& tag : tags)
        length += tag.size();

    // Elements side by side give way to the scripts as a whole; with anything between them, each is filled.
    const QString filled =
        length == run.size() ? JoinScripts(files, scripts) : FillElements(run, tags, files, scripts, page);
    html.replace(found.at, found.size, filled);
    return html;
}

QString ReplaceImages(QString html, const QStringList& keys, const QHash<QString, QString>& replacements)
{
    QVector<std::pair<QString, QString>> pairs;
    for (const QString& key : keys) {
        const QString value = replacements.value(key);
        if (!value.isEmpty())
            pairs.append({key, value});
    }
    ReplaceInOrder(html, pairs);
    return html;
}

QString RedirectStyleSheets(QString html, const QString& styleRoot)
{
    const Span found = Longest(html, kLinkOpening, kSheetClosing);
    if (!found.Found())
        return html;

    QString run = html.mid(found.at, found.size);
    Span sheet = Shortest(run, kLinkOpening, kSheetClosing, 0);
    while (sheet.Found()) {
        const QString link = run.mid(sheet.at, sheet.size);
        run.replace(link, SheetLink(link, styleRoot));
        // On from where the old link ended, which may lie within the new one.
        sheet = Shortest(run, kLinkOpening, kSheetClosing, sheet.End());
    }
    html.replace(found.at, found.size, run);
    return html;
}

QString FoldLinks(QString html)
{
    // Most pages have no such link, and one look is faster than four.
    if (!html.contains(QLatin1String("_registration")))
        return html;
    for (const auto& [before, after] : kFoldedLinks)
        html.replace(before, after);
    return html;
}
