#include "framework/MenuItem.h"

#include "framework/Application.h"

void MenuItem::Touch() {
  Application::ScreenChanged();
}

Ref<MenuItem> MenuItem::Child(const String& name) const {
  for (const auto& child : children_)
    if (child->Name == name) return child;
  return nullptr;
}

Ref<MenuItem> MenuItem::_Lookup(const String& name) const {
  for (const auto& child : children_) {
    if (child->Name == name) return child;
    if (auto found = child->_Lookup(name)) return found;
  }
  return nullptr;
}

bool QuitMenuItem::Event_Action() {
  Quit(0);
  return true;
}

void MenuHandlers::Add(const String& name, Handler handler) {
  handlers_.emplace_back(name, std::move(handler));
}

const MenuHandlers::Handler* MenuHandlers::Find(const String& name) const {
  for (const auto& [item, handler] : handlers_)
    if (item == name) return &handler;
  return nullptr;
}

bool MenuHandlers::Has(const String& name) const {
  return Find(name) != nullptr;
}

bool MenuHandlers::Run(const String& name) const {
  const Handler* handler = Find(name);
  return handler && (*handler)();
}
