#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

namespace {

/// Runs the demonstration's diskutil with a state folder of its own.
class DemoTool : public testing::Test {
 protected:
  struct Outcome {
    int Status;
    std::string Text;
  };

  DemoTool() {
    std::string name = testing::TempDir() + "dravik-demo-XXXXXX";
    if (mkdtemp(name.data())) state_ = name;
  }
  ~DemoTool() override { std::filesystem::remove_all(state_); }

  Outcome Run(const std::string& words) const {
    const std::string line = "DRAVIK_DEMO_STATE='" + (state_ / "state").string() +
                             "' '" DRAVIK_SOURCE_DIR "/demo/diskutil' " + words + " 2>&1";
    FILE* pipe = popen(line.c_str(), "r");
    std::string text;
    for (int c; (c = fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
  }

 private:
  std::filesystem::path state_;
};

/// Columns `first` to `last` of a line in UTF-8, counted in characters from 1.
std::string Columns(std::string_view line, int first, int last) {
  std::string text;
  int column = 0;
  for (char c : line) {
    if ((c & 0xC0) != 0x80) ++column;
    if (column >= first && column <= last) text += c;
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

TEST_F(DemoTool, ListsInColumnsWhatInfoTells) {
  std::istringstream list(Run("LIST").Text);
  int volumes = 0;
  for (std::string line; std::getline(list, line);) {
    if (line.size() < 69 || line[3] < '0' || line[3] > '9') continue;
    SCOPED_TRACE(line);
    ++volumes;
    const auto token = line.find("Apple_HFS ");
    EXPECT_TRUE(token == 23 || token == std::string::npos) << token;
    EXPECT_EQ(Columns(line, 65, 68), "B") << "the end of the size";
    const std::string name = Columns(line, 34, 64);
    const std::string identifier = Columns(line, 69, 99);
    const std::string report = Run("info " + identifier).Text;
    for (const std::string& told : {"Device Identifier:        " + identifier,
                                    "Volume Name:              " + name.substr(0, name.find("  "))})
      EXPECT_NE(report.find("   " + told + "\n"), std::string::npos) << report;
  }
  EXPECT_GE(volumes, 20);
}

TEST_F(DemoTool, MountsAndUnmounts) {
  const struct {
    const char* Words;
    int Status;
    const char* Text;
  } steps[] = {
      {"info disk1s2", 0,
       "\n   Mounted:                  Yes\n   Mount Point:              /Volumes/Backup\n"},
      {"unMount disk1s2", 0, "Volume Backup on disk1s2 unmounted\n"},
      {"info disk1s2", 0, "\n   Mounted:                  No\n"},
      {"UNMOUNT disk1s2", 0, "already unmounted"},
      {"mount /dev/disk1s2", 0, "Volume Backup on disk1s2 mounted\n"},
      {"info disk1s2", 0, "\n   Mounted:                  Yes\n"},
      {"mount disk2s3", 0, "mounted\n"},
      {"info disk2s3", 0, "\n   Mounted:                  Yes\n"},
      // The busy volume stays.
      {"unMount disk0s2", 1, "in use"},
      {"info disk0s2", 0, "\n   Mounted:                  Yes\n"},
      // An identifier cell that begins inside the name.
      {"unMount disk copy             15.2 GB   disk3s2", 0, "Volume Old disk copy on disk3s2 unmounted\n"},
      {"mount disk4", 1, "disk4 "},
      {"info disk9s9", 1, "Could not find disk: disk9s9\n"},
      {"info '$(reboot)'", 1, "Could not find disk: $(reboot)\n"},
      {"", 1, "Usage: "},
      {"mount", 1, "Usage: "},
      {"erase disk1s2", 1, "Usage: "},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.Words);
    const Outcome outcome = Run(step.Words);
    EXPECT_EQ(outcome.Status, step.Status);
    EXPECT_NE(outcome.Text.find(step.Text), std::string::npos) << outcome.Text;
  }
}

}  // namespace
