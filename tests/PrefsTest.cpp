#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "app/App.h"
#include "framework/EventLoop.h"
#include "tests/headless/ProgramFixture.h"

namespace {

namespace fs = std::filesystem;

const std::string kWhole =
    "# Dravik's preferences version\n1.3\n# Scan on startup\nyes\n# Show feedback window'\nyes\n"
    "# Show unMount button'\nyes\n# EOF\n";

class Prefs : public ProgramFixture {
 protected:
  /// The settings after loading a file of this text: "SFU" for all three, a dot for each that is off.
  std::string Loaded(const std::string& text) const {
    WritePrefs(text);
    EventLoop::Deliver([] { App()->loadPrefs(); });
    return Read([] {
      return std::string(App()->scan ? "S" : ".") + (App()->showFeedbackWin ? "F" : ".") +
             (App()->showUnMountBtn ? "U" : ".");
    });
  }
};

TEST_F(Prefs, AreReadByLineNumbers) {
  const std::string crLf = "a\r\n1.3\r\nb\r\nyes\r\nc\r\nyes\r\nd\r\nno\r\n";
  const struct {
    std::string text;
    const char *settings, *version;
  } cases[] = {
      {kWhole, "SFU", "1.3"},
      {"", "S..", ""},
      {"\n1.2\n\nno\n\nyes\n\nyes\n", "S..", "1.2"},
      {"\n1.3 \n\nno\n\nyes\n\nyes\n", "S..", "1.3 "},
      {"\n1.3\n", "...", "1.3"},
      {"\n1.3", "...", "1.3"},
      {"x\n1.3\n\nyes\n", "S..", "1.3"},
      {"x\n1.3\nyes\nYES\nno\nyEs\nno\nyes", "SFU", "1.3"},
      {"\n1.3\n\nyes \n\n yes\n\nyess\n", "...", "1.3"},
      {"\n1.3\nyes\n\nyes\n\nyes\n", "...", "1.3"},  // a comment is missing: all behind it shifts
      {"\n1.3\n\nyes\n\nno\n\nyes\nyes\nyes\n", "S.U", "1.3"},
      {crLf, "SF.", "1.3"},
      {"\r1.3\r\ryes\r\rno\r\ryes\r", "S.U", "1.3"},
      {std::string("\n1.3\n\n\0yes\n\nye\0s\n\nyes\0\n", 23), "...", "1.3"},
      {"\n1.3\n\n\xFFyes\n\nyes\n" + std::string(9000, 'x') + "\nyes\n", ".FU", "1.3"},
      {"\n1.3\n\nyes\n" + std::string(65'600, 'x') + "\n\nyes\n", "S..", "1.3"},  // not read to its end
  };
  testing::internal::CaptureStderr();
  RunProgram([&] {
    for (const auto& test : cases) {
      EXPECT_EQ(Loaded(test.text), test.settings) << test.text;
      EXPECT_EQ(App()->vrs.Utf8(), test.version) << test.text;
    }
    WritePrefs("old and\nlonger than what is written now" + std::string(900, '\n'));
    App()->scan = App()->showFeedbackWin = App()->showUnMountBtn = true;
  });
  EXPECT_EQ(ReadPrefs(), kWhole);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Prefs, AreMadeWithTheirFolder) {
  config_ = home_ / "not" / "there";
  setenv("XDG_CONFIG_HOME", config_.c_str(), 1);
  RunProgram([] { ASSERT_TRUE(WaitForScan()); });  // the defaults scan at once
  EXPECT_NE(ReadPrefs().find("\nyes\n# Show feedback window'\nno\n# Show unMount button'\nno\n# EOF\n"),
            std::string::npos);
}

/// Neither read nor written: both are told, and the program runs in between and ends as always.
TEST_F(Prefs, ThatCannotBeOpenedAreToldTwice) {
  fs::remove(PrefsFile());
  ASSERT_EQ(mkfifo(PrefsFile().c_str(), 0600), 0);  // which would also hold up whoever waits for it
  DismissMessages(2);
  EXPECT_EQ(RunProgram([&] {
              EXPECT_FALSE(App()->scan || App()->showFeedbackWin || App()->showUnMountBtn);
              Scan();
            }),
            0);
  for (const auto& message : TheStage().messages)
    EXPECT_NE(message.find("NilObjectException"), std::string::npos) << message;
}

TEST_F(Prefs, OnAFullDiskStayAsTheyWere) {
  std::signal(SIGXFSZ, SIG_IGN);
  const std::string longer = "\n1.3\n\nyes\n" + std::string(500, '#');
  RunProgram([&] {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    for (const std::string& old : {std::string(), std::string("\n1.3\n\nyes\n"), longer}) {
      for (const rlim_t room : {rlim_t{0}, rlim_t{5}, rlim_t{40}}) {  // bytes that still fit on the disk
        WritePrefs(old);
        const rlimit full{room, limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        EventLoop::Deliver([] { App()->savePrefs(); });
        setrlimit(RLIMIT_FSIZE, &limit);
        EXPECT_EQ(ReadPrefs(), old) << room;
      }
    }
  });
  EXPECT_TRUE(ReadPrefs().ends_with("\n# EOF\n")) << "more than the new lines was left";
}

}  // namespace
