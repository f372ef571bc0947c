#include "framework/QuitMenuItem.h"

#include "framework/Application.h"

bool QuitMenuItem::Event_Action() {
  Quit(0);
  return true;
}
