#include "textedit.h"

#include <algorithm>

namespace helpbuild {
namespace {

// Copies a stretch of the source and keeps track of the raw parts of it.
class SourceCopier
{
public:
    SourceCopier(const QByteArray& sourceText, std::vector<TextRange> rawRanges, EditedText& edited)
        : source(sourceText), raw(std::move(rawRanges)), result(edited)
    {
        std::sort(raw.begin(), raw.end(),
                  [](const TextRange& a, const TextRange& b) { return a.begin < b.begin; });
    }

    void CopyUpTo(int end)
    {
        const int shift = result.text.size() - position;
        for (const TextRange& range : raw) {
            const TextRange kept{std::max(range.begin, position), std::min(range.end, end)};
            if (!kept.IsEmpty())
                result.raw.push_back({kept.begin + shift, kept.end + shift});
        }
        result.text.append(source.constData() + position, end - position);
        position = end;
    }

    void SkipTo(int end) { position = end; }
    int Position() const { return position; }

private:
    const QByteArray& source;
    std::vector<TextRange> raw;
    EditedText& result;
    int position = 0;
};

} // namespace

void EditList::Replace(const TextRange& range, const QByteArray& text, Mark mark)
{
    edits.push_back({range, text, mark});
}

void EditList::Insert(int position, const QByteArray& text, Mark mark)
{
    edits.push_back({{position, position}, text, mark});
}

EditedText EditList::Apply(const QByteArray& source, const std::vector<TextRange>& raw) const
{
    std::vector<const Edit*> order;
    for (const Edit& edit : edits)
        order.push_back(&edit);
    // Of replacements that begin together the longest rules; insertions stand before it.
    std::stable_sort(order.begin(), order.end(), [](const Edit* a, const Edit* b) {
        if (a->range.begin != b->range.begin)
            return a->range.begin < b->range.begin;
        if (a->range.IsEmpty() != b->range.IsEmpty())
            return a->range.IsEmpty();
        return a->range.end > b->range.end;
    });

    EditedText result;
    result.text.reserve(source.size());
    SourceCopier copier(source, raw, result);
    for (const Edit* edit : order) {
        if (edit->range.begin < copier.Position())
            continue;
        copier.CopyUpTo(edit->range.begin);
        const int begin = result.text.size();
        result.text.append(edit->text);
        if (edit->mark != Mark::None)
            result.marks.push_back({{begin, result.text.size()}, edit->mark});
        copier.SkipTo(edit->range.end);
    }
    copier.CopyUpTo(source.size());
    return result;
}

} // namespace helpbuild
