#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <functional>

namespace helpbuild {

/// A place in the input. Line 0 stands for the file as a whole.
struct SourcePlace
{
    QString file;
    int line = 0;
};

/// "file:line", or "file" alone.
QString PlaceText(const SourcePlace& place);

/// What a build tolerates, and counts.
enum class Finding {
    BrokenMarkup,
    Encoding,
    MissingImage,
    MissingFile,
    DeadLink,
    FileLink,
    LeftOut,
    RewrittenKey,
    Section,
};

/// Collects what a build has to say: the one error that ends it, and the findings it lives with.
class Diagnostics
{
public:
    using Sink = std::function<void(const QString& line)>;

    /// Of each kind the first `shownPerKind` findings go to `sink`; all are counted.
    explicit Diagnostics(Sink sink = {}, int shownPerKind = 5);

    /// Keeps the error, the first one only. Always false, so that it can be returned.
    bool Fail(const SourcePlace& place, const QString& text);

    void Report(Finding kind, const SourcePlace& place, const QString& text);

    bool Failed() const { return !error.isEmpty(); }
    const QString& Error() const { return error; }
    int Count(Finding kind) const { return counts[static_cast<std::size_t>(kind)]; }

    /// One line for each kind that was found.
    QStringList Summary() const;

private:
    static constexpr std::size_t kKinds = static_cast<std::size_t>(Finding::Section) + 1;

    Sink output;
    int shown;
    std::array<int, kKinds> counts{};
    QString error;
};

} // namespace helpbuild
