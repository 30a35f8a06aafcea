#pragma once

#include <QSize>

class QAbstractButton;
class QComboBox;
class QFormLayout;
class QGridLayout;
class QLayout;
class QSpacerItem;
class QString;
class QWidget;

/// Forms are designed at 96 dots per inch, and Qt's own scaling is not used for them. A window's rescale
/// routine calls the functions below on its widgets, one by one. Nothing marks a widget as scaled: calling
/// twice scales twice. Main thread only.

extern double currentScale; ///< Dots per inch of the screen divided by 96.
extern double stepScale;    ///< Factor from the scale before to the present one.
extern bool scaleActive;    ///< Becomes true with the first scale other than 1 and stays true.
extern bool fromDesign; ///< Widgets hold design values (factor currentScale), else scaled ones (stepScale).

/// Scale of the primary screen; 0 without a screen. Only the horizontal dots per inch count.
double ScreenScale();

/// Takes the screen's scale. After the application object exists, before the first widget is built.
void InitScale();

/// Notes a change of the dots per inch. True when the scale is another one now.
bool UpdateScale(int dpi);

/// Factor from the present scale to that of `dpi`, changing nothing. For equal scales it is the present scale
/// itself and not 1: the callers' own rescale steps count on that.
double ScaleRatio(int dpi);

void SetFromDesign(bool on);

/// `value` at the current scale, whatever `fromDesign` says.
int ScaleValue(int value);

// Values that the caller gives. Nothing happens unless the scale is active.
void ScaleFixedHeight(QWidget* widget, int height);
void ScaleFixedWidth(QWidget* widget, int width);
void ScaleFixedSize(QWidget* widget, int height, int width);
void ScaleMinimumHeight(QWidget* widget, int height);
void ScaleMinimumWidth(QWidget* widget, int width);
void ScaleMaximumHeight(QWidget* widget, int height);
void ScaleMaximumWidth(QWidget* widget, int width);
void ScaleBorderRadius(QWidget* widget, int radius);

// Values that the widget or layout holds. Nothing happens unless the scale is active.
void ScaleMinimumHeight(QWidget* widget);
void ScaleMinimumWidth(QWidget* widget);
void ScaleMaximumHeight(QWidget* widget);
void ScaleMaximumWidth(QWidget* widget);
void ScaleMinimumSize(QWidget* widget);
void ScaleMaximumSize(QWidget* widget);
void ScaleSize(QWidget* widget); ///< Fixes the widget at its scaled size.
void ScalePushButtons(QWidget* parent);
void ScaleLineEdits(QWidget* parent);
void ScaleGeometry(QWidget* widget); ///< Width and height; the top left corner stays.
void ScaleIconSize(QComboBox* box);
void ScaleIconSize(QAbstractButton* button);
void ScaleStyleIconSize(QAbstractButton* button); ///< By style sheet, the height first.
void ScaleSpacer(QSpacerItem* spacer);
void ScaleLayout(QLayout* layout);
void ScaleGridLayout(QGridLayout* layout);
void ScaleGridLayout(QGridLayout* layout,
                     bool cells); ///< `cells`: stretch and minimum of rows and columns too.
void ScaleFormLayout(QFormLayout* layout);
void ScaleFont(QWidget* widget); ///< A font in pixels; one in points follows the screen by itself.

// Relatives that keep to a rule of their own.
void ScaleDefaultFont(QWidget* widget,
                      int size);                 ///< 12 pixels at the current scale; `size` is not looked at.
void SetScaledFont(QWidget* widget, int pixels); ///< At the current scale, active or not.
void KeepFontPointSize(QWidget* widget);         ///< Makes the font's size in points the widget's own.
void SetStyleIconSize(QAbstractButton* button, QSize size); ///< Unscaled, by style sheet, the height first.
int IdentityValue(double value);                            ///< `value` rounded.

/// Sets the picture `path` in the variant for the current scale ("x.png", "x_96.png", "x_128.png",
/// "x_256.png") and scales the icon size.
void ScaleIconFile(QAbstractButton* button, const QString& path);

// By an explicit factor, for windows that keep a scale of their own: neither guarded nor asking fromDesign.
void ScaleFontBy(QWidget* widget, double factor);
void ScaleSizeBy(QWidget* widget, double factor);
void ScaleMinimumHeightBy(QWidget* widget, double factor);
void ScaleMaximumHeightBy(QWidget* widget, double factor);
void ScaleMinimumWidthBy(QWidget* widget, double factor);
void ScaleMaximumWidthBy(QWidget* widget, double factor);
void ScaleMinimumSizeBy(QWidget* widget, double factor);
void ScaleMaximumSizeBy(QWidget* widget, double factor);
void ScaleSpacerBy(QSpacerItem* spacer, double factor);
void ScaleIconSizeBy(QAbstractButton* button, double factor);
void ScaleLayoutBy(QLayout* layout, double factor);
void ScaleGridLayoutBy(QGridLayout* layout, double factor);
void ScaleBorderRadiusBy(QWidget* widget, int radius, double factor);
