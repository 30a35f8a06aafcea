#pragma once

#include <QObject>
#include <QPoint>

class DrawWidgetTool;
class QMouseEvent;
class QWidget;

/// Where `window` stood when the mouse event happened that its child `receiver` got. A window manager carries
/// a move out a while after it was asked for, and till then the mouse's place in the window is an old one.
QPoint WindowPosAt(const QMouseEvent* event, const QWidget* receiver, const QWidget* window);

/// Moves a frameless window by dragging a part of it, as an event filter on that part.
class MoveWidgetTool : public QObject
{
    Q_OBJECT

public:
    explicit MoveWidgetTool(QObject* parent = nullptr);
    ~MoveWidgetTool() override;

    /// The part to drag and the window that moves, neither owned. Only the first call counts.
    void SetWidgets(QWidget* area, QWidget* target);
    /// Whose resizing forbids to move; not owned.
    void SetDrawTool(DrawWidgetTool* tool);
    void SetLeftButtonOnly();

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool Press(const QMouseEvent* event);
    bool Move(const QMouseEvent* event);

    QPoint pressPos;
    bool pressed = false;
    bool leftButtonOnly = true;
    QWidget* dragArea = nullptr;
    QWidget* window = nullptr;
    DrawWidgetTool* drawTool = nullptr;
};
