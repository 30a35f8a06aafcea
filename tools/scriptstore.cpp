#include "scriptstore.h"

#include "charset.h"
#include "docsite.h"
#include "imagestore.h"
#include "scriptstrings.h"
#include "sheetstore.h"
#include "textedit.h"
#include "textguard.h"

#include <QFile>

namespace helpbuild {
namespace {

// Where a style sheet lies is only known when the viewer writes it into the page, as the value of a href. So
// the script takes it out of one. Back quotes, because a folder may have an apostrophe in its name.
QByteArray SheetExpression(const QString& sheet)
{
    return "`href=\"styles/" + sheet.toUtf8() + "\"`.slice(6,-1)";
}

bool EndsWithAny(const QString& text, const QStringList& endings)
{
    for (const QString& ending : endings) {
        if (text.endsWith(ending, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

const QStringList& ImageEndings()
{
    static const QStringList endings{QStringLiteral(".png"),  QStringLiteral(".gif"), QStringLiteral(".jpg"),
                                     QStringLiteral(".jpeg"), QStringLiteral(".bmp"), QStringLiteral(".ico"),
                                     QStringLiteral(".svg")};
    return endings;
}

} // namespace

ScriptStore::ScriptStore(const DocSite& docSite, SheetStore& sheetStore, ImageStore& imageStore)
    : site(docSite), sheets(sheetStore), images(imageStore)
{
}

ScriptStore::Script ScriptStore::AddFile(const QString& path, const QUrl& base)
{
    // What a script names is relative to the page, so its text differs from folder to folder.
    const QString known = path + QLatin1Char('\n') + base.adjusted(QUrl::RemoveFilename).toString();
    const auto found = byFile.constFind(known);
    if (found != byFile.constEnd())
        return found.value();
    QFile file(site.RealPath(path));
    Script script;
    if (file.open(QIODevice::ReadOnly))
        script = Add(path, QString::fromUtf8(DecodeScript(file.readAll()).utf8), base);
    byFile.insert(known, script);
    return script;
}

ScriptStore::Script ScriptStore::AddText(const QString& text, const QUrl& base)
{
    return Add(QStringLiteral("page.js"), text, base);
}

ScriptStore::Script ScriptStore::Add(const QString& fileName, const QString& text, const QUrl& base)
{
    const QByteArray source = text.toUtf8();
    Script script;
    EditList edits;
    for (const ScriptString& literal : ScanScriptStrings(source)) {
        const bool isSheet = literal.value.endsWith(QLatin1String(".css"), Qt::CaseInsensitive);
        if (literal.isKey || (!isSheet && !EndsWithAny(literal.value, ImageEndings())))
            continue;
        const Target target = site.Resolve(literal.value, base, QString());
        if (target.kind != Target::File)
            continue;
        if (isSheet) {
            edits.Replace(literal.range, SheetExpression(sheets.Add(target.path)), Mark::SheetLink);
            script.namesSheets = true;
        } else if (const auto image = images.Add(site.RealPath(target.path))) {
            const QString replacement = image->key.isEmpty() ? image->address : image->key;
            edits.Replace(literal.range, '"' + replacement.toUtf8() + '"');
            if (!image->key.isEmpty())
                script.imageKeys << image->key;
        }
    }
    const QByteArray guarded = GuardScript(edits.Apply(source, {}));
    script.fileName = ContentName(fileName, guarded, QStringLiteral("js"));
    script.writesInPlace = source.contains("document.write(") || source.contains("document.writeln(");
    if (!names.contains(script.fileName)) {
        names.insert(script.fileName);
        stored.push_back({script.fileName, QString::fromUtf8(guarded)});
    }
    return script;
}

} // namespace helpbuild
