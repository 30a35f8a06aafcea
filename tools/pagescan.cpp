#include "pagescan.h"

#include "plaintext.h"

#include <QSet>

#include <array>

namespace helpbuild {
namespace {

struct AttributeRule
{
    GumboTag tag;
    const char* attribute;
    PageReference::Kind kind;
};

const std::array<AttributeRule, 27> kAttributeRules{{
    {GUMBO_TAG_A, "href", PageReference::Link},
    {GUMBO_TAG_AREA, "href", PageReference::Link},
    {GUMBO_TAG_IMG, "src", PageReference::Image},
    {GUMBO_TAG_INPUT, "src", PageReference::Image},
    {GUMBO_TAG_IMAGE, "href", PageReference::Image},
    {GUMBO_TAG_VIDEO, "poster", PageReference::Image},
    {GUMBO_TAG_BODY, "background", PageReference::Image},
    {GUMBO_TAG_TABLE, "background", PageReference::Image},
    {GUMBO_TAG_TR, "background", PageReference::Image},
    {GUMBO_TAG_TD, "background", PageReference::Image},
    {GUMBO_TAG_TH, "background", PageReference::Image},
    {GUMBO_TAG_OBJECT, "data", PageReference::Object},
    {GUMBO_TAG_EMBED, "src", PageReference::Object},
    {GUMBO_TAG_SOURCE, "src", PageReference::Media},
    {GUMBO_TAG_TRACK, "src", PageReference::Media},
    {GUMBO_TAG_VIDEO, "src", PageReference::Media},
    {GUMBO_TAG_AUDIO, "src", PageReference::Media},
    {GUMBO_TAG_IFRAME, "src", PageReference::Frame},
    {GUMBO_TAG_FRAME, "src", PageReference::Frame},
    {GUMBO_TAG_FORM, "action", PageReference::Form},
    // The files are no longer the ones whose hash was taken.
    {GUMBO_TAG_LINK, "integrity", PageReference::Superfluous},
    {GUMBO_TAG_LINK, "crossorigin", PageReference::Superfluous},
    {GUMBO_TAG_IMG, "srcset", PageReference::Superfluous},
    {GUMBO_TAG_IMG, "sizes", PageReference::Superfluous},
    {GUMBO_TAG_A, "ping", PageReference::Superfluous},
    {GUMBO_TAG_A, "download", PageReference::Superfluous},
    {GUMBO_TAG_AREA, "download", PageReference::Superfluous},
}};

bool HasWord(const QString& list, const char* word)
{
    return list.simplified().toLower().split(QLatin1Char(' ')).contains(QLatin1String(word));
}

class PageScanner
{
public:
    explicit PageScanner(const HtmlDocument& htmlDocument) : document(htmlDocument) {}

    PageParts Scan()
    {
        const GumboElement& root = document.Root().v.element;
        const TextRange rootTag = document.RangeOf(root.original_tag);
        parts.headStart = rootTag.IsEmpty() ? static_cast<int>(root.start_pos.offset) : rootTag.end;
        document.ForEachNode([this](const GumboNode& node) {
            if (node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE)
                VisitElement(node);
        });
        return std::move(parts);
    }

private:
    void VisitElement(const GumboNode& node)
    {
        const GumboElement& element = node.v.element;
        if (element.tag == GUMBO_TAG_BODY)
            VisitBody(node);
        if (!IsWritten(node))
            return;
        switch (element.tag) {
        case GUMBO_TAG_HEAD:
            parts.headStart = document.RangeOf(element.original_tag).end;
            break;
        case GUMBO_TAG_TITLE:
            if (parts.title.isEmpty() && element.tag_namespace == GUMBO_NAMESPACE_HTML)
                parts.title = TextOf(element).simplified();
            break;
        case GUMBO_TAG_H1:
            if (parts.heading.isEmpty())
                parts.heading = PlainText(node);
            break;
        case GUMBO_TAG_FRAMESET:
            parts.frames = true;
            break;
        default:
            VisitSpecial(node);
        }
        VisitAttributes(element);
    }

    void VisitSpecial(const GumboNode& node)
    {
        const GumboElement& element = node.v.element;
        switch (element.tag) {
        case GUMBO_TAG_META:
            VisitMeta(element);
            break;
        case GUMBO_TAG_BASE:
            if (parts.base.isEmpty())
                parts.base = AttributeText(element, "href");
            Drop(element.original_tag);
            break;
        case GUMBO_TAG_LINK:
            VisitLinkElement(element);
            break;
        case GUMBO_TAG_STYLE:
            VisitStyle(element);
            break;
        case GUMBO_TAG_SCRIPT:
            VisitScript(node);
            break;
        case GUMBO_TAG_SOURCE:
            // Without its choices a picture shows the image that stands in it.
            if (gumbo_get_attribute(&element.attributes, "srcset") != nullptr)
                Drop(element.original_tag);
            break;
        case GUMBO_TAG_XMP:
        case GUMBO_TAG_IFRAME:
        case GUMBO_TAG_NOEMBED:
        case GUMBO_TAG_NOFRAMES:
        case GUMBO_TAG_PLAINTEXT:
            parts.rawText.push_back(document.ContentRange(element));
            break;
        default:
            break;
        }
    }

    void Drop(const GumboStringPiece& tag) { parts.dropped.push_back(document.RangeOf(tag)); }

    void VisitBody(const GumboNode& node)
    {
        const GumboElement& element = node.v.element;
        if (parts.bodyStart >= 0)
            return;
        parts.bodyTag = IsWritten(node);
        parts.bodyStart = parts.bodyTag ? document.RangeOf(element.original_tag).end : FirstPosition(element);
        const TextRange endTag = document.RangeOf(element.original_end_tag);
        const TextRange rootEnd = document.RangeOf(document.Root().v.element.original_end_tag);
        parts.bodyEndTag = !endTag.IsEmpty() && !HasTextBehind(endTag.end, rootEnd);
        if (parts.bodyEndTag)
            parts.bodyEnd = endTag.begin;
        else if (endTag.IsEmpty() && !rootEnd.IsEmpty() && !HasTextBehind(rootEnd.end, {}))
            parts.bodyEnd = rootEnd.begin;
        else
            parts.bodyEnd = document.Text().size();
        // What stands behind the end of the body belongs to it all the same, but the search wouldn't see it.
        if (!endTag.IsEmpty() && !parts.bodyEndTag)
            parts.dropped.push_back(endTag);
    }

    bool HasTextBehind(int position, const TextRange& exception) const
    {
        const QByteArray& text = document.Text();
        for (int i = position; i < text.size(); ++i) {
            if (!exception.Contains(i) && !QChar(QLatin1Char(text.at(i))).isSpace())
                return true;
        }
        return false;
    }

    // Of a body whose start tag is left out.
    int FirstPosition(const GumboElement& body) const
    {
        if (body.children.length == 0)
            return document.Text().size();
        const auto* first = static_cast<const GumboNode*>(body.children.data[0]);
        const bool isElement = first->type == GUMBO_NODE_ELEMENT || first->type == GUMBO_NODE_TEMPLATE;
        return static_cast<int>(isElement ? first->v.element.start_pos.offset
                                          : first->v.text.start_pos.offset);
    }

    void VisitMeta(const GumboElement& element)
    {
        const QString equivalent = AttributeText(element, "http-equiv").toLower();
        if (equivalent == QLatin1String("refresh")) {
            const QString content = AttributeText(element, "content");
            const int mark = content.indexOf(QLatin1String("url="), 0, Qt::CaseInsensitive);
            parts.redirects.push_back(document.RangeOf(element.original_tag));
            QString target = mark < 0 ? QString() : content.mid(mark + 4).trimmed();
            parts.redirectTargets << target.remove(QLatin1Char('\'')).remove(QLatin1Char('"'));
            return;
        }
        // It would forbid the scripts and images that the viewer writes into the page.
        if (equivalent == QLatin1String("content-security-policy"))
            Drop(element.original_tag);
        const QByteArray charset = CharsetOfMeta(element);
        if (charset.isEmpty())
            return;
        parts.charsetDeclared = true;
        if (charset.toLower() == "utf-8" || !parts.charset.IsEmpty())
            return;
        const char* name =
            gumbo_get_attribute(&element.attributes, "charset") != nullptr ? "charset" : "content";
        parts.charset = document.RangeOf(gumbo_get_attribute(&element.attributes, name)->original_value);
    }

    void VisitLinkElement(const GumboElement& element)
    {
        const GumboAttribute* href = gumbo_get_attribute(&element.attributes, "href");
        if (href == nullptr || !HasWord(AttributeText(element, "rel"), "stylesheet")) {
            Drop(element.original_tag);
            return;
        }
        PageSheet sheet;
        sheet.linked = true;
        sheet.element = document.RangeOf(element.original_tag);
        sheet.attribute = AttributeRange(*href);
        sheet.value = QString::fromUtf8(href->value);
        parts.sheets.push_back(sheet);
    }

    void VisitStyle(const GumboElement& element)
    {
        PageSheet sheet;
        sheet.element = document.RangeOf(element);
        sheet.content = document.ContentRange(element);
        sheet.value = TextOf(element);
        sheet.media = AttributeText(element, "media");
        // In a drawing it is text like any other.
        if (element.tag_namespace != GUMBO_NAMESPACE_HTML)
            return;
        parts.rawText.push_back(sheet.content);
        parts.sheets.push_back(sheet);
    }

    void VisitScript(const GumboNode& node)
    {
        static const QSet<QString> runnable{QString(),
                                            QStringLiteral("text/javascript"),
                                            QStringLiteral("application/javascript"),
                                            QStringLiteral("application/x-javascript"),
                                            QStringLiteral("text/ecmascript"),
                                            QStringLiteral("application/ecmascript"),
                                            QStringLiteral("text/jscript")};
        const GumboElement& element = node.v.element;
        const QString type = AttributeText(element, "type").trimmed().toLower();
        PageScript script;
        script.element = document.RangeOf(element);
        script.reference = AttributeText(element, "src").trimmed();
        script.text = TextOf(element);
        if (const GumboAttribute* source = gumbo_get_attribute(&element.attributes, "src"))
            script.attribute = AttributeRange(*source);
        script.runs = runnable.contains(type.section(QLatin1Char(';'), 0, 0).trimmed()) &&
                      element.tag_namespace == GUMBO_NAMESPACE_HTML && !InTemplate(node);
        script.data = type == QLatin1String("application/ld+json");
        script.deferred =
            !script.reference.isEmpty() && (gumbo_get_attribute(&element.attributes, "defer") != nullptr ||
                                            gumbo_get_attribute(&element.attributes, "async") != nullptr);
        parts.scripts.push_back(script);
    }

    static bool InTemplate(const GumboNode& node)
    {
        for (const GumboNode* parent = node.parent; parent != nullptr; parent = parent->parent) {
            if (parent->type == GUMBO_NODE_TEMPLATE)
                return true;
        }
        return false;
    }

    TextRange AttributeRange(const GumboAttribute& attribute) const
    {
        const TextRange name = document.RangeOf(attribute.original_name);
        const TextRange value = document.RangeOf(attribute.original_value);
        return {name.begin, qMax(name.end, value.end)};
    }

    void VisitAttributes(const GumboElement& element)
    {
        for (unsigned int i = 0; i < element.attributes.length; ++i) {
            const auto* attribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
            const QLatin1String name(attribute->name);
            if (name == QLatin1String("style")) {
                AddReference(element, *attribute, PageReference::InlineStyle);
            } else if (const AttributeRule* rule = RuleFor(element.tag, name)) {
                AddReference(element, *attribute, rule->kind);
            } else if (name == QLatin1String("href") && element.tag != GUMBO_TAG_LINK &&
                       element.tag != GUMBO_TAG_BASE) {
                parts.otherHrefs.push_back(document.RangeOf(attribute->original_name));
            }
        }
    }

    static const AttributeRule* RuleFor(GumboTag tag, QLatin1String attribute)
    {
        for (const AttributeRule& rule : kAttributeRules) {
            if (rule.tag == tag && attribute == QLatin1String(rule.attribute))
                return &rule;
        }
        return nullptr;
    }

    void AddReference(const GumboElement& element, const GumboAttribute& attribute, PageReference::Kind kind)
    {
        PageReference reference;
        reference.kind = kind;
        reference.tag = document.RangeOf(element.original_tag);
        reference.name = document.RangeOf(attribute.original_name);
        reference.attribute = AttributeRange(attribute);
        reference.value = QString::fromUtf8(attribute.value);
        if (kind == PageReference::Link) {
            const GumboAttribute* target = gumbo_get_attribute(&element.attributes, "target");
            if (target != nullptr)
                reference.target = AttributeRange(*target);
        }
        parts.references.push_back(reference);
    }

    const HtmlDocument& document;
    PageParts parts;
};

} // namespace

PageParts ScanPage(const HtmlDocument& document)
{
    return PageScanner(document).Scan();
}

} // namespace helpbuild
