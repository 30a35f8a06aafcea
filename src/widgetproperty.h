#pragma once

class QWidget;

/// Dynamic properties that style rules select by. Setting one applies the rules at once. A null widget ends
/// the program.
void SetSelected(QWidget* w, bool value);
void SetEnable(QWidget* w, bool value);
void SetError(QWidget* w, bool value);
