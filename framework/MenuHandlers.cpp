#include "framework/MenuHandlers.h"

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
