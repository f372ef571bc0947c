#include "framework/Menus.h"

#include "framework/Application.h"
#include "framework/EventLoop.h"
#include "framework/Toolkit.h"

namespace {

struct EditItem {
  const char* name;
  EditCommand command;
};

constexpr EditItem kEditItems[] = {{"EditUndo", EditCommand::kUndo},
                                   {"EditCut", EditCommand::kCut},
                                   {"EditCopy", EditCommand::kCopy},
                                   {"EditPaste", EditCommand::kPaste},
                                   {"EditClear", EditCommand::kClear}};

const EditItem* EditItemNamed(const String& name) {
  for (const EditItem& item : kEditItems)
    if (name == item.name) return &item;
  return nullptr;
}

bool DoesSomething(const MenuItem& item, const Ref<Window>& front) {
  if (!item.Children().empty() || item.HasAction()) return true;
  if (Application::Current()->Handlers().Has(item.Name)) return true;
  if (front && front->Handlers().Has(item.Name)) return true;
  const EditItem* edit = EditItemNamed(item.Name);
  return edit && EventLoop::Toolkit()->CanEdit(edit->command);
}

void EnableItems(const MenuItem& parent, const Ref<Window>& front) {
  for (const auto& item : parent.Children()) {
    if (item->AutoEnable) item->Enabled = DoesSomething(*item, front);
    EnableItems(*item, front);
  }
}

}  // namespace

void Menus::Refresh(const Ref<Window>& front) {
  const auto refresh = [front] {
    const Ref<Application> application = Application::Current();
    if (application->MenuBar) EnableItems(*application->MenuBar, front);
    application->Event_EnableMenuItems();
  };
  EventLoop::Deliver(refresh);
}

void Menus::Choose(const Ref<MenuItem>& item, const Ref<Window>& front) {
  const auto choose = [item, front] {
    if (!item->Enabled) return;
    if (front && front->IsOpen() && front->Handlers().Run(item->Name)) return;
    if (Application::Current()->Handlers().Run(item->Name) || item->Event_Action()) return;
    if (const EditItem* edit = EditItemNamed(item->Name)) EventLoop::Toolkit()->Edit(edit->command);
  };
  EventLoop::Deliver(choose);
}
