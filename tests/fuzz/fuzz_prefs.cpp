#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/App.h"
#include "tests/fuzz/Plain.h"

namespace {

std::filesystem::path MakeFolder() {
  std::string folder = (std::filesystem::temp_directory_path() / "dravik-fuzz-XXXXXX").string();
  if (!mkdtemp(folder.data())) std::abort();
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  std::atexit([] { std::filesystem::remove_all(std::getenv("XDG_CONFIG_HOME")); });
  return folder;
}

/// The first eight lines, which CR, LF and CR LF end; empty behind the end.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      lines.back() += text[i];
      continue;
    }
    if (text.compare(i, 2, "\r\n") == 0) ++i;
    lines.emplace_back();
  }
  lines.resize(8);
  return lines;
}

}  // namespace

/// Settings come from the lines they stand on, and come back as they were saved.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = MakeFolder();
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::ofstream(folder / "Dravik.prefs", std::ios::binary) << text;
  const auto lines = Lines(text);
  const bool ours = lines[1] == "1.3";
  const auto yes = [&](std::size_t line) { return String(lines[line]) == "yes"; };

  const auto app = New<class App>();
  app->loadPrefs();
  Require(app->vrs.Identical(lines[1]));
  Require(app->scan == (ours ? yes(3) : true));
  Require(app->showFeedbackWin == (ours && yes(5)));
  Require(app->showUnMountBtn == (ours && yes(7)));

  app->savePrefs();
  const auto again = New<class App>();
  again->loadPrefs();
  Require(again->vrs.Identical("1.3") && again->scan == app->scan);
  Require(again->showFeedbackWin == app->showFeedbackWin && again->showUnMountBtn == app->showUnMountBtn);
  return 0;
}
