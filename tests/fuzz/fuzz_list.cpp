#include <string_view>
#include <vector>

#include "app/Startup.h"
#include "disktool/scanTheBus.h"
#include "framework/Application.h"
#include "framework/Baton.h"
#include "framework/Shell.h"
#include "tests/fuzz/Plain.h"
#include "windows/Window1.h"

namespace {

using plain::Text;

/// The scan, run where it is called.
class Scan : public scanTheBus {
 public:
  using scanTheBus::Event_Run;
};

/// Opens the main window and leaves it open.
bool StartProgram() {
  int argc = 0;
  Application::Start(argc, nullptr);
  _EarlyStartup();
  const Baton::Turn turn;
  _LateStartup();  // with no settings loaded there is no scan
  return true;
}

std::vector<Text> KeptLines(const Text& list) {
  std::vector<Text> lines;
  Text line;
  for (const char32_t c : list) {
    if (c != U'\r' && c != U'\n') {
      line += c;
      continue;
    }
    if (plain::Position(0, line, U"HFS") && !plain::Position(0, line, U"HFSX")) lines.push_back(line);
    line.clear();
  }
  return lines;
}

void CheckRow(const Listbox& table, int row, const Text& line, bool mounted) {
  for (int column = 0; column < 4; ++column) {
    const Text cell = plain::Of(table.Cell(row, column));
    Require(line.find(cell) != Text::npos && cell == plain::Trimmed(cell) && (column != 2 || cell.empty()));
    Require(table.CellBold(row, column) == mounted && table.CellItalic(row, column) != mounted);
  }
}

}  // namespace

/// The list up to a NUL and the answer to every probe: the table is what the plain rules make of them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  [[maybe_unused]] static const bool started = StartProgram();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t nul = std::min(bytes.find('\0'), size);
  const String list = bytes.substr(0, nul), report = bytes.substr(std::min(nul + 1, size));

  const Baton::Turn turn;
  const auto window = Window1();
  Shell::InstallRunner([&](const String& command) {
    if (command.Identical("diskutil list")) return Shell::Outcome{0, list};
    const auto table = window->ListBox2();
    Require(command.Identical("diskutil info " + table->Cell(table->ListCount() - 1, 3)));
    return Shell::Outcome{1, report};
  });
  window->ListBox1()->DeleteAllRows();
  window->ListBox2()->DeleteAllRows();
  New<Scan>()->Event_Run();

  const auto kept = KeptLines(plain::Of(list));
  const Text answer = plain::Of(report);
  const Integer mark = plain::Position(0, answer, U"Mounted:");
  const bool mounted = plain::Same(plain::Trimmed(plain::Part(answer, mark + 26, 3)), U"yes");
  Require(window->ListBox2()->ListCount() == static_cast<int>(kept.size()));
  for (std::size_t row = 0; row < kept.size(); ++row)
    CheckRow(*window->ListBox2(), static_cast<int>(row), kept[row], mounted);
  return 0;
}
