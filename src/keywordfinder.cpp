#include "keywordfinder.h"

#include "textmatcher.h"

#include <QRegExp>

#include <algorithm>

namespace {

/// One walk for both: a name that begins with the text ends it, the first that holds the text is kept.
/// `place` tells where a name's first characters hold the text; all of them, or no more than the text has.
template <typename Place>
int FindName(const QVector<QString>& names, Place place)
{
    int inner = -1;
    for (int row = 0; row < names.size(); ++row) {
        const qsizetype at = place(names.at(row), inner < 0);
        if (at == 0)
            return row;
        if (at > 0)
            inner = row;
    }
    return inner;
}

} // namespace

int FindKeyword(const QVector<QString>& names, const QString& text)
{
    if (text.isEmpty())
        return -1;
    if (CaselessText::Replaces(text)) {
        const CaselessText plain(text);
        return FindName(names, [&](const QString& name, bool whole) {
            return plain.Find(name, 0, whole ? name.size() : std::min<qsizetype>(plain.Size(), name.size()));
        });
    }
    const QRegExp atStart(QLatin1Char('^') + text + QLatin1String(".*"), Qt::CaseInsensitive);
    const QRegExp anywhere(QLatin1String("^.*") + text + QLatin1String(".*"), Qt::CaseInsensitive);
    return FindName(names, [&](const QString& name, bool whole) {
        return atStart.indexIn(name) >= 0 ? 0 : whole && anywhere.indexIn(name) >= 0 ? 1 : -1;
    });
}
