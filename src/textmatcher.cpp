#include "textmatcher.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace {

bool IsAsciiLetter(char16_t c)
{
    return (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
}

char16_t Lower(char16_t c)
{
    if (c < 0x80)
        return IsAsciiLetter(c) ? c | 0x20 : c;
    return QChar(c).toLower().unicode();
}

// The class [^a-zA-Z] without regard to case also refuses what has an ASCII letter as its other case: long s,
// the Kelvin sign and the i without a dot.
bool IsWordEdge(char16_t c)
{
    if (c < 0x80)
        return !IsAsciiLetter(c);
    return Lower(c) >= 0x80 && QChar(c).toUpper().unicode() >= 0x80;
}

QString LowerEach(QString text)
{
    for (QChar& c : text)
        c = QChar(Lower(c.unicode()));
    return text;
}

using LowerAndForm = std::pair<char16_t, char16_t>;

// The characters that are another one in lower case, sorted by that one. Upper case of the lower case would
// miss some: "k" is the lower case of the Kelvin sign too.
const std::vector<LowerAndForm>& CaseForms()
{
    static const std::vector<LowerAndForm> forms = [] {
        std::vector<LowerAndForm> found;
        for (char16_t c = 0; c < 0xffff; ++c) {
            if (Lower(c) != c)
                found.emplace_back(Lower(c), c);
        }
        std::sort(found.begin(), found.end());
        return found;
    }();
    return forms;
}

// How telling it is to meet the character in a page: the commonest first, in the mix of English and tags that
// help pages are.
qsizetype Rarity(QChar c)
{
    static const QString common = QStringLiteral(" etas<>niolr\"cp/dmh=fgbqu\nv.-wy:)($x,;&k#@");
    const int at = common.indexOf(c);
    return at < 0 ? common.size() : at;
}

struct Span
{
    qsizetype begin = 0;
    qsizetype end = 0;

    bool Holds(const Span& other) const { return begin <= other.begin && other.end <= end; }
};

struct SectionMarks
{
    explicit SectionMarks(const QString& name)
        : open(QString(QLatin1Char('<') + name))
        , close(QString(QLatin1String("</") + name + QLatin1Char('>')))
    {
    }

    CaselessText open;
    CaselessText close;
};

const SectionMarks& TitleMarks()
{
    static const SectionMarks marks(QStringLiteral("title"));
    return marks;
}

const SectionMarks& BodyMarks()
{
    static const SectionMarks marks(QStringLiteral("body"));
    return marks;
}

// The last place is near the end as a rule, so ever longer ends of the page are looked through.
qsizetype FindLast(const CaselessText& text, QStringView page, qsizetype from)
{
    constexpr qsizetype kFirstReach = 256;
    for (qsizetype reach = kFirstReach;; reach *= 4) {
        const qsizetype start = std::max(from, page.size() - reach);
        qsizetype last = -1;
        for (qsizetype at = start; (at = text.Find(page, at, page.size())) >= 0; ++at)
            last = at;
        if (last >= 0 || start == from)
            return last;
    }
}

// From the first opening mark to the last closing one behind it; empty when there is none.
Span FindSection(QStringView page, const SectionMarks& marks)
{
    const qsizetype begin = marks.open.Find(page, 0, page.size());
    if (begin < 0)
        return {};
    const qsizetype last = FindLast(marks.close, page, begin + marks.open.Size());
    return last < 0 ? Span{} : Span{begin, last + marks.close.Size()};
}

// Words are rarer than sections: a page without the word is not searched for anything else.
bool HoldsWord(QStringView page, const CaselessText& word)
{
    std::optional<Span> body;
    std::optional<Span> title;
    const qsizetype end = page.size() - 1;
    for (qsizetype at = 1; (at = word.Find(page, at, end)) >= 0; ++at) {
        const Span found{at - 1, at + word.Size() + 1};
        if (!IsWordEdge(page.utf16()[found.begin]) || !IsWordEdge(page.utf16()[found.end - 1]))
            continue;
        if (!body)
            body = FindSection(page, BodyMarks());
        if (body->Holds(found))
            return true;
        if (!title)
            title = FindSection(page, TitleMarks());
        if (title->Holds(found))
            return true;
    }
    return false;
}

bool HoldsExpression(const QString& page, const QRegExp& expression)
{
    const auto inSection = [&](const SectionMarks& marks) {
        const Span span = FindSection(page, marks);
        const QString section = page.mid(int(span.begin), int(span.end - span.begin));
        return expression.indexIn(section) >= 0;
    };
    return expression.isValid() && (inSection(TitleMarks()) || inSection(BodyMarks()));
}

std::variant<CaselessText, QRegExp> Sought(const QString& text)
{
    if (CaselessText::Replaces(text))
        return CaselessText(text);
    return QRegExp(QStringLiteral("[^a-zA-Z]%1[^a-zA-Z]").arg(text), Qt::CaseInsensitive);
}

} // namespace

bool CaselessText::Replaces(const QString& expression)
{
    static const QString operators = QStringLiteral("$()*+.?[\\]^{|}");
    const bool plain = std::none_of(expression.begin(), expression.end(),
                                    [](QChar c) { return c.isSurrogate() || operators.contains(c); });
    // QRegExp looks for the lower case of the whole text first. Where that is longer, as that of the capital
    // I with a dot, it misses what its characters one by one would match.
    return plain && !expression.isEmpty() && expression.toLower() == LowerEach(expression);
}

CaselessText::CaselessText(const QString& text) : lower(LowerEach(text))
{
    Q_ASSERT(!text.isEmpty());
    qsizetype rarest = 0;
    qsizetype second = lower.size() - 1;
    for (int i = 1; i < lower.size(); ++i) {
        if (Rarity(lower.at(i)) > Rarity(lower.at(int(rarest))))
            second = std::exchange(rarest, i);
        else if (second == rarest || Rarity(lower.at(i)) > Rarity(lower.at(int(second))))
            second = i;
    }
    pivots = {PivotAt(rarest), PivotAt(second)};
}

CaselessText::Pivot CaselessText::PivotAt(qsizetype offset) const
{
    const char16_t c = lower.at(int(offset)).unicode();
    Pivot pivot{offset, {c, c, c}};
    auto free = pivot.forms.begin() + 1;
    for (auto form = std::lower_bound(CaseForms().begin(), CaseForms().end(), LowerAndForm(c, 0));
         form != CaseForms().end() && form->first == c; ++form) {
        Q_ASSERT(free != pivot.forms.end());
        *free++ = form->second;
    }
    return pivot;
}

qsizetype CaselessText::Find(QStringView page, qsizetype from, qsizetype end) const
{
    const char16_t* characters = page.utf16();
    const qsizetype stop = end - Size() + 1;
    for (qsizetype at = from; (at = SkipBlocks(characters, at, stop)) < stop;) {
        for (const qsizetype blockEnd = std::min(at + kBlock, stop); at < blockEnd; ++at) {
            if (pivots[0].Fits(characters[at + pivots[0].offset]) && StandsAt(characters + at))
                return at;
        }
    }
    return -1;
}

// The first place whose block could hold the text. The loop over a block has no branches, so that compilers
// turn it into vector instructions.
qsizetype CaselessText::SkipBlocks(const char16_t* page, qsizetype at, qsizetype stop) const
{
    const auto [a0, a1, a2] = pivots[0].forms;
    const auto [b0, b1, b2] = pivots[1].forms;
    for (; at + kBlock <= stop; at += kBlock) {
        const char16_t* a = page + at + pivots[0].offset;
        const char16_t* b = page + at + pivots[1].offset;
        unsigned short any = 0;
        for (int i = 0; i < kBlock; ++i)
            any |=
                ((a[i] == a0) | (a[i] == a1) | (a[i] == a2)) & ((b[i] == b0) | (b[i] == b1) | (b[i] == b2));
        if (any != 0)
            break;
    }
    return at;
}

bool CaselessText::StandsAt(const char16_t* place) const
{
    return std::all_of(lower.begin(), lower.end(), [&](QChar c) { return Lower(*place++) == c.unicode(); });
}

TextMatcher::TextMatcher(const QString& text) : sought(Sought(text)) {}

bool TextMatcher::Matches(const QString& html) const
{
    if (const auto* word = std::get_if<CaselessText>(&sought))
        return HoldsWord(html, *word);
    return HoldsExpression(html, std::get<QRegExp>(sought));
}
