#include "framework/Screen.h"

namespace {

class NoScreen final : public Screen {};

NoScreen none;
Screen* current = &none;

}  // namespace

Screen& Screen::Installed() {
  return *current;
}

void Screen::Install(Screen& screen) {
  current = &screen;
}
