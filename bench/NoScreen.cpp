#include <memory>

#include "framework/Toolkit.h"

/// For what never starts the application.
std::unique_ptr<Toolkit> Toolkit::Make(int&, char**) {
  return nullptr;
}
