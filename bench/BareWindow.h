#pragma once

class QWidget;

/// The controls of Dravik's main window with nothing behind them, made of Qt's own widgets.
void AddBareControls(QWidget& content);
