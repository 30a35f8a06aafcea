#pragma once

#include <QIcon>
#include <QToolButton>

/// Button of the tool row. It swaps its picture on hover and press, and has an inactive state that looks
/// disabled and swallows clicks while the widget itself stays enabled, so that its tool tip still shows.
class YxToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit YxToolButton(QWidget* parent = nullptr);
    YxToolButton(const QIcon& disabled, const QIcon& normal, const QIcon& hover, const QIcon& pressed,
                 QWidget* parent = nullptr);

    /// Takes the pictures; the one on screen changes with the next event or SetActive.
    void SetIcons(const QIcon& disabled, const QIcon& normal, const QIcon& hover, const QIcon& pressed);
    void SetActive(bool on);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QIcon disabledIcon;
    QIcon normalIcon;
    QIcon hoverIcon;
    QIcon pressedIcon;
    [[maybe_unused]] bool checkedFlag = false;
    bool active = true;
    [[maybe_unused]] bool hoverFlag = true;
};
