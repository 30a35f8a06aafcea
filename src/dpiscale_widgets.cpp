#include "dpiscale.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr double kDefaultFontPixels = 12.0;

/// One side of a widget's size limits, as the widget's own accessors.
struct Limit
{
    int (QWidget::*get)() const;
    void (QWidget::*set)(int);
};

constexpr Limit kMinimumHeight{&QWidget::minimumHeight, &QWidget::setMinimumHeight};
constexpr Limit kMinimumWidth{&QWidget::minimumWidth, &QWidget::setMinimumWidth};
constexpr Limit kMaximumHeight{&QWidget::maximumHeight, &QWidget::setMaximumHeight};
constexpr Limit kMaximumWidth{&QWidget::maximumWidth, &QWidget::setMaximumWidth};

double PassFactor()
{
    return fromDesign ? currentScale : stepScale;
}

int Scaled(int value, double factor)
{
    return qRound(value * factor);
}

QSize Truncated(const QSize& size, double factor)
{
    return {static_cast<int>(size.width() * factor), static_cast<int>(size.height() * factor)};
}

void ScaleLimit(QWidget* widget, const Limit& limit, double factor)
{
    // "No limit" times a factor is still none; the toolkit warns about anything above it.
    (widget->*limit.set)(qMin(Scaled((widget->*limit.get)(), factor), QWIDGETSIZE_MAX));
}

void SetStylePixels(QWidget* widget, const QString& rule, int pixels)
{
    widget->setStyleSheet(rule.arg(pixels));
}

void SetFontPixels(QWidget* widget, int pixels)
{
    SetStylePixels(widget, QStringLiteral("font-size:%1px;"), pixels);
}

void ScaleMargins(QLayout* layout, double factor)
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    layout->getContentsMargins(&left, &top, &right, &bottom);
    layout->setContentsMargins(Scaled(left, factor), Scaled(top, factor), Scaled(right, factor),
                               Scaled(bottom, factor));
}

/// Grid and form layouts have the same two spacings and no common base for them.
template <typename Layout>
void ScaleMarginsAndSpacings(Layout* layout, double factor)
{
    const int horizontal = layout->horizontalSpacing();
    const int vertical = layout->verticalSpacing();
    ScaleMargins(layout, factor);
    layout->setVerticalSpacing(Scaled(vertical, factor));
    layout->setHorizontalSpacing(Scaled(horizontal, factor));
}

void ScaleCells(QGridLayout* layout, double factor)
{
    for (int row = 0; row < layout->rowCount(); ++row) {
        layout->setRowStretch(row, Scaled(layout->rowStretch(row), factor));
        layout->setRowMinimumHeight(row, Scaled(layout->rowMinimumHeight(row), factor));
    }
    for (int column = 0; column < layout->columnCount(); ++column) {
        layout->setColumnStretch(column, Scaled(layout->columnStretch(column), factor));
        layout->setColumnMinimumWidth(column, Scaled(layout->columnMinimumWidth(column), factor));
    }
}

template <typename Child>
void ScaleChildren(QWidget* parent)
{
    const auto children = parent->findChildren<Child*>();
    for (Child* child : children)
        ScaleSize(child);
}

QString IconSuffix()
{
    if (currentScale < 1.75)
        return {};
    if (currentScale <= 2.25)
        return QStringLiteral("_96");
    return currentScale < 3.0 ? QStringLiteral("_128") : QStringLiteral("_256");
}

} // namespace

void ScaleFixedHeight(QWidget* widget, int height)
{
    if (scaleActive)
        widget->setFixedHeight(Scaled(height, PassFactor()));
}

void ScaleFixedWidth(QWidget* widget, int width)
{
    if (scaleActive)
        widget->setFixedWidth(Scaled(width, PassFactor()));
}

void ScaleFixedSize(QWidget* widget, int height, int width)
{
    if (!scaleActive)
        return;
    const QSize size(Scaled(width, PassFactor()), Scaled(height, PassFactor()));
    widget->setMaximumSize(size);
    widget->setMinimumSize(size);
    widget->setFixedSize(size);
}

void ScaleMinimumHeight(QWidget* widget, int height)
{
    if (scaleActive)
        widget->setMinimumHeight(Scaled(height, PassFactor()));
}

void ScaleMinimumWidth(QWidget* widget, int width)
{
    if (scaleActive)
        widget->setMinimumWidth(Scaled(width, PassFactor()));
}

void ScaleMaximumHeight(QWidget* widget, int height)
{
    if (scaleActive)
        widget->setMaximumHeight(Scaled(height, PassFactor()));
}

void ScaleMaximumWidth(QWidget* widget, int width)
{
    if (scaleActive)
        widget->setMaximumWidth(Scaled(width, PassFactor()));
}

void ScaleBorderRadius(QWidget* widget, int radius)
{
    if (scaleActive)
        ScaleBorderRadiusBy(widget, radius, PassFactor());
}

void ScaleMinimumHeight(QWidget* widget)
{
    if (scaleActive)
        ScaleMinimumHeightBy(widget, PassFactor());
}

void ScaleMinimumWidth(QWidget* widget)
{
    if (scaleActive)
        ScaleMinimumWidthBy(widget, PassFactor());
}

void ScaleMaximumHeight(QWidget* widget)
{
    if (scaleActive)
        ScaleMaximumHeightBy(widget, PassFactor());
}

void ScaleMaximumWidth(QWidget* widget)
{
    if (scaleActive)
        ScaleMaximumWidthBy(widget, PassFactor());
}

void ScaleMinimumSize(QWidget* widget)
{
    if (scaleActive)
        ScaleMinimumSizeBy(widget, PassFactor());
}

void ScaleMaximumSize(QWidget* widget)
{
    if (scaleActive)
        ScaleMaximumSizeBy(widget, PassFactor());
}

void ScaleSize(QWidget* widget)
{
    if (scaleActive)
        ScaleSizeBy(widget, PassFactor());
}

void ScalePushButtons(QWidget* parent)
{
    ScaleChildren<QPushButton>(parent);
}

void ScaleLineEdits(QWidget* parent)
{
    ScaleChildren<QLineEdit>(parent);
}

void ScaleGeometry(QWidget* widget)
{
    if (!scaleActive)
        return;
    const double factor = PassFactor();
    widget->setGeometry(widget->x(), widget->y(), Scaled(widget->width(), factor),
                        Scaled(widget->height(), factor));
}

void ScaleIconSize(QComboBox* box)
{
    if (scaleActive)
        box->setIconSize(Truncated(box->iconSize(), PassFactor()));
}

void ScaleIconSize(QAbstractButton* button)
{
    if (scaleActive)
        ScaleIconSizeBy(button, PassFactor());
}

void ScaleStyleIconSize(QAbstractButton* button)
{
    if (scaleActive)
        SetStyleIconSize(button, Truncated(button->iconSize(), PassFactor()));
}

void ScaleSpacer(QSpacerItem* spacer)
{
    if (scaleActive)
        ScaleSpacerBy(spacer, PassFactor());
}

void ScaleLayout(QLayout* layout)
{
    if (scaleActive)
        ScaleLayoutBy(layout, PassFactor());
}

void ScaleGridLayout(QGridLayout* layout)
{
    ScaleGridLayout(layout, false);
}

void ScaleGridLayout(QGridLayout* layout, bool cells)
{
    if (!scaleActive)
        return;
    ScaleGridLayoutBy(layout, PassFactor());
    if (cells)
        ScaleCells(layout, PassFactor());
}

void ScaleFormLayout(QFormLayout* layout)
{
    if (scaleActive)
        ScaleMarginsAndSpacings(layout, PassFactor());
}

void ScaleFont(QWidget* widget)
{
    if (scaleActive)
        ScaleFontBy(widget, PassFactor());
}

void ScaleDefaultFont(QWidget* widget, int /*size*/)
{
    if (scaleActive)
        SetFontPixels(widget, qRound(currentScale * kDefaultFontPixels));
}

void SetScaledFont(QWidget* widget, int pixels)
{
    SetFontPixels(widget, Scaled(pixels, currentScale));
}

void KeepFontPointSize(QWidget* widget)
{
    if (!scaleActive)
        return;
    QFont font = widget->font();
    // A font in pixels has no size in points to write back.
    if (font.pointSize() > 0)
        font.setPointSize(font.pointSize());
    widget->setFont(font);
    widget->update();
}

void SetStyleIconSize(QAbstractButton* button, QSize size)
{
    if (!scaleActive)
        return;
    button->setStyleSheet(
        QStringLiteral("qproperty-iconSize:%1px %2px;").arg(size.height()).arg(size.width()));
}

void ScaleIconFile(QAbstractButton* button, const QString& path)
{
    if (!scaleActive)
        return;
    QString stem = path;
    QString endings;
    for (const QString& ending : {QStringLiteral(".png"), QStringLiteral(".ico")}) {
        const int at = path.indexOf(ending);
        if (at < 0)
            continue;
        stem = stem.left(at);
        endings += ending;
    }
    if (endings.isEmpty())
        return;
    ScaleIconSize(button);
    button->setIcon(QIcon(stem + IconSuffix() + endings));
}

void ScaleFontBy(QWidget* widget, double factor)
{
    // A widget that has not been shown doesn't know yet the font that its style sheet gives it.
    widget->ensurePolished();
    const int pixels = widget->font().pixelSize();
    if (pixels > 0)
        SetFontPixels(widget, Scaled(pixels, factor));
}

void ScaleSizeBy(QWidget* widget, double factor)
{
    widget->setFixedSize(Scaled(widget->width(), factor), Scaled(widget->height(), factor));
}

void ScaleMinimumHeightBy(QWidget* widget, double factor)
{
    ScaleLimit(widget, kMinimumHeight, factor);
}

void ScaleMaximumHeightBy(QWidget* widget, double factor)
{
    ScaleLimit(widget, kMaximumHeight, factor);
}

void ScaleMinimumWidthBy(QWidget* widget, double factor)
{
    ScaleLimit(widget, kMinimumWidth, factor);
}

void ScaleMaximumWidthBy(QWidget* widget, double factor)
{
    ScaleLimit(widget, kMaximumWidth, factor);
}

void ScaleMinimumSizeBy(QWidget* widget, double factor)
{
    ScaleMinimumHeightBy(widget, factor);
    ScaleMinimumWidthBy(widget, factor);
}

void ScaleMaximumSizeBy(QWidget* widget, double factor)
{
    ScaleMaximumHeightBy(widget, factor);
    ScaleMaximumWidthBy(widget, factor);
}

void ScaleSpacerBy(QSpacerItem* spacer, double factor)
{
    const QSize hint = spacer->sizeHint();
    const QSizePolicy policy = spacer->sizePolicy();
    spacer->changeSize(Scaled(hint.width(), factor), Scaled(hint.height(), factor), policy.horizontalPolicy(),
                       policy.verticalPolicy());
}

void ScaleIconSizeBy(QAbstractButton* button, double factor)
{
    button->setIconSize(Truncated(button->iconSize(), factor));
}

void ScaleLayoutBy(QLayout* layout, double factor)
{
    const int spacing = layout->spacing();
    ScaleMargins(layout, factor);
    layout->setSpacing(Scaled(spacing, factor));
}

void ScaleGridLayoutBy(QGridLayout* layout, double factor)
{
    ScaleMarginsAndSpacings(layout, factor);
}

void ScaleBorderRadiusBy(QWidget* widget, int radius, double factor)
{
    SetStylePixels(widget, QStringLiteral("border-radius:%1px;"), Scaled(radius, factor));
}
