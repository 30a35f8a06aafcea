#pragma once

#include "htmldocument.h"

#include <QByteArray>

#include <vector>

namespace helpbuild {

/// What a piece of an edited text is for the viewer.
enum class Mark {
    None,
    SheetLink, ///< Names a style sheet in the form that the viewer looks for.
    Scripts,   ///< The page's script elements.
};

struct MarkedRange
{
    TextRange range;
    Mark mark = Mark::None;
};

/// A text after its edits, with the marked pieces and the raw stretches where they stand now.
struct EditedText
{
    QByteArray text;
    std::vector<MarkedRange> marks;
    std::vector<TextRange> raw;
};

/// Collects changes to a text by the positions of the unchanged text and makes them all at once.
class EditList
{
public:
    void Replace(const TextRange& range, const QByteArray& text, Mark mark = Mark::None);
    void Remove(const TextRange& range) { Replace(range, QByteArray()); }
    void Insert(int position, const QByteArray& text, Mark mark = Mark::None);

    /// A change inside a stretch that another one replaces is dropped with it. Insertions at one place keep
    /// their order. `raw` are stretches of the unchanged text.
    EditedText Apply(const QByteArray& source, const std::vector<TextRange>& raw) const;

private:
    struct Edit
    {
        TextRange range;
        QByteArray text;
        Mark mark;
    };

    std::vector<Edit> edits;
};

} // namespace helpbuild
