#include "keywordfinder.h"

#include "textmatcher.h"

#include <QRegExp>

#include <algorithm>

namespace {

/// One walk for both: a name that begins with the text ends it, the first that holds the text is kept.
template <typename Begins, typename Holds>
int FindRow(const QList<TreeViewModel>& rows, Begins begins, Holds holds)
{
    int inner = -1;
    for (int row = 0; row < rows.size(); ++row) {
        const QString& name = rows.at(row).FileName;
        if (begins(name))
            return row;
        if (inner < 0 && holds(name))
            inner = row;
    }
    return inner;
}

} // namespace

int FindKeyword(const QList<TreeViewModel>& rows, const QString& text)
{
    if (text.isEmpty())
        return -1;
    if (CaselessText::Replaces(text)) {
        const CaselessText plain(text);
        return FindRow(
            rows,
            [&](const QString& name) {
                return plain.Find(name, 0, std::min<qsizetype>(plain.Size(), name.size())) == 0;
            },
            [&](const QString& name) { return plain.Find(name, 0, name.size()) >= 0; });
    }
    const QRegExp atStart(QLatin1Char('^') + text + QLatin1String(".*"), Qt::CaseInsensitive);
    const QRegExp anywhere(QLatin1String("^.*") + text + QLatin1String(".*"), Qt::CaseInsensitive);
    return FindRow(
        rows, [&](const QString& name) { return atStart.indexIn(name) >= 0; },
        [&](const QString& name) { return anywhere.indexIn(name) >= 0; });
}
