#include "movewidgettool.h"

#include "drawwidgettool.h"
#include "yxglobalsignal.h"

#include <QMouseEvent>
#include <QWidget>

QPoint WindowPosAt(const QMouseEvent* event, const QWidget* receiver, const QWidget* window)
{
    // An event that a program made may say anything about the place on the screen.
    if (!event->spontaneous())
        return window->pos();
    return event->globalPos() - event->pos() - receiver->mapTo(window, QPoint());
}

MoveWidgetTool::MoveWidgetTool(QObject* parent) : QObject(parent) {}

MoveWidgetTool::~MoveWidgetTool() = default;

void MoveWidgetTool::SetWidgets(QWidget* area, QWidget* target)
{
    if (dragArea || window)
        return;
    dragArea = area;
    window = target;
    dragArea->installEventFilter(this);
}

void MoveWidgetTool::SetDrawTool(DrawWidgetTool* tool)
{
    drawTool = tool;
}

void MoveWidgetTool::SetLeftButtonOnly()
{
    leftButtonOnly = true;
}

bool MoveWidgetTool::eventFilter(QObject* object, QEvent* event)
{
    if (!dragArea || object != dragArea)
        return QObject::eventFilter(object, event);

    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (!Press(static_cast<QMouseEvent*>(event)))
            return false;
        break;
    case QEvent::MouseMove:
        if (pressed && !Move(static_cast<QMouseEvent*>(event)))
            return false;
        break;
    case QEvent::MouseButtonRelease:
        pressed = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

bool MoveWidgetTool::Press(const QMouseEvent* event)
{
    if (leftButtonOnly && event->button() != Qt::LeftButton)
        return false;
    if (dragArea->rect().contains(event->pos())) {
        pressPos = event->pos();
        pressed = true;
    }
    return true;
}

bool MoveWidgetTool::Move(const QMouseEvent* event)
{
    const QPoint position = WindowPosAt(event, dragArea, window) + event->pos() - pressPos;
    const QWidget* parent = dragArea->parentWidget();
    if (parent && parent->isMaximized()) {
        // The window goes back to its normal size first; this move doesn't shift it.
        emit YxGlobalSignal::Instance()->DragWidgetBMaximized();
        return false;
    }
    if (!drawTool || drawTool->CanMove())
        window->move(position);
    return true;
}
