#include <poll.h>

#include <cstdio>

#include "bench/ListText.h"
#include "disktool/scanTheBus.h"
#include "framework/ChildProcess.h"

// Runs the command that is given, splits and filters what it prints as a scan does, and prints the lines
// kept.

int main(int argc, char** argv) {
  ChildProcess child({argv + 1, argv + argc}, "");
  while (child.Advance()) {
    pollfd fds[] = {{child.OutputFd(), POLLIN, 0}, {child.ExitFd(), POLLIN, 0}};
    poll(fds, 2, child.Patience());
  }
  const String text(child.TakeOutput());
  const auto lines = New<Listbox>();
  SplitIntoLines(text, *lines);
  KeepPlainHfs(*lines);
  for (int row = 0; row < lines->ListCount(); ++row) std::puts(lines->Cell(row, 0).Utf8().c_str());
  return child.Status();
}
