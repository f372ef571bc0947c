#pragma once

#include "framework/MenuItem.h"
#include "framework/Window.h"

/// The rules of the menus: which items can be chosen, and what choosing one does. Called by the toolkit, on
/// the main thread.
namespace Menus {

/// The menus are about to be seen or used while `front` (or nil) is in front: decides which items are
/// enabled.
void Refresh(const Ref<Window>& front);
/// The user has chosen an item. `front` is the window in front, or nil.
void Choose(const Ref<MenuItem>& item, const Ref<Window>& front);

}  // namespace Menus
