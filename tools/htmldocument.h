#pragma once

#include <QByteArray>
#include <QString>

#include <gumbo.h>

#include <functional>

namespace helpbuild {

/// A stretch of a text, in bytes.
struct TextRange
{
    int begin = 0;
    int end = 0;

    bool IsEmpty() const { return end <= begin; }
    bool Contains(int position) const { return position >= begin && position < end; }
};

/// A parsed page together with its text, which the parse tree points into.
class HtmlDocument
{
public:
    /// Parses UTF-8 text. Never fails: broken markup is taken as browsers take it.
    explicit HtmlDocument(const QByteArray& utf8);
    ~HtmlDocument();
    HtmlDocument(const HtmlDocument&) = delete;
    HtmlDocument& operator=(const HtmlDocument&) = delete;

    const QByteArray& Text() const { return text; }
    const GumboNode& Root() const { return *output->root; }
    bool HasMarkupErrors() const { return output->errors.length > 0; }

    /// Visits all nodes in document order, without recursion: broken pages nest deeply.
    void ForEachNode(const std::function<void(const GumboNode&)>& visit) const;

    /// Where in the text a piece of the source stands.
    TextRange RangeOf(const GumboStringPiece& piece) const;

    /// From the start tag to the end of the end tag, or to what closed the element.
    TextRange RangeOf(const GumboElement& element) const;

    /// What stands between the tags.
    TextRange ContentRange(const GumboElement& element) const;

private:
    QByteArray text;
    GumboOutput* output;
};

/// The page with blanks in place of its "noscript" elements. To a browser that runs scripts they are plain
/// text up to their end tags, and their tags would make another page of it.
QByteArray WithoutNoScript(const QByteArray& utf8);

/// True for an element whose start tag stands in the source and that is no copy made by the parser.
bool IsWritten(const GumboNode& node);

/// Value of an attribute; null when the element has none of the name.
QString AttributeText(const GumboElement& element, const char* name);

/// Text of the nodes directly below, as in `title` or `style`.
QString TextOf(const GumboElement& element);

/// Character set that a `meta` element declares; empty when it declares none.
QByteArray CharsetOfMeta(const GumboElement& element);

} // namespace helpbuild
