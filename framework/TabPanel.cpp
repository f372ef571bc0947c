#include "framework/TabPanel.h"

#include "framework/Text.h"

std::vector<String> TabPanel::Captions() const {
  std::vector<String> captions;
  const String lineBreak = Chr(13);
  Integer start = 1;
  for (;;) {
    const Integer stop = InStr(start, TabDefinition, lineBreak);
    captions.push_back(Mid(TabDefinition, start, stop ? stop - start : Len(TabDefinition)));
    if (!stop) return captions;
    start = stop + 1;
  }
}

void TabPanel::UserSelect(int tab) {
  if (!Reachable() || tab == Value || tab < 0 || tab >= static_cast<int>(Captions().size())) return;
  Value = tab;
  if (Change) Change(Ref<TabPanel>(this));
}
