#include "tests/headless/ProgramFixture.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "app/Startup.h"
#include "framework/Application.h"
#include "framework/EventLoop.h"
#include "framework/Menus.h"

namespace fs = std::filesystem;

namespace {

std::string Style(const Listbox& list, int row) {
  int bold = 0, italic = 0;
  for (int column = 0; column < 4; ++column) {
    bold += list.CellBold(row, column);
    italic += list.CellItalic(row, column);
  }
  if (list.CellAlignment(row, 1) != 3) return "size not at the right";
  if (bold == 4 && italic == 0) return "mounted";
  if (bold == 0 && italic == 4) return "not mounted";
  return "bold " + std::to_string(bold) + ", italic " + std::to_string(italic);
}

}  // namespace

ProgramFixture::ProgramFixture() {
  config_ = home_ / "config";
  tool_ = home_ / "bin";
  fs::create_directories(config_);
  fs::create_symlink(DRAVIK_SOURCE_DIR "/tests/tools/diskutil", tool_ / "diskutil");
  setenv("XDG_CONFIG_HOME", config_.c_str(), 1);
  WritePrefs(false, false, false);
}

ProgramFixture::~ProgramFixture() {
  std::error_code failed;
  fs::permissions(config_, fs::perms::owner_all, failed);
}

int ProgramFixture::RunProgram(std::function<void()> user) {
  TheStage().script = [user = std::move(user)] {
    user();
    if (!EventLoop::Quitting()) Choose("FileQuit");
  };
  const int status = _Main(0, nullptr);
  EXPECT_TRUE(!EventLoop::Toolkit() && TheStage().openWindows.empty()) << "still on the screen";
  EXPECT_TRUE(TheStage().answers.empty()) << TheStage().answers.size() << " message boxes did not come up";
  return status;
}

void ProgramFixture::Write(const std::string& name, const std::string& text) const {
  std::ofstream(tool_ / name, std::ios::binary) << text;
}

std::vector<std::string> ProgramFixture::Calls() const {
  std::vector<std::string> calls;
  std::istringstream log(TextOf(tool_ / "log"));
  for (std::string line; std::getline(log, line);) {
    if (line == ">")
      calls.emplace_back();
    else
      calls.back() += (calls.back().empty() ? "" : "|") + line;
  }
  return calls;
}

void ProgramFixture::WritePrefs(const std::string& text) const {
  std::ofstream(PrefsFile(), std::ios::binary) << text;
}

void ProgramFixture::WritePrefs(bool scan, bool feedback, bool unMount) const {
  const auto line = [](bool value) { return value ? "\nyes\n#" : "\nno\n#"; };
  WritePrefs(std::string("#\n1.3\n#") + line(scan) + line(feedback) + line(unMount) + "\n");
}

std::string ProgramFixture::ReadPrefs() const {
  return TextOf(PrefsFile());
}

void ProgramFixture::Choose(const String& menuItem) {
  const auto front = Read([] { return Window::OpenWindows().back(); });
  Menus::Refresh(front);
  Menus::Choose(Read([&] { return Application::Current()->MenuBar->_Lookup(menuItem); }), front);
}

void ProgramFixture::Scan() {
  Press("scanButton");
  EXPECT_TRUE(WaitForScan());
}

bool ProgramFixture::WaitForScan() {
  return PumpUntil([] { return Window1()->scanTheBus1()->KillFd() < 0; });
}

std::string ProgramFixture::Table() {
  const Baton::Turn turn;
  const auto list = Window1()->ListBox2();
  std::string text;
  for (int row = 0; row < list->ListCount(); ++row) {
    for (int column = 0; column < 4; ++column) text += list->Cell(row, column).Utf8() + "|";
    text += Style(*list, row) + "\n";
  }
  return text;
}

bool ProgramFixture::IsOpen(const std::string& window) {
  return Read([&] { return static_cast<bool>(_GetImplicitWindow(window + "." + window)); });
}

bool ProgramFixture::IsEnabled(const String& control) {
  return Read([&] { return Window1()->Named<Control>(control)->Enabled.Get(); });
}
