#pragma once

#include <QElapsedTimer>
#include <QString>

namespace helpbuild {

/// One line on a terminal that is written over as the work goes on. Silent elsewhere.
class Progress
{
public:
    explicit Progress(bool visible) : active(visible) {}

    /// `done` of `total` steps, now at `what`. Drawn ten times a second at most.
    void Show(int done, int total, const QString& what);

    /// Takes the line away, so that other output can be written.
    void Clear();

private:
    bool active;
    bool drawn = false;
    QElapsedTimer lastDraw;
};

} // namespace helpbuild
