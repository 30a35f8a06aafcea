#include "pageedit.h"

#include <algorithm>

namespace helpbuild {
namespace {

bool IsAscii(const QByteArray& text)
{
    return std::all_of(text.begin(), text.end(), [](char character) { return (character & 0x80) == 0; });
}

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

} // namespace

QByteArray AttributeValue(const QString& value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    escaped.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    return '"' + escaped.toUtf8() + '"';
}

void RemoveAttribute(const HtmlDocument& document, const TextRange& attribute, EditList& edits)
{
    const QByteArray& text = document.Text();
    const bool apart =
        attribute.end < text.size() && (IsBlank(text.at(attribute.end)) || text.at(attribute.end) == '>');
    const int begin = apart && IsBlank(text.at(attribute.begin - 1)) ? attribute.begin - 1 : attribute.begin;
    edits.Remove({begin, attribute.end});
}

void DeclareUtf8(const HtmlDocument& document, const PageParts& parts, EditList& edits)
{
    if (!parts.charset.IsEmpty()) {
        const bool inContent =
            document.Text().mid(parts.charset.begin, parts.charset.end - parts.charset.begin).contains('=');
        edits.Replace(parts.charset, inContent ? "\"text/html; charset=utf-8\"" : "\"utf-8\"");
    } else if (!parts.charsetDeclared && !IsAscii(document.Text())) {
        edits.Insert(parts.headStart, "<meta charset=\"utf-8\">");
    }
}

} // namespace helpbuild
