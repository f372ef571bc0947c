#pragma once

#include <QKeySequence>
#include <QMenuBar>
#include <functional>

/// A key of the whole window.
void OnKey(QWidget& window, const QKeySequence& key, std::function<void()> action);

/// Takes the keyboard to a menu bar, as a tap on Alt would, with the first menu open.
void EnterMenus(QMenuBar& bar);

/// Makes the keys that open the menus of another window's bar work in a window that has none of its own. The
/// focus comes back when they close.
void BorrowMenuKeys(QWidget& window, QMenuBar& bar);
