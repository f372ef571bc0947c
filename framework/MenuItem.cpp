#include "framework/MenuItem.h"

#include "framework/Screen.h"

void MenuItem::MarkStale() {
  Screen::Installed().MarkOutOfDate();
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
