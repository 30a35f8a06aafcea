#include "yxswitchbutton.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

namespace {

constexpr int kTickMs = 30;
constexpr int kTicksOfSlide = 7;
constexpr int kSettleMs = 10;
constexpr int kDisabledAlpha = 60;
const QColor kFocusColor(16, 70, 160);

} // namespace

YxSwitchButton::YxSwitchButton(QWidget* parent) : QWidget(parent), timer(new QTimer(this))
{
    setFocusPolicy(Qt::TabFocus);
    timer->setInterval(kTickMs);
    connect(timer, &QTimer::timeout, this, &YxSwitchButton::updateValue);
}

template <typename T>
void YxSwitchButton::Assign(T& field, const T& value)
{
    if (field == value)
        return;
    field = value;
    update();
}

void YxSwitchButton::setSpace(int space)
{
    Assign(spaceValue, space);
}

void YxSwitchButton::setRectRadius(int rectRadius)
{
    Assign(rectRadiusValue, rectRadius);
}

void YxSwitchButton::setChecked(bool checked)
{
    if (checked == checkedValue)
        return;
    // Without a step there is no size yet to slide in: the switch gets the time to be laid out.
    if (step != 0)
        mousePressEvent(nullptr);
    else
        QTimer::singleShot(kSettleMs, this, SLOT(change()));
}

void YxSwitchButton::setAnimation(bool animation)
{
    animationValue = animation;
}

void YxSwitchButton::setBgColorOff(const QColor& bgColorOff)
{
    Assign(bgColorOffValue, bgColorOff);
}

void YxSwitchButton::setBgColorOn(const QColor& bgColorOn)
{
    Assign(bgColorOnValue, bgColorOn);
}

void YxSwitchButton::setSliderColorOff(const QColor& sliderColorOff)
{
    Assign(sliderColorOffValue, sliderColorOff);
}

void YxSwitchButton::setSliderColorOn(const QColor& sliderColorOn)
{
    Assign(sliderColorOnValue, sliderColorOn);
}

int YxSwitchButton::KnobTarget() const
{
    return checkedValue ? width() - height() : 0;
}

void YxSwitchButton::mousePressEvent(QMouseEvent* /*event*/)
{
    checkedValue = !checkedValue;
    emit checkedChanged(checkedValue);

    step = width() / kTicksOfSlide;
    endX = KnobTarget();
    if (animationValue) {
        timer->start();
    } else {
        startX = endX;
        update();
    }
}

void YxSwitchButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat())
        mousePressEvent(nullptr);
}

void YxSwitchButton::change()
{
    mousePressEvent(nullptr);
}

void YxSwitchButton::updateValue()
{
    // The last step may overshoot; the tick after it puts the knob right.
    if (checkedValue && startX < endX) {
        startX += step;
    } else if (!checkedValue && startX > endX) {
        startX -= step;
    } else {
        startX = endX;
        timer->stop();
    }
    update();
}

void YxSwitchButton::resizeEvent(QResizeEvent* /*event*/)
{
    step = width() / 50;
    startX = KnobTarget();
    update();
}

void YxSwitchButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    PaintTrack(painter);
    PaintKnob(painter);
}

void YxSwitchButton::PaintTrack(QPainter& painter)
{
    QColor color = checkedValue ? bgColorOnValue : bgColorOffValue;
    if (!isEnabled())
        color.setAlpha(kDisabledAlpha);
    rectRadiusValue = height() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect(), rectRadiusValue, rectRadiusValue);
    if (!hasFocus())
        return;
    painter.setPen(kFocusColor);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), rectRadiusValue, rectRadiusValue);
}

void YxSwitchButton::PaintKnob(QPainter& painter)
{
    const int side = height() - 2 * spaceValue;
    painter.setPen(Qt::NoPen);
    painter.setBrush(checkedValue ? sliderColorOnValue : sliderColorOffValue);
    // The radius is that of the track and more than half the side, which makes the knob round.
    painter.drawRoundedRect(QRect(startX + spaceValue, spaceValue, side, side), rectRadiusValue,
                            rectRadiusValue);
}
