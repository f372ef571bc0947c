#include <poll.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "disktool/scanTheBus.h"
#include "framework/ChildProcess.h"
#include "framework/Launch.h"

// Runs the command that is given, splits and filters what it prints as a scan does, and prints the lines
// kept.

namespace {

struct Printed {
  String text;
  int status;
};

Printed Run(const std::vector<std::string>& command) {
  ChildProcess child(Launch::OnThisThread(command, ""));
  while (child.Advance()) {
    pollfd fds[] = {{child.OutputFd(), POLLIN, 0}, {child.StateFd(), POLLIN, 0}};
    poll(fds, 2, child.Timeout());
  }
  return {String(child.TakeOutput()), child.Status()};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const auto [text, status] = Run({argv + 2, argv + argc});
  const auto lines = New<Listbox>();
  SplitIntoLines(text, *lines);
  KeepPlainHfs(*lines);
  if (std::strcmp(argv[1], "count") == 0) {
    std::printf("%d\n", lines->ListCount());
  } else {
    for (int row = 0; row < lines->ListCount(); ++row) std::puts(lines->Cell(row, 0).Utf8().c_str());
  }
  return status;
}
