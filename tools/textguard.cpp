#include "textguard.h"

#include <QHash>

#include <array>

namespace helpbuild {
namespace {

// Longest name of a character reference, with its delimiters.
constexpr int kMaxReferenceLength = 34;

struct Guard
{
    const char* word;
    int disguised; ///< Which of its characters is written by its code.
    Mark real;     ///< A piece of this kind holds the word by right.
};

const Guard kScriptBegin{"<script", 0, Mark::Scripts};
const Guard kScriptEnd{"</script>", 0, Mark::Scripts};
const Guard kSheetEnd{".css\"", 3, Mark::SheetLink};
const Guard kHref{"href=\"", 3, Mark::SheetLink};
const std::array<const Guard*, 4> kPageGuards{&kScriptBegin, &kScriptEnd, &kSheetEnd, &kHref};

// Directories that the viewer folds, in links of another make than ours.
const std::array<const char*, 4> kFoldedLinks{
    "href=\"../articles_registration",
    "href=\"./articles_registration",
    "href=\"../categories_registration",
    "href=\"./categories_registration",
};

bool Matches(const QByteArray& text, int position, const char* word)
{
    const auto length = static_cast<int>(qstrlen(word));
    return position + length <= text.size() &&
           qstrnicmp(text.constData() + position, word, static_cast<uint>(length)) == 0;
}

// Walks sorted ranges along with growing positions.
template <typename Range>
class RangeCursor
{
public:
    explicit RangeCursor(const std::vector<Range>& sortedRanges) : ranges(sortedRanges) {}

    const Range* At(int position)
    {
        while (index < ranges.size() && RangeOf(ranges[index]).end <= position)
            ++index;
        const bool inside = index < ranges.size() && RangeOf(ranges[index]).Contains(position);
        return inside ? &ranges[index] : nullptr;
    }

private:
    static const TextRange& RangeOf(const TextRange& range) { return range; }
    static const TextRange& RangeOf(const MarkedRange& range) { return range.range; }

    const std::vector<Range>& ranges;
    std::size_t index = 0;
};

const Guard* GuardFor(const QByteArray& text, int position)
{
    const char first = text.at(position);
    if (first != '<' && first != '.' && first != 'h' && first != 'H')
        return nullptr;
    for (const Guard* guard : kPageGuards) {
        if (Matches(text, position, guard->word))
            return guard;
    }
    return nullptr;
}

// The same word as far as the page is concerned. Raw stretches that matter are style sheets.
QByteArray Disguised(QByteArray word, const Guard& guard, bool isRaw)
{
    // A stray end tag must stay one, and elsewhere the blank does no harm.
    if (&guard == &kScriptEnd && !isRaw)
        return word.insert(word.size() - 1, ' ');
    const auto code = static_cast<unsigned char>(word.at(guard.disguised));
    QByteArray disguise = "&#" + QByteArray::number(code) + ';';
    if (isRaw)
        disguise = '\\' + QByteArray::number(code, 16) + ' ';
    return word.replace(guard.disguised, 1, disguise);
}

bool IsFoldedLink(const QByteArray& text, int position)
{
    for (const char* link : kFoldedLinks) {
        if (Matches(text, position, link))
            return true;
    }
    return false;
}

QByteArray DecodedReference(const QByteArray& reference)
{
    static QHash<QByteArray, QByteArray> known;
    const auto found = known.constFind(reference);
    if (found != known.constEnd())
        return found.value();
    const HtmlDocument document(QByteArray("<p>") + reference);
    QByteArray decoded;
    document.ForEachNode([&](const GumboNode& node) {
        if (node.type == GUMBO_NODE_TEXT)
            decoded = node.v.text.text;
    });
    const QString text = QString::fromUtf8(decoded);
    const bool isLetter = text.size() == 1 && text.at(0).unicode() >= 0x80 && text.at(0).isLetterOrNumber();
    known.insert(reference, isLetter ? decoded : QByteArray());
    return known.value(reference);
}

} // namespace

QByteArray GuardPage(const EditedText& page, int hrefLimit)
{
    QByteArray result;
    result.reserve(page.text.size());
    RangeCursor<MarkedRange> marks(page.marks);
    RangeCursor<TextRange> raw(page.raw);
    int copied = 0;
    for (int i = 0; i < page.text.size(); ++i) {
        const Guard* guard = GuardFor(page.text, i);
        if (guard == nullptr)
            continue;
        if (guard == &kHref && i >= hrefLimit && !IsFoldedLink(page.text, i))
            continue;
        const MarkedRange* mark = marks.At(i);
        if (mark != nullptr && mark->mark == guard->real)
            continue;
        const bool isRaw = raw.At(i) != nullptr;
        result.append(page.text.constData() + copied, i - copied);
        const auto length = static_cast<int>(qstrlen(guard->word));
        result.append(Disguised(page.text.mid(i, length), *guard, isRaw));
        copied = i + length;
        i = copied - 1;
    }
    return result.append(page.text.constData() + copied, page.text.size() - copied);
}

QByteArray GuardScript(const EditedText& script)
{
    const QByteArray& text = script.text;
    const bool hasComment = text.contains("<!--");
    QByteArray result;
    RangeCursor<MarkedRange> marks(script.marks);
    for (int i = 0; i < text.size(); ++i) {
        const bool real = marks.At(i) != nullptr;
        if (!real && (Matches(text, i, kSheetEnd.word) || Matches(text, i, kHref.word))) {
            // The fourth letter of both, in the one form that strings and names have in common.
            result.append(text.mid(i, 3)).append("\\u00").append(QByteArray::number(text.at(i + 3), 16));
            i += 3;
        } else if (Matches(text, i, "</script")) {
            result.append("<\\/");
            ++i;
        } else if (hasComment && (Matches(text, i, "<script>") || Matches(text, i, "<script "))) {
            // Behind the opening of a comment it would keep the script element from ending.
            result.append("\\u003c");
        } else {
            result.append(text.at(i));
        }
    }
    return result;
}

void DecodeLetters(const QByteArray& source, const std::vector<TextRange>& raw, EditList& edits)
{
    RangeCursor<TextRange> rawRanges(raw);
    for (int begin = source.indexOf('&'); begin >= 0; begin = source.indexOf('&', begin + 1)) {
        const int end = source.indexOf(';', begin);
        if (end < 0)
            return;
        if (end - begin > kMaxReferenceLength || rawRanges.At(begin) != nullptr)
            continue;
        const QByteArray decoded = DecodedReference(source.mid(begin, end - begin + 1));
        if (!decoded.isEmpty())
            edits.Replace({begin, end + 1}, decoded);
    }
}

} // namespace helpbuild
