#include "docsite.h"

#include <QDir>
#include <QFileInfo>

namespace helpbuild {
namespace {

const QLatin1String kScheme("yxdoc");

Target MakeTarget(Target::Kind kind, const QString& text)
{
    Target target;
    target.kind = kind;
    (kind == Target::External ? target.address : target.path) = text;
    return target;
}

// Pages made on Windows often write paths its way.
QString WithForwardSlashes(QString reference)
{
    if (!reference.contains(QLatin1Char(':')))
        reference.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return reference;
}

} // namespace

const QStringList& IndexPageNames()
{
    static const QStringList names{QStringLiteral("index.html"), QStringLiteral("index.htm"),
                                   QStringLiteral("index.xhtml"), QStringLiteral("default.html"),
                                   QStringLiteral("default.htm")};
    return names;
}

bool IsPageName(const QString& name)
{
    static const QStringList endings{QStringLiteral(".html"), QStringLiteral(".htm"),
                                     QStringLiteral(".xhtml")};
    for (const QString& ending : endings) {
        if (name.endsWith(ending, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

bool DocSite::AddFile(const QString& path, const QString& realPath)
{
    const auto known = files.constFind(path);
    if (known != files.constEnd())
        return known.value() == realPath;
    files.insert(path, realPath);
    const QString folded = path.toCaseFolded();
    if (!foldedPaths.contains(folded))
        foldedPaths.insert(folded, path);
    return true;
}

void DocSite::AddFolder(const QString& path, const QString& realFolder)
{
    folders.push_back({path.isEmpty() ? QString() : QString(path + QLatin1Char('/')), realFolder});
}

QString DocSite::OnDisk(const QString& path) const
{
    for (const Folder& folder : folders) {
        if (!path.startsWith(folder.path))
            continue;
        const QString real = folder.realFolder + QLatin1Char('/') + path.mid(folder.path.size());
        if (QFileInfo(real).isFile())
            return real;
    }
    return {};
}

QString DocSite::LocateFile(const QString& path) const
{
    if (files.contains(path))
        return path;
    const auto folded = foldedPaths.constFind(path.toCaseFolded());
    if (folded != foldedPaths.constEnd())
        return folded.value();
    return OnDisk(path).isEmpty() ? QString() : path;
}

QString DocSite::Locate(const QString& path) const
{
    const QString clean = path.isEmpty() ? QString() : QDir::cleanPath(path);
    if (clean.startsWith(QLatin1String("..")))
        return {};
    if (!clean.isEmpty()) {
        const QString file = LocateFile(clean);
        if (!file.isEmpty())
            return file;
    }
    for (const QString& name : IndexPageNames()) {
        const QString file = LocateFile(clean.isEmpty() ? name : QString(clean + QLatin1Char('/') + name));
        if (!file.isEmpty())
            return file;
    }
    return {};
}

QString DocSite::RealPath(const QString& path) const
{
    const auto known = files.constFind(path);
    return known != files.constEnd() ? known.value() : OnDisk(path);
}

QUrl DocSite::AddressOf(const QString& path)
{
    QUrl url;
    url.setScheme(kScheme);
    url.setPath(QLatin1Char('/') + path, QUrl::DecodedMode);
    return url;
}

Target DocSite::Resolve(const QString& reference, const QUrl& base, const QString& page) const
{
    const QString text = WithForwardSlashes(reference.trimmed());
    const int hash = text.indexOf(QLatin1Char('#'));
    const QString fragment = hash < 0 ? QString() : text.mid(hash + 1);
    const QUrl url(text);
    if (!url.isValid() && !text.isEmpty())
        return MakeTarget(Target::Missing, text);
    if (text.startsWith(QLatin1String("//")))
        return MakeTarget(Target::External, QLatin1String("https:") + text);

    QUrl full = base.resolved(url);
    if (full.scheme() == QLatin1String("qthelp")) {
        // "qthelp://<namespace>/<virtual folder>/<file>": the virtual folder alone finds the file.
        full.setScheme(kScheme);
        full.setHost(QString());
    }
    const QString scheme = full.scheme();
    if (scheme == QLatin1String("javascript") || scheme == QLatin1String("data") ||
        scheme == QLatin1String("about"))
        return MakeTarget(Target::Special, text);
    if (scheme == QLatin1String("file") || scheme.size() < 2)
        return MakeTarget(Target::Missing, text);
    if (scheme != kScheme)
        return MakeTarget(Target::External, url.isRelative() ? full.toString(QUrl::FullyEncoded) : text);

    const QString wanted = full.path(QUrl::FullyDecoded).mid(1);
    const QString found = text.isEmpty() || hash == 0 ? page : Locate(wanted);
    Target target = MakeTarget(Target::Missing, found.isEmpty() ? wanted : found);
    target.fragment = fragment;
    if (found == page && !page.isEmpty())
        target.kind = Target::SamePage;
    else if (topicLinks.contains(found))
        target.kind = Target::Topic;
    else if (!found.isEmpty())
        target.kind = Target::File;
    return target;
}

} // namespace helpbuild
