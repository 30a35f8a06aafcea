#include "largepage.h"

#include "imagehelper.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(lcLargePage, "yxhelp.largepage")

constexpr qint64 kLongestAddress = 0x200000; // 2 MiB
const QLatin1String kAddressStart("data:text/html;charset=UTF-8,");

// With a base, "#name" would lead to another document. The order of the look-ups is the browsers'.
const QLatin1String kInsertion(
    "<base href=\"file:///\"><script>"
    "document.addEventListener('click',function(e){"
    "if(e.defaultPrevented||e.button||e.ctrlKey||e.shiftKey||e.altKey||e.metaKey||!e.target.closest)return;"
    "var a=e.target.closest('a[href^=\"#\"],area[href^=\"#\"]');if(!a)return;"
    "var n=a.getAttribute('href').slice(1),t=null;"
    "function find(s){return document.getElementById(s)||document.getElementsByName(s)[0];}"
    "if(n){t=find(n);if(!t){try{n=decodeURIComponent(n);t=find(n);}catch(x){}}}"
    "e.preventDefault();"
    "if(t)t.scrollIntoView();else if(!n||n.toLowerCase()==='top')window.scrollTo(0,0);"
    "});</script>");

bool IsUnreserved(ushort c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

bool IsSpace(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n') ||
           c == QLatin1Char('\f') || c == QLatin1Char('\r');
}

bool IsLetter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
           (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
}

/// End of what begins with "<!" or "<?" at `at`.
int EndOfMarkup(const QString& html, int at)
{
    const auto endsWith = [&](QLatin1String mark, int from) {
        const int found = html.indexOf(mark, from);
        return found < 0 ? html.size() : found + mark.size();
    };
    const QStringRef rest = html.midRef(at, 6);
    if (!rest.startsWith(QLatin1String("<!--")))
        return endsWith(QLatin1String(">"), at);
    // Browsers take these two for whole comments.
    if (rest.startsWith(QLatin1String("<!-->")))
        return at + 5;
    if (rest == QLatin1String("<!--->"))
        return at + 6;
    return endsWith(QLatin1String("-->"), at + 4);
}

int EndOfTag(const QString& html, int at)
{
    QChar quote;
    for (; at < html.size(); ++at) {
        const QChar c = html.at(at);
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == QLatin1Char('"') || c == QLatin1Char('\''))
            quote = c;
        else if (c == QLatin1Char('>'))
            return at + 1;
    }
    return html.size();
}

bool IsTag(const QString& html, int at, QLatin1String name)
{
    if (html.midRef(at + 1, name.size()).compare(name, Qt::CaseInsensitive) != 0)
        return false;
    const int after = at + 1 + name.size();
    return after < html.size() && !IsLetter(html.at(after)) && !html.at(after).isDigit() &&
           html.at(after) != QLatin1Char('-');
}

/// Where the head of the page begins. That is behind a doctype, since a page with anything before it is
/// laid out by the rules for old pages.
int StartOfHead(const QString& html)
{
    int place = 0;
    int at = 0;
    while (at < html.size()) {
        if (IsSpace(html.at(at))) {
            ++at;
            continue;
        }
        if (html.at(at) != QLatin1Char('<') || at + 1 == html.size())
            break;
        const QChar next = html.at(at + 1);
        if (next == QLatin1Char('!') || next == QLatin1Char('?')) {
            const bool doctype =
                html.midRef(at + 2, 7).compare(QLatin1String("doctype"), Qt::CaseInsensitive) == 0;
            at = EndOfMarkup(html, at);
            if (doctype)
                place = at;
        } else if (IsTag(html, at, QLatin1String("html"))) {
            at = EndOfTag(html, at);
            place = at;
        } else if (IsTag(html, at, QLatin1String("head"))) {
            return EndOfTag(html, at);
        } else {
            break;
        }
    }
    return place;
}

bool Holds(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.size() == content.size() && file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

} // namespace

bool FitsDataAddress(const QString& html)
{
    qint64 length = kAddressStart.size();
    for (int i = 0; i < html.size() && length <= kLongestAddress; ++i) {
        const ushort c = html.at(i).unicode();
        if (c < 0x80) {
            length += IsUnreserved(c) ? 1 : 3;
        } else if (c < 0x800) {
            length += 6;
        } else if (!QChar::isSurrogate(c)) {
            length += 9;
        } else if (QChar::isHighSurrogate(c) && i + 1 < html.size() && html.at(i + 1).isLowSurrogate()) {
            length += 12;
            ++i;
        } else {
            length += 3; // Qt writes half a pair as "?".
        }
    }
    return length <= kLongestAddress;
}

QString RebaseLargePage(QString html)
{
    // The file gets a mark of its own. A second one would be text before the doctype.
    if (html.startsWith(QChar(QChar::ByteOrderMark)))
        html.remove(0, 1);
    html.insert(StartOfHead(html), kInsertion);
    return html;
}

QString WriteLargePage(const QString& html, const QString& language)
{
    const QString dir = ImageHelper().DatedDir(language);
    if (!QDir().mkpath(dir))
        qCWarning(lcLargePage) << "no directory" << dir;

    // The mark tells the encoding whatever the page says about itself.
    QByteArray content("\xef\xbb\xbf");
    content += RebaseLargePage(html).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(content, QCryptographicHash::Sha1).toHex();
    QString path = dir + QLatin1Char('/') + QLatin1String(hash) + QLatin1String(".html");
    if (Holds(path, content))
        return path;

    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return path;
    qCWarning(lcLargePage) << "page not written to" << path << file.errorString();
    return {};
}
