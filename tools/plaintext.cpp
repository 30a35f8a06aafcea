#include "plaintext.h"

#include <QSet>

#include <vector>

namespace helpbuild {
namespace {

// Elements that go on within a line; every other one stands apart from its neighbours.
bool IsInline(GumboTag tag)
{
    static const QSet<int> tags{GUMBO_TAG_A,     GUMBO_TAG_ABBR,  GUMBO_TAG_ACRONYM, GUMBO_TAG_B,
                                GUMBO_TAG_BDI,   GUMBO_TAG_BDO,   GUMBO_TAG_BIG,     GUMBO_TAG_CITE,
                                GUMBO_TAG_CODE,  GUMBO_TAG_DEL,   GUMBO_TAG_DFN,     GUMBO_TAG_EM,
                                GUMBO_TAG_FONT,  GUMBO_TAG_IMG,   GUMBO_TAG_I,       GUMBO_TAG_INS,
                                GUMBO_TAG_KBD,   GUMBO_TAG_LABEL, GUMBO_TAG_MARK,    GUMBO_TAG_NOBR,
                                GUMBO_TAG_Q,     GUMBO_TAG_RUBY,  GUMBO_TAG_S,       GUMBO_TAG_SAMP,
                                GUMBO_TAG_SMALL, GUMBO_TAG_SPAN,  GUMBO_TAG_STRIKE,  GUMBO_TAG_STRONG,
                                GUMBO_TAG_SUB,   GUMBO_TAG_SUP,   GUMBO_TAG_TIME,    GUMBO_TAG_TT,
                                GUMBO_TAG_U,     GUMBO_TAG_VAR,   GUMBO_TAG_WBR,     GUMBO_TAG_UNKNOWN};
    return tags.contains(tag);
}

bool IsUnseen(const GumboNode& node)
{
    if (node.type == GUMBO_NODE_TEMPLATE)
        return true;
    static const QSet<int> tags{GUMBO_TAG_HEAD,   GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE,    GUMBO_TAG_NOSCRIPT,
                                GUMBO_TAG_IFRAME, GUMBO_TAG_OBJECT, GUMBO_TAG_NOFRAMES, GUMBO_TAG_NOEMBED,
                                GUMBO_TAG_AUDIO,  GUMBO_TAG_VIDEO,  GUMBO_TAG_CANVAS,   GUMBO_TAG_DATALIST};
    const GumboElement& element = node.v.element;
    if (tags.contains(element.tag) || gumbo_get_attribute(&element.attributes, "hidden") != nullptr)
        return true;
    QString style = AttributeText(element, "style");
    return !style.isEmpty() &&
           style.remove(QLatin1Char(' ')).contains(QLatin1String("display:none"), Qt::CaseInsensitive);
}

// Collapses white space as it goes. A line break of its own outlives the blanks around it.
class TextCollector
{
public:
    void Add(const char* text)
    {
        const QString decoded = QString::fromUtf8(text);
        for (const QChar character : decoded) {
            if (character.isSpace()) {
                blank = true;
                continue;
            }
            Separate();
            result += character;
        }
    }

    void Break() { line = true; }

    QString Take() { return std::move(result); }

private:
    void Separate()
    {
        if (!result.isEmpty() && (line || blank))
            result += line ? QLatin1Char('\n') : QLatin1Char(' ');
        line = false;
        blank = false;
    }

    QString result;
    bool blank = false;
    bool line = false;
};

struct Step
{
    const GumboNode* node;
    bool leaving;
};

QString Collect(const GumboNode& start)
{
    TextCollector collector;
    std::vector<Step> steps{{&start, false}};
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        const GumboNode& node = *step.node;
        if (node.type == GUMBO_NODE_TEXT || node.type == GUMBO_NODE_WHITESPACE ||
            node.type == GUMBO_NODE_CDATA)
            collector.Add(node.v.text.text);
        if (node.type != GUMBO_NODE_ELEMENT || IsUnseen(node))
            continue;
        if (!IsInline(node.v.element.tag))
            collector.Break();
        if (step.leaving)
            continue;
        steps.push_back({&node, true});
        const GumboVector& children = node.v.element.children;
        for (unsigned int i = children.length; i > 0; --i)
            steps.push_back({static_cast<const GumboNode*>(children.data[i - 1]), false});
    }
    return collector.Take();
}

} // namespace

QString PlainText(const HtmlDocument& document)
{
    return Collect(document.Root());
}

QString PlainText(const GumboNode& node)
{
    return Collect(node).simplified();
}

} // namespace helpbuild
