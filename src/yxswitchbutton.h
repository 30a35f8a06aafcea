#pragma once

#include <QColor>
#include <QWidget>

class QTimer;

/// On/off slider: a round knob in a rounded track. A press of any mouse button flips it, and so does the
/// space key. Setting it from the program works as a press does, slide and signal included.
class YxSwitchButton : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int space READ space WRITE setSpace)
    Q_PROPERTY(int rectRadius READ rectRadius WRITE setRectRadius)
    Q_PROPERTY(bool checked READ checked WRITE setChecked)
    Q_PROPERTY(bool animation READ animation WRITE setAnimation)
    Q_PROPERTY(QColor bgColorOff READ bgColorOff WRITE setBgColorOff)
    Q_PROPERTY(QColor bgColorOn READ bgColorOn WRITE setBgColorOn)
    Q_PROPERTY(QColor sliderColorOff READ sliderColorOff WRITE setSliderColorOff)
    Q_PROPERTY(QColor sliderColorOn READ sliderColorOn WRITE setSliderColorOn)

public:
    explicit YxSwitchButton(QWidget* parent = nullptr);

    int space() const { return spaceValue; }
    int rectRadius() const { return rectRadiusValue; }
    bool checked() const { return checkedValue; }
    bool animation() const { return animationValue; }
    QColor bgColorOff() const { return bgColorOffValue; }
    QColor bgColorOn() const { return bgColorOnValue; }
    QColor sliderColorOff() const { return sliderColorOffValue; }
    QColor sliderColorOn() const { return sliderColorOnValue; }

signals:
    void checkedChanged(bool checked);

public slots:
    void setSpace(int space);
    /// Lasts until the next painting, which takes half the height.
    void setRectRadius(int rectRadius);
    /// At once, or 10 ms later on a switch that is narrower than 50 pixels or has no size yet.
    void setChecked(bool checked);
    void setAnimation(bool animation);
    void setBgColorOff(const QColor& bgColorOff);
    void setBgColorOn(const QColor& bgColorOn);
    void setSliderColorOff(const QColor& sliderColorOff);
    void setSliderColorOn(const QColor& sliderColorOn);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void change();
    void updateValue();

private:
    template <typename T>
    void Assign(T& field, const T& value);
    int KnobTarget() const;
    void PaintTrack(QPainter& painter);
    void PaintKnob(QPainter& painter);

    int spaceValue = 2;
    int rectRadiusValue = 7;
    bool checkedValue = false;
    bool animationValue = false;
    QColor bgColorOffValue{220, 220, 220, 255};
    QColor bgColorOnValue{59, 148, 253, 255};
    QColor sliderColorOffValue{255, 255, 255, 255};
    QColor sliderColorOnValue{255, 255, 255, 255};
    int step = 0;   ///< Pixels per tick.
    int startX = 0; ///< Left edge of the knob's travel now.
    int endX = 0;   ///< Where the slide goes.
    QTimer* timer;
};
