#include "sitefiles.h"

#include "charset.h"
#include "cssprep.h"
#include "docsite.h"
#include "scriptstrings.h"
#include "topicnames.h"
#include "topicplan.h"
#include "weblink.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace helpbuild {
namespace {

QString FolderOf(const QString& path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('/'))));
}

bool HasExtension(const QString& path, const char* extension)
{
    return QFileInfo(path).suffix().compare(QLatin1String(extension), Qt::CaseInsensitive) == 0;
}

} // namespace

SiteFiles::SiteFiles(const DocSite& docSite, const std::vector<PlannedTopic>& topics,
                     const QString& targetFolder, Diagnostics& messages)
    : site(docSite), folder(targetFolder), diagnostics(messages)
{
    for (const PlannedTopic& topic : topics) {
        taken.insert(topic.filePath.toLower());
        QString from = FolderOf(topic.page);
        QString to = FolderOf(topic.filePath);
        for (; !from.isEmpty() && !folders.contains(from); from = FolderOf(from), to = FolderOf(to))
            folders.insert(from, to);
    }
}

QString SiteFiles::Take(const QString& path)
{
    const auto known = places.constFind(path);
    if (known != places.constEnd())
        return known.value();
    QFile file(site.RealPath(path));
    if (!file.open(QIODevice::ReadOnly)) {
        places.insert(path, QString());
        return {};
    }
    const QString place = PlaceOf(path);
    // Before the content, which may lead back here.
    places.insert(path, place);
    ++count;
    WriteContent(path, place, file.readAll());
    return place;
}

QString SiteFiles::PlaceOf(const QString& path)
{
    QString known = FolderOf(path);
    while (!known.isEmpty() && !folders.contains(known))
        known = FolderOf(known);
    const QString wanted = folders.value(known) + path.mid(known.size());
    QString place = wanted;
    for (int number = 2; taken.contains(place.toLower()); ++number)
        place = Numbered(wanted, number);
    taken.insert(place.toLower());
    return place;
}

// Pages are written as UTF-8, and sheets and scripts that don't tell their character set are read in the
// page's.
void SiteFiles::WriteContent(const QString& path, const QString& place, const QByteArray& data)
{
    if (HasExtension(path, "css")) {
        const QString text = QString::fromUtf8(DecodeStyleSheet(data).utf8);
        Write(place,
              WithUtf8Rule(Sheet(text, DocSite::AddressOf(path), place, {site.RealPath(path), 1})).toUtf8());
    } else if (HasExtension(path, "js") || HasExtension(path, "mjs")) {
        const QByteArray script = DecodeScript(data).utf8;
        Write(place, script);
        TakeNamedIn(script, DocSite::AddressOf(path));
    } else {
        Write(place, data);
    }
}

QString SiteFiles::TakeScript(const QString& path, const QUrl& base)
{
    const QString place = Take(path);
    const QString scan = path + QLatin1Char('\n') + base.adjusted(QUrl::RemoveFilename).toString();
    QFile file(site.RealPath(path));
    if (!place.isEmpty() && !scanned.contains(scan) && file.open(QIODevice::ReadOnly)) {
        scanned.insert(scan);
        TakeNamedIn(DecodeScript(file.readAll()).utf8, base);
    }
    return place;
}

void SiteFiles::TakeNamedIn(const QByteArray& script, const QUrl& base)
{
    for (const ScriptString& literal : ScanScriptStrings(script)) {
        if (literal.isKey || !literal.value.contains(QLatin1Char('.')))
            continue;
        const Target target = site.Resolve(literal.value, base, QString());
        if (target.kind == Target::File && !IsPageName(target.path))
            Take(target.path);
    }
}

QString SiteFiles::Sheet(const QString& text, const QUrl& base, const QString& place,
                         const SourcePlace& source)
{
    QString result;
    int position = 0;
    for (const CssReference& reference : ScanStyleSheet(text)) {
        const Target target = site.Resolve(reference.value, base, QString());
        if (target.kind == Target::External || target.kind == Target::Special || reference.value.isEmpty() ||
            reference.value.startsWith(QLatin1Char('#')))
            continue;
        const QString file = target.kind == Target::File ? Take(target.path) : QString();
        if (file.isEmpty()) {
            const int line = source.line + text.leftRef(reference.begin).count(QLatin1Char('\n'));
            diagnostics.Report(Finding::MissingFile, {source.file, line},
                               QLatin1Char('"') + reference.value + QLatin1String("\" doesn't exist"));
            continue;
        }
        QString link = RelativeLink(place, file);
        if (!target.fragment.isEmpty())
            link += QLatin1Char('#') + target.fragment;
        if (link == reference.value)
            continue;
        result += text.midRef(position, reference.begin - position);
        result += reference.isImport ? CssImport(link, reference.media) : CssUrl(link);
        position = reference.end;
    }
    return result + text.midRef(position);
}

void SiteFiles::Write(const QString& place, const QByteArray& data)
{
    const QString path = folder + QLatin1Char('/') + place;
    QFile file(path);
    const bool ok = QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
                    file.write(data) == data.size() && file.flush();
    sound = ok && sound;
}

} // namespace helpbuild
