#include "widgetproperty.h"

#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace {

void SetStyledProperty(QWidget* w, const char* name, bool value)
{
    if (!w)
        qt_assert("w", __FILE__, __LINE__);
    w->setProperty(name, value);
    // A style sheet looks at properties only when it polishes.
    w->style()->unpolish(w);
    w->style()->polish(w);
}

} // namespace

void SetSelected(QWidget* w, bool value)
{
    SetStyledProperty(w, "selected", value);
}

void SetEnable(QWidget* w, bool value)
{
    SetStyledProperty(w, "enable", value);
}

void SetError(QWidget* w, bool value)
{
    SetStyledProperty(w, "error", value);
}
