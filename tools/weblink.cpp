#include "weblink.h"

#include <QStringList>
#include <QUrl>

namespace helpbuild {
namespace {

// No dollar, which begins a variable where a web server's settings hold the address.
const char* const kKept = "/!&'()*+,;=:@";

} // namespace

QString EncodedPath(const QString& path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, kKept));
}

QString RelativeLink(const QString& from, const QString& to)
{
    const QStringList fromParts = from.split(QLatin1Char('/'));
    const QStringList toParts = to.split(QLatin1Char('/'));
    const int folders = qMin(fromParts.size(), toParts.size()) - 1;
    int common = 0;
    while (common < folders && fromParts.at(common) == toParts.at(common))
        ++common;
    const QString up = QStringLiteral("../").repeated(fromParts.size() - 1 - common);
    QString link = up + EncodedPath(toParts.mid(common).join(QLatin1Char('/')));
    // A colon in the first part would end a scheme.
    if (up.isEmpty() && link.contains(QLatin1Char(':')))
        link.prepend(QLatin1String("./"));
    return link;
}

QString LinkQuery(const QString& language)
{
    return QLatin1String("?language=") + language;
}

QString EncodedAnchor(QString anchor)
{
    return anchor.replace(QLatin1Char('?'), QLatin1String("%3F"));
}

} // namespace helpbuild
