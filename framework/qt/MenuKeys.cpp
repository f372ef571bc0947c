#include "framework/qt/MenuKeys.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QShortcut>
#include <QTimer>
#include <utility>

#include "framework/qt/Accessibility.h"

namespace {

/// Opens a menu at its first item: a screen reader loses its way in one of which no item is active.
void OpenMenu(QMenuBar& bar, QAction& menu) {
  bar.setActiveAction(&menu);
  for (QAction* item : menu.menu()->actions())
    if (item->isEnabled() && !item->isSeparator()) return menu.menu()->setActiveAction(item);
}

/// Escape leaves the keyboard with the bar, where it would stay, as the bar's window is not in front.
void LeaveMenus(const QWidget& window, QMenuBar* bar) {
  if (!bar || !window.isActiveWindow() || QApplication::activePopupWidget()) return;
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QCoreApplication::sendEvent(bar, &escape);
  if (QWidget* focus = window.focusWidget()) AnnounceFocus(*focus);
}

}  // namespace

void OnKey(QWidget& window, const QKeySequence& key, std::function<void()> action) {
  QObject::connect(new QShortcut(key, &window), &QShortcut::activated, &window, std::move(action));
}

void EnterMenus(QMenuBar& bar) {
  for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent alt(type, Qt::Key_Alt, Qt::AltModifier);
    QCoreApplication::sendEvent(bar.window(), &alt);
  }
  OpenMenu(bar, *bar.actions().front());
}

void BorrowMenuKeys(QWidget& window, QMenuBar& bar) {
  const QList<QAction*> menus = bar.actions();
  for (QAction* menu : menus) {
    const auto open = [&bar, menu] { OpenMenu(bar, *menu); };
    OnKey(window, QKeySequence::mnemonic(menu->text()), open);
    if (menu == menus.front()) OnKey(window, Qt::Key_F10, open);
    QObject::connect(menu->menu(), &QMenu::aboutToHide, &window, [&window, bar = QPointer(&bar)] {
      QTimer::singleShot(0, &window, [&window, bar] { LeaveMenus(window, bar); });
    });
  }
}
