#include "framework/qt/MenuView.h"

#include <QKeySequence>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "framework/Menus.h"
#include "framework/QuitMenuItem.h"
#include "framework/qt/Conversions.h"

namespace {

/// "Cmd+Q" as Qt writes it: its "Ctrl" is the Mac's command key.
QKeySequence ToKeySequence(const std::optional<String>& shortcut) {
  return QKeySequence::fromString(OneLine(shortcut.value_or("")).replace("Cmd+", "Ctrl+"));
}

/// A text control with the focus handles these keys itself. With the focus on anything else they do nothing.
bool BelongsToTexts(const QKeySequence& shortcut) {
  const auto keys = {QKeySequence::Undo, QKeySequence::Cut, QKeySequence::Copy, QKeySequence::Paste};
  return std::ranges::any_of(keys,
                             [&](auto key) { return QKeySequence::keyBindings(key).contains(shortcut); });
}

QAction::MenuRole RoleOf(const Ref<MenuItem>& item) {
  return Cast<AppleMenuItem>(item)  ? QAction::AboutRole
         : Cast<QuitMenuItem>(item) ? QAction::QuitRole
                                    : QAction::NoRole;
}

}  // namespace

MenuView::MenuView(QMenuBar& bar, const Ref<MenuBar>& items, Front front) : front_(std::move(front)) {
  for (const auto& menu : items->Children()) AddMenu(bar, menu);
  Copy();
}

void MenuView::AddMenu(QMenuBar& bar, const Ref<MenuItem>& menu) {
  QMenu* shown = bar.addMenu(QString());
  entries_.push_back({menu, shown->menuAction()});
  QObject::connect(shown, &QMenu::aboutToShow, shown, [front = front_] { Menus::Refresh(front()); });
  for (const auto& item : menu->Children()) AddItem(*shown, item);
}

void MenuView::AddItem(QMenu& menu, const Ref<MenuItem>& item) {
  if (item->IsSeparator()) {
    menu.addSeparator();
    return;
  }
  QAction* action = menu.addAction(QString());
  action->setMenuRole(RoleOf(item));
  action->setShortcut(ToKeySequence(item->KeyboardShortcut));
  action->setShortcutContext(BelongsToTexts(action->shortcut()) ? Qt::WidgetShortcut
                                                                : Qt::ApplicationShortcut);
  QObject::connect(action, &QAction::triggered, action,
                   [item, front = front_] { Menus::Choose(item, front()); });
  entries_.push_back({item, action});
}

void MenuView::Copy() {
  for (const Entry& entry : entries_) {
    entry.action->setText(OneLine(entry.item->Text));
    entry.action->setEnabled(entry.item->Enabled);
  }
}

QList<QAction*> MenuView::Actions() const {
  QList<QAction*> actions;
  for (const Entry& entry : entries_)
    if (!entry.action->shortcut().isEmpty()) actions += entry.action;
  return actions;
}
