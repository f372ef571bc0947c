#pragma once

#include <QEvent>
#include <QWidget>

bool IsWayland();

/// To be called with each change of a window's state, after Qt has handled it. A compositor may end a program
/// whose window has not the size that it was given when it was maximised or made to fill the screen.
void ObeyCompositor(QWidget& window, const QEvent& event);
