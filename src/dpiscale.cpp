#include "dpiscale.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

double currentScale = 1.0;
double stepScale = 1.0;
bool scaleActive = false;
bool fromDesign = false;

namespace {

constexpr double kDesignDpi = 96.0;
constexpr double kSameScale = 1e-6;

bool IsCurrent(double scale)
{
    return std::abs(scale - currentScale) < kSameScale;
}

double RatioTo(double scale)
{
    return currentScale > scale ? scale / currentScale : (1.0 / currentScale) * scale;
}

} // namespace

double ScreenScale()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 0.0;
    const auto dpi = static_cast<float>(qRound(screen->logicalDotsPerInchX()));
    return static_cast<double>(dpi) / kDesignDpi;
}

void InitScale()
{
    const double scale = ScreenScale();
    currentScale = scale;
    if (std::abs(scale - 1.0) < kSameScale)
        return;
    scaleActive = true;
    stepScale *= scale;
}

bool UpdateScale(int dpi)
{
    const double scale = dpi / kDesignDpi;
    if (IsCurrent(scale))
        return false;
    stepScale = RatioTo(scale);
    currentScale = scale;
    scaleActive = true;
    return true;
}

double ScaleRatio(int dpi)
{
    const double scale = dpi / kDesignDpi;
    return IsCurrent(scale) ? currentScale : RatioTo(scale);
}

void SetFromDesign(bool on)
{
    fromDesign = on;
}

int ScaleValue(int value)
{
    return scaleActive ? qRound(value * currentScale) : value;
}

int IdentityValue(double value)
{
    return qRound(value);
}
