#include "drawwidgettool.h"

#include <QHoverEvent>
#include <QMouseEvent>
#include <QWidget>

#include <array>

namespace {

/// One entry for each zone: the sides that follow the mouse, and the cursor.
struct ZoneTraits
{
    Qt::Edges edges;
    Qt::CursorShape cursor;
};

const std::array<ZoneTraits, DrawWidgetTool::None + 1> kZones{{
    {Qt::TopEdge, Qt::SizeVerCursor},
    {Qt::BottomEdge, Qt::SizeVerCursor},
    {Qt::LeftEdge, Qt::SizeHorCursor},
    {Qt::RightEdge, Qt::SizeHorCursor},
    {Qt::TopEdge | Qt::LeftEdge, Qt::SizeFDiagCursor},
    {Qt::BottomEdge | Qt::RightEdge, Qt::SizeFDiagCursor},
    {Qt::TopEdge | Qt::RightEdge, Qt::SizeBDiagCursor},
    {Qt::BottomEdge | Qt::LeftEdge, Qt::SizeBDiagCursor},
    {Qt::Edges(), Qt::ArrowCursor},
}};

} // namespace

DrawWidgetTool::DrawWidgetTool(QObject* parent) : QObject(parent) {}

DrawWidgetTool::~DrawWidgetTool() = default;

void DrawWidgetTool::SetWidget(QWidget* window)
{
    if (widget)
        return;
    widget = window;
    widget->setAttribute(Qt::WA_MouseTracking);
    widget->setAttribute(Qt::WA_Hover);
    widget->installEventFilter(this);
}

void DrawWidgetTool::SetEdgeWidth(int pixels)
{
    edgeWidth = pixels;
}

void DrawWidgetTool::SetTopLimit(int height)
{
    topLimit = height;
}

void DrawWidgetTool::SetLeftButtonOnly()
{
    leftButtonOnly = true;
}

bool DrawWidgetTool::CanMove() const
{
    return canMove;
}

bool DrawWidgetTool::eventFilter(QObject* object, QEvent* event)
{
    if (!widget || object != widget || widget->isMaximized())
        return QObject::eventFilter(object, event);

    switch (event->type()) {
    case QEvent::HoverMove:
        Track(static_cast<QHoverEvent*>(event)->pos());
        break;
    case QEvent::MouseButtonPress:
        if (!Press(static_cast<QMouseEvent*>(event)))
            return false;
        break;
    case QEvent::MouseMove:
        if (pressed)
            Resize(static_cast<QMouseEvent*>(event)->globalPos());
        break;
    case QEvent::MouseButtonRelease:
        Release();
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

int DrawWidgetTool::HitTest(const QPoint& position) const
{
    const int x = position.x();
    const int y = position.y();
    const int w = widget->width();
    const int h = widget->height();
    const int m = edgeWidth;

    const bool beside = topLimit < y && y < h - m;
    const bool between = m < x && x < w - m;
    const bool nearLeft = -m <= x && x < m;
    const bool nearRight = w - m < x && x <= w + m;
    const bool nearTop = -m <= y && y < m;
    const bool nearBottom = h - m < y && y <= h + m;

    // The first that holds decides: the bands come before the corners.
    if (x <= m && beside)
        return Left;
    if (x >= w - m && beside)
        return Right;
    if (y >= h - m && between)
        return Bottom;
    if (nearLeft && nearTop)
        return TopLeft;
    if (nearRight && nearTop)
        return TopRight;
    if (nearLeft && nearBottom)
        return BottomLeft;
    if (nearRight && nearBottom)
        return BottomRight;
    if (y <= m && between)
        return Top;
    return None;
}

void DrawWidgetTool::Track(const QPoint& position)
{
    if (pressed)
        return;
    zone = HitTest(position);
    widget->setCursor(kZones[zone].cursor);
}

bool DrawWidgetTool::Press(const QMouseEvent* event)
{
    zone = HitTest(event->pos());
    if (zone == None || (leftButtonOnly && event->button() != Qt::LeftButton))
        return false;
    pressPos = event->pos();
    pressed = true;
    canMove = false;
    return true;
}

void DrawWidgetTool::Resize(const QPoint& globalPosition)
{
    const Qt::Edges edges = kZones[zone].edges;
    QRect geometry = widget->geometry();
    if (edges & Qt::TopEdge)
        geometry.setTop(globalPosition.y());
    if (edges & Qt::BottomEdge)
        geometry.setBottom(globalPosition.y() - 1);
    if (edges & Qt::LeftEdge)
        geometry.setLeft(globalPosition.x());
    if (edges & Qt::RightEdge)
        geometry.setRight(globalPosition.x() - 1);
    widget->setGeometry(geometry);
    widget->update();
}

void DrawWidgetTool::Release()
{
    if (!pressed)
        return;
    pressed = false;
    canMove = true;
}
