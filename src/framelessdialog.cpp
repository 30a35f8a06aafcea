#include "framelessdialog.h"

#include "dpiscale.h"
#include "movewidgettool.h"
#include "platform.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

#include <cmath>

namespace {

constexpr double kDesignDpi = 96.0;
constexpr double kSameScale = 1e-6;
constexpr int kIndicatorPixels = 17;
constexpr int kFontPixels = 12;

} // namespace

FramelessDialog::FramelessDialog(QWidget* parent) : QDialog(parent) {}

void FramelessDialog::InitFrame(QWidget* strip)
{
    Qt::WindowFlags flags = windowFlags() | Qt::FramelessWindowHint;
    flags.setFlag(Qt::BypassWindowManagerHint, platform::kBypassWindowManager);
    setWindowFlags(flags);
    dragStrip = strip;
    dragStrip->installEventFilter(this);
}

void FramelessDialog::InitScale()
{
    SetFromDesign(true);
    if (scaleActive) {
        ScaleBy(currentScale, currentScale);
        scale = currentScale;
    }
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (platform::kDpiArrivesAsMessage || !screen)
        return;
    // Queued: the main window takes the new scale first, whichever of the two connected first.
    connect(
        screen, &QScreen::logicalDotsPerInchChanged, this,
        [this, screen] { ChangeDpi(qRound(screen->logicalDotsPerInchX())); }, Qt::QueuedConnection);
}

bool FramelessDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == dragStrip && !Drag(event))
        return false;
    return QDialog::eventFilter(watched, event);
}

bool FramelessDialog::Drag(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() != Qt::LeftButton)
            return false;
        dragStart = press->pos();
        dragging = true;
    } else if (event->type() == QEvent::MouseButtonRelease) {
        dragging = false;
    } else if (event->type() == QEvent::MouseMove && dragging) {
        const auto* motion = static_cast<QMouseEvent*>(event);
        move(WindowPosAt(motion, dragStrip, this) + motion->pos() - dragStart);
    }
    return true;
}

bool FramelessDialog::nativeEvent(const QByteArray& eventType, void* message, long* result)
{
    if (const auto dpi =
            platform::DpiOfNativeMessage({eventType.constData(), size_t(eventType.size())}, message))
        ChangeDpi(*dpi);
    return QDialog::nativeEvent(eventType, message, result);
}

void FramelessDialog::ChangeDpi(int dpi)
{
    const double total = dpi / kDesignDpi;
    double factor = 1.0;
    if (std::abs(total - scale) >= kSameScale) {
        const double ratio = ScaleRatio(dpi);
        factor = scale > ratio ? total / scale : ratio / scale;
    }
    ScaleBy(factor, total);
    scale = total;
}

QString FramelessDialog::IndicatorStyle(QLatin1String type, double total)
{
    const int indicator = qRound(total * kIndicatorPixels);
    return QStringLiteral("%1::indicator\t\t\t\t\t\t\t\t\t\t{width:%2px;height:%2px;}"
                          "\t\t\t\t\t\t\t\t\t\t%1\t\t\t\t\t\t\t\t\t\t{font-size:%3px;}")
        .arg(type)
        .arg(indicator)
        .arg(qRound(total * kFontPixels));
}
