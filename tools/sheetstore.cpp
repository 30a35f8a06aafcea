#include "sheetstore.h"

#include "charset.h"
#include "cssprep.h"
#include "docsite.h"
#include "imagestore.h"
#include "topicnames.h"

#include <QFile>
#include <QFileInfo>

namespace helpbuild {

SheetStore::SheetStore(const DocSite& docSite, const QString& targetFolder, Diagnostics& messages)
    : site(docSite), folder(targetFolder), diagnostics(messages)
{
}

QString SheetStore::Add(const QString& path)
{
    const auto known = byPath.constFind(path);
    if (known != byPath.constEnd())
        return known.value();
    const QString real = site.RealPath(path);
    QFile file(real);
    QString name;
    if (file.open(QIODevice::ReadOnly)) {
        const DecodedText decoded = DecodeStyleSheet(file.readAll());
        if (!decoded.problem.isEmpty())
            diagnostics.Report(Finding::Encoding, {real, 0}, decoded.problem);
        open << path;
        const QString text = Rewrite(QString::fromUtf8(decoded.utf8), DocSite::AddressOf(path), {real, 0});
        open.removeLast();
        name = Write(path, text.toUtf8(), QStringLiteral("css"));
    }
    byPath.insert(path, name);
    return name;
}

QString SheetStore::AddText(const QString& text, const QUrl& base, const SourcePlace& place)
{
    return Write(QStringLiteral("page"), Rewrite(text, base, place).toUtf8(), QStringLiteral("css"));
}

QString SheetStore::Rewrite(const QString& sheet, const QUrl& base, const SourcePlace& place)
{
    QString result;
    int position = 0;
    for (const CssReference& reference : ScanStyleSheet(sheet)) {
        const int line = place.line > 0 ? place.line : 1;
        const SourcePlace at{place.file, line + sheet.leftRef(reference.begin).count(QLatin1Char('\n'))};
        result += sheet.midRef(position, reference.begin - position);
        const std::optional<QString> replacement =
            reference.isImport ? ImportRule(reference, base, at) : Replacement(reference, base, at);
        result += replacement.value_or(sheet.mid(reference.begin, reference.end - reference.begin));
        position = reference.end;
    }
    result += sheet.midRef(position);
    return WithUtf8Rule(result);
}

std::optional<QString> SheetStore::Replacement(const CssReference& reference, const QUrl& base,
                                               const SourcePlace& place)
{
    const Target target = site.Resolve(reference.value, base, QString());
    if (target.kind == Target::External || target.kind == Target::Special || reference.value.isEmpty() ||
        reference.value.startsWith(QLatin1Char('#')))
        return {};
    const QString name = target.kind == Target::Missing ? QString() : AddFile(target.path);
    if (name.isEmpty()) {
        diagnostics.Report(Finding::MissingFile, place,
                           QLatin1Char('"') + reference.value + QLatin1String("\" doesn't exist"));
        return {};
    }
    const QString fragment =
        target.fragment.isEmpty() ? QString() : QString(QLatin1Char('#') + target.fragment);
    return CssUrl(name + fragment);
}

std::optional<QString> SheetStore::ImportRule(const CssReference& reference, const QUrl& base,
                                              const SourcePlace& place)
{
    const Target target = site.Resolve(reference.value, base, QString());
    if (target.kind == Target::Special)
        return {};
    // A sheet on a server would hold up the page while there is no network.
    if (target.kind == Target::External)
        return QString();
    const QString name =
        target.kind == Target::Missing || open.contains(target.path) ? QString() : Add(target.path);
    if (name.isEmpty()) {
        diagnostics.Report(Finding::MissingFile, place,
                           QLatin1Char('"') + reference.value + QLatin1String("\" can't be imported"));
        return QString();
    }
    return CssImport(name, reference.media);
}

QString SheetStore::AddFile(const QString& path)
{
    const auto known = byPath.constFind(path);
    if (known != byPath.constEnd())
        return known.value();
    QFile file(site.RealPath(path));
    QString name;
    if (file.open(QIODevice::ReadOnly))
        name = Write(path, file.readAll(), SafeFileName(QFileInfo(path).suffix()).toLower());
    byPath.insert(path, name);
    return name;
}

QString SheetStore::Write(const QString& fileName, const QByteArray& data, const QString& extension)
{
    const QString name = ContentName(fileName, data, extension);
    if (written.contains(name))
        return name;
    written.insert(name);
    QFile file(folder + QLatin1Char('/') + name);
    const bool ok = file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.flush();
    sound = ok && sound;
    return name;
}

} // namespace helpbuild
