#pragma once

#include <QEvent>
#include <QWidget>

bool IsWayland();

/// To be called with each change of a window's state, after Qt has handled it. A compositor may end a program
/// whose window does not take the size that it is given when it is maximised or made to fill the screen.
void ObeyCompositor(QWidget& window, const QEvent& event);
