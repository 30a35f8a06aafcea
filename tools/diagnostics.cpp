#include "diagnostics.h"

#include <utility>

namespace helpbuild {
namespace {

const std::array<const char*, 9> kSummaryTexts{
    "pages with broken markup, taken as a browser takes them",
    "files whose text doesn't fit their character set",
    "references to images that don't exist",
    "references to style sheets, scripts or other files that don't exist",
    "links to pages that aren't among the topics; their text stays",
    "links to files that are no pages; their text stays",
    "parts that the viewer can't show, left out",
    "topic keys rewritten",
    "sections without an entry of their own",
};

} // namespace

QString PlaceText(const SourcePlace& place)
{
    if (place.line <= 0)
        return place.file;
    return place.file + QLatin1Char(':') + QString::number(place.line);
}

Diagnostics::Diagnostics(Sink sink, int shownPerKind) : output(std::move(sink)), shown(shownPerKind)
{
    static_assert(kSummaryTexts.size() == kKinds);
}

bool Diagnostics::Fail(const SourcePlace& place, const QString& text)
{
    if (error.isEmpty()) {
        error = place.file.isEmpty() ? text : QString(PlaceText(place) + QLatin1String(": ") + text);
        error.replace(QLatin1Char('\n'), QLatin1Char(' '));
    }
    return false;
}

void Diagnostics::Report(Finding kind, const SourcePlace& place, const QString& text)
{
    int& count = counts[static_cast<std::size_t>(kind)];
    ++count;
    if (output && count <= shown)
        output(PlaceText(place) + QLatin1String(": warning: ") + text);
}

QStringList Diagnostics::Summary() const
{
    QStringList lines;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        if (counts[kind] > 0)
            lines << QString::number(counts[kind]) + QLatin1Char(' ') + QLatin1String(kSummaryTexts[kind]);
    }
    return lines;
}

} // namespace helpbuild
