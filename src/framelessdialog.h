#pragma once

#include <QDialog>
#include <QPoint>

class QLayout;

/// A dialog without the window manager's frame, dragged by a strip of its own, that follows the screen's DPI
/// with a scale of its own.
class FramelessDialog : public QDialog
{
    Q_OBJECT

protected:
    explicit FramelessDialog(QWidget* parent);

    /// Takes the frame away and makes `strip` what the dialog is dragged by.
    void InitFrame(QWidget* strip);
    /// First scale pass, and from then on one for each change of the screen's DPI.
    void InitScale();

    /// Applies `factor` to all sizes; `total` is the scale that they have then.
    virtual void ScaleBy(double factor, double total) = 0;
    /// Style of a button with an indicator, of class `type`, at the scale.
    static QString IndicatorStyle(QLatin1String type, double total);

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool nativeEvent(const QByteArray& eventType, void* message, long* result) override;

private:
    bool Drag(QEvent* event);
    void ChangeDpi(int dpi);

    QWidget* dragStrip = nullptr;
    bool dragging = false;
    QPoint dragStart; ///< Where the strip was pressed.
    double scale = 1.0;
};
