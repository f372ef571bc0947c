#include <climits>

#include "app/App.h"
#include "framework/EventLoop.h"
#include "framework/Shell.h"
#include "tests/headless/ProgramFixture.h"
#include "windows/Window2.h"
#include "windows/Window3.h"

namespace {

/// The program over a tool that ends with any code. Row 0 is not mounted, row 1 is.
class Codes : public ProgramFixture {
 protected:
  Codes() {
    Shell::InstallRunner([this](const String& command) { return Answer(command.Utf8()); });
    WritePrefs(false, false, true);
  }

  Shell::Outcome Answer(const std::string& command) {
    if (command == "diskutil list")
      return {-1,  // no failure
              " Apple_HFS My Data      80.0 GB  disk0s2\n Apple_HFS Backup     120.5 GB  disk0s3\n"};
    if (Thread::Current())  // a probe, the status of which does not count
      return {5,
              std::string("   Mounted:                  ") + (command.ends_with("3") ? "Yes" : "No") + "\n"};
    commands_.push_back(command);
    feedback_ = TheStage().presented == "Window2 "
                    ? (Window2()->staticTitle()->Text + "/" + Window2()->StaticText1()->Text).Utf8()
                    : "";
    return {code_, "A report\r\nwith \xFF"};
  }

  static std::string Rows(const std::string& first, const std::string& second) {
    return "My Data|80.0 GB||disk0s2|" + first + "\nBackup|120.5 GB||disk0s3|" + second + "\n";
  }

  int code_ = 0;
  std::vector<std::string> commands_;
  std::string feedback_;  // the feedback window's texts while the last command ran
};

TEST_F(Codes, OfMountUnmountAndReport) {
  // clang-format off
  const struct {
    const char* button;
    int row;
    bool feedback;  // the setting
    const char *command, *texts, *first, *second;  // and the rows afterwards
  } operations[] = {
      {"mountBtn",   0, false, "diskutil mount disk0s2",   "", "mounted", "mounted"},
      {"mountBtn",   0, true,  "diskutil mount disk0s2",   "Executing the command 'diskutil mount'/Mounting «My Data».\rPlease wait...",     "mounted", "mounted"},
      {"unMountBtn", 1, false, "diskutil unMount disk0s3", "Executing the command 'diskutil unmount'/unMounting «Backup».\rPlease wait...",  "not mounted", "not mounted"},
      {"infoBtn",    1, false, "diskutil info disk0s3",    "Executing the command 'diskutil info'\r/Reading info for «Backup».\rPlease wait...", "not mounted", "mounted"},
  };
  // clang-format on
  RunProgram([&] {
    for (const int code : {INT_MIN, -1, 0, 1, 2, 255, 256, 257, INT_MAX}) {
      for (const auto& operation : operations) {
        SCOPED_TRACE(operation.button + std::string(" ") + std::to_string(code));
        Scan();
        App()->showFeedbackWin = operation.feedback;
        code_ = code;
        const bool passedOver = code == 256 && operation.button == std::string("unMountBtn");
        TheStage().messages.clear();
        TheStage().presented.clear();
        std::vector<std::string> expected;
        if (code > 0 && !passedOver) {
          expected.push_back("Error code: " + std::to_string(code));
          TheStage().answers.emplace_back([&] {
            EXPECT_EQ(IsOpen("Window2"), *operation.texts != '\0');
            EventLoop::Deliver([] { EXPECT_FALSE(IsOpen("Window2")) << "in the middle of a handler"; });
            EventLoop::RunPending();
          });
        }
        Select(operation.row);
        Press(operation.button);
        EXPECT_EQ(TheStage().messages, expected);
        EXPECT_EQ(commands_.back(), operation.command);
        EXPECT_EQ(feedback_, operation.texts);
        EXPECT_EQ(Table(), Rows(operation.first, operation.second));
        EXPECT_FALSE(IsOpen("Window2"));
        const bool reported = operation.button == std::string("infoBtn") && code <= 0;
        EXPECT_EQ(IsOpen("Window3"), reported);
        if (reported) {
          EXPECT_EQ(Window3()->staticTitle()->Text.Get().Utf8(), "diskutil info for: Backup (disk0s3)");
          EXPECT_EQ(Window3()->infoFld()->Text.Get().Utf8(), "A report\r\nwith \xFF");
          EventLoop::Deliver([] { Window3()->PushButton1()->UserPress(); });
        }
      }
    }
  });
}

TEST_F(Codes, ReadTheSelectedRowAndStyleTheOtherOne) {
  RunProgram([&] {
    Scan();
    Select(1);
    EventLoop::Deliver([] { Window1()->mountThisDisk(0); });
    EXPECT_EQ(commands_.back(), "diskutil mount disk0s3");
    EXPECT_EQ(Table(), Rows("mounted", "mounted"));
    EventLoop::Deliver([] { Window1()->unMountThisDisk(-1); });
    EXPECT_EQ(commands_.back(), "diskutil unMount disk0s3");
  });
}

}  // namespace
