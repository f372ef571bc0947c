#include "framework/Label.h"

void Label::UserMouseDown(int x, int y) {
  if (!Reachable()) return;
  if (MouseDown)
    MouseDown(Ref<Label>(this), x, y);
  else
    StandsIn()->UserMouseDown(Left + x, Top + y);
}
