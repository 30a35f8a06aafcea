#include "yxtoolbutton.h"

#include <QMouseEvent>

YxToolButton::YxToolButton(QWidget* parent) : QToolButton(parent) {}

YxToolButton::YxToolButton(const QIcon& disabled, const QIcon& normal, const QIcon& hover,
                           const QIcon& pressed, QWidget* parent)
    : QToolButton(parent), disabledIcon(disabled), normalIcon(normal), hoverIcon(hover), pressedIcon(pressed)
{
}

void YxToolButton::SetIcons(const QIcon& disabled, const QIcon& normal, const QIcon& hover,
                            const QIcon& pressed)
{
    disabledIcon = disabled;
    normalIcon = normal;
    hoverIcon = hover;
    pressedIcon = pressed;
}

void YxToolButton::SetActive(bool on)
{
    active = on;
    setIcon(active ? normalIcon : disabledIcon);
}

void YxToolButton::mousePressEvent(QMouseEvent* event)
{
    // Without the base class the button never goes down, so no click follows.
    if (!active)
        return;
    if (!pressedIcon.isNull() && event->button() == Qt::LeftButton)
        setIcon(pressedIcon);
    QToolButton::mousePressEvent(event);
}

void YxToolButton::enterEvent(QEvent* event)
{
    if (active)
        setIcon(hoverIcon);
    QToolButton::enterEvent(event);
}

void YxToolButton::leaveEvent(QEvent* event)
{
    if (active)
        setIcon(normalIcon);
    QToolButton::leaveEvent(event);
}
