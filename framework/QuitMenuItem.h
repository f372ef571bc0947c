#pragma once

#include "framework/MenuItem.h"

/// Quits the program. Stands in the application's own menu on a platform that has one.
class QuitMenuItem : public MenuItem {
 public:
  bool Event_Action() override;
  bool HasAction() const override { return true; }
};
