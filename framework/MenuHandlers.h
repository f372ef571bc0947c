#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "framework/String.h"

/// Menu handlers by the name of their item, which is the only link between the two.
class MenuHandlers {
 public:
  using Handler = std::function<bool()>;

  void Add(const String& name, Handler handler);
  bool Has(const String& name) const;
  /// Runs the handler of the item. True when there is one and it says that it has dealt with the command.
  bool Run(const String& name) const;

 private:
  const Handler* Find(const String& name) const;

  std::vector<std::pair<String, Handler>> handlers_;
};
