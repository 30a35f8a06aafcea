#include "htmldocument.h"

#include <QTextCodec>

#include <vector>

namespace helpbuild {
namespace {

// Enough to tell broken from sound.
constexpr int kMaxMarkupErrors = 10;

const GumboVector& ChildrenOf(const GumboNode& node)
{
    switch (node.type) {
    case GUMBO_NODE_DOCUMENT:
        return node.v.document.children;
    case GUMBO_NODE_ELEMENT:
    case GUMBO_NODE_TEMPLATE:
        return node.v.element.children;
    default:
        return kGumboEmptyVector;
    }
}

} // namespace

HtmlDocument::HtmlDocument(const QByteArray& utf8) : text(utf8)
{
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = kMaxMarkupErrors;
    output = gumbo_parse_with_options(&options, text.constData(), static_cast<std::size_t>(text.size()));
}

HtmlDocument::~HtmlDocument()
{
    gumbo_destroy_output(&kGumboDefaultOptions, output);
}

void HtmlDocument::ForEachNode(const std::function<void(const GumboNode&)>& visit) const
{
    std::vector<const GumboNode*> waiting{output->document};
    while (!waiting.empty()) {
        const GumboNode* node = waiting.back();
        waiting.pop_back();
        visit(*node);
        const GumboVector& children = ChildrenOf(*node);
        for (unsigned int i = children.length; i > 0; --i)
            waiting.push_back(static_cast<const GumboNode*>(children.data[i - 1]));
    }
}

TextRange HtmlDocument::RangeOf(const GumboStringPiece& piece) const
{
    if (piece.data == nullptr)
        return {};
    const int begin = static_cast<int>(piece.data - text.constData());
    return {begin, begin + static_cast<int>(piece.length)};
}

TextRange HtmlDocument::RangeOf(const GumboElement& element) const
{
    TextRange range = RangeOf(element.original_tag);
    const TextRange endTag = RangeOf(element.original_end_tag);
    range.end = qMax(range.end, endTag.IsEmpty() ? static_cast<int>(element.end_pos.offset) : endTag.end);
    range.end = qMin(range.end, text.size());
    return range;
}

TextRange HtmlDocument::ContentRange(const GumboElement& element) const
{
    const TextRange whole = RangeOf(element);
    const TextRange endTag = RangeOf(element.original_end_tag);
    return {RangeOf(element.original_tag).end, endTag.IsEmpty() ? whole.end : endTag.begin};
}

QByteArray WithoutNoScript(const QByteArray& utf8)
{
    QByteArray text = utf8;
    const QByteArray folded = utf8.toLower();
    const QByteArray endTag("</noscript>");
    if (!folded.contains("<noscript"))
        return text;
    const HtmlDocument document(utf8);
    document.ForEachNode([&](const GumboNode& node) {
        if (!IsWritten(node) || node.v.element.tag != GUMBO_TAG_NOSCRIPT)
            return;
        const int begin = document.RangeOf(node.v.element.original_tag).begin;
        const int found = folded.indexOf(endTag, begin);
        const int end = found < 0 ? text.size() : found + endTag.size();
        for (int i = begin; i < end; ++i) {
            if (text.at(i) != '\n')
                text[i] = ' ';
        }
    });
    return text;
}

bool IsWritten(const GumboNode& node)
{
    if (node.type != GUMBO_NODE_ELEMENT && node.type != GUMBO_NODE_TEMPLATE)
        return false;
    const int copies =
        GUMBO_INSERTION_RECONSTRUCTED_FORMATTING_ELEMENT | GUMBO_INSERTION_ADOPTION_AGENCY_CLONED;
    const GumboStringPiece& tag = node.v.element.original_tag;
    return (node.parse_flags & copies) == 0 && tag.length > 1 && tag.data[0] == '<' && tag.data[1] != '/';
}

QString AttributeText(const GumboElement& element, const char* name)
{
    const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
    return attribute == nullptr ? QString() : QString::fromUtf8(attribute->value);
}

QString TextOf(const GumboElement& element)
{
    QString text;
    for (unsigned int i = 0; i < element.children.length; ++i) {
        const auto* child = static_cast<const GumboNode*>(element.children.data[i]);
        if (child->type == GUMBO_NODE_TEXT || child->type == GUMBO_NODE_WHITESPACE ||
            child->type == GUMBO_NODE_CDATA)
            text += QString::fromUtf8(child->v.text.text);
    }
    return text;
}

QByteArray CharsetOfMeta(const GumboElement& element)
{
    const QString charset = AttributeText(element, "charset");
    if (!charset.isEmpty())
        return charset.toLatin1();
    if (AttributeText(element, "http-equiv").compare(QLatin1String("content-type"), Qt::CaseInsensitive) != 0)
        return {};
    const QString content = AttributeText(element, "content");
    const QString mark = QStringLiteral("charset=");
    const int begin = content.indexOf(mark, 0, Qt::CaseInsensitive);
    if (begin < 0)
        return {};
    const QString rest = content.mid(begin + mark.size());
    return rest.left(rest.indexOf(QLatin1Char(';'))).trimmed().toLatin1();
}

} // namespace helpbuild
