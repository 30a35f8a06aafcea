#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

class QMouseEvent;
class QWidget;

/// Resizes a frameless window by its edges and corners, as an event filter on the window.
class DrawWidgetTool : public QObject
{
    Q_OBJECT

public:
    /// Parts of the window's border, in the order of their cursors.
    enum Zone {
        Top,
        Bottom,
        Left,
        Right,
        TopLeft,
        BottomRight,
        TopRight,
        BottomLeft,
        None,
    };

    explicit DrawWidgetTool(QObject* parent = nullptr);
    ~DrawWidgetTool() override;

    /// The window, not owned. Only the first call counts.
    void SetWidget(QWidget* window);
    void SetEdgeWidth(int pixels);
    /// The bands at the left and right begin below this height, which leaves the title area free.
    void SetTopLimit(int height);
    void SetLeftButtonOnly();

    /// False while a resize runs: the title area must not move the window at the same time.
    bool CanMove() const;

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    int HitTest(const QPoint& position) const;
    void Track(const QPoint& position);
    bool Press(const QMouseEvent* event);
    void Resize(const QPoint& globalPosition);
    void Release();

    bool pressed = false;
    bool leftButtonOnly = true;
    QWidget* widget = nullptr;
    int zone = None;
    int edgeWidth = 0;
    int topLimit = 0;
    bool canMove = true;
    QPoint pressPos;
};
