#include <signal.h>

#include <thread>

#include "app/App.h"
#include "framework/EventLoop.h"
#include "tests/headless/ProgramFixture.h"
#include "windows/Window2.h"

namespace {

/// The main window over a tool with three volumes, of which the second is mounted.
class MainWindow : public ProgramFixture {
 protected:
  MainWindow() {
    Write("list",
          " Apple_HFS One       1.0 GB  disk0s1\n Apple_HFS Two       2.0 GB  disk0s2\n Apple_HFS Three     "
          "3.0 GB  disk0s3\n");
    Write("info", "   Mounted:                  No\n");
    Write("disk0s2.info", "   Mounted:                  Yes\n");
  }

  /// The enabled ones among the row's buttons.
  static std::string Buttons() {
    std::string enabled;
    for (const char* name : {"mountBtn", "infoBtn", "unMountBtn"})
      if (IsEnabled(name)) enabled += std::string(name) + " ";
    return enabled;
  }
  bool WaitForTool() {
    return PumpUntil([this] { return Has("pid"); });
  }
  bool ToolRuns() const { return kill(std::stoi(TextOf(tool_ / "pid")), 0) == 0; }

  const std::string kListTitle = "Executing the command 'diskutil list'\rPlease wait...";
  const std::string kTable =
      "One|1.0 GB||disk0s1|not mounted\nTwo|2.0 GB||disk0s2|mounted\nThree|3.0 GB||disk0s3|not mounted\n";
};

TEST_F(MainWindow, ButtonsTellTheStateAtTheMomentOfSelection) {
  WritePrefs(false, false, true);
  RunProgram([&] {
    EXPECT_EQ(Buttons(), "");
    Scan();
    EventLoop::Deliver([] {
      const auto table = Window1()->ListBox2();
      table->UserSelect(0, table->Generation() - 1);  // a row of a list that is gone
    });
    EXPECT_EQ(Buttons(), "");
    const std::tuple<const char*, std::function<void()>, const char*> steps[] = {
        {"not mounted", [] { Select(0); }, "mountBtn infoBtn "},
        {"mount", [] { Press("mountBtn"); }, "mountBtn infoBtn "},
        {"again", [] { Select(0); }, "mountBtn infoBtn "},
        {"none", [] { Select(-1); }, ""},
        {"mounted by now", [] { Select(0); }, "infoBtn unMountBtn "},
        {"none keeps unMount", [] { Select(-1); }, "unMountBtn "},
        {"unmount without a row", [] { Press("unMountBtn"); }, "unMountBtn "},
        {"mounted", [] { Select(1); }, "infoBtn unMountBtn "},
        {"report", [] { Press("infoBtn"); }, "infoBtn unMountBtn "},
        {"unmount", [] { Press("unMountBtn"); }, "infoBtn unMountBtn "},
        {"double click mounts", [] { DoubleClick(); }, "infoBtn unMountBtn "},
        {"and does so again", [] { DoubleClick(); }, "infoBtn unMountBtn "},
        {"behind the last row", [] { Select(99); }, "unMountBtn "},
        {"double click without a row", [] { DoubleClick(); }, "unMountBtn "},
        {"row to lose", [] { Select(2); }, "mountBtn infoBtn "},
        {"scan", [] { Scan(); }, ""},
    };
    Remove("log");
    for (const auto& [what, act, enabled] : steps) {
      act();
      EXPECT_EQ(Buttons(), enabled) << what;
    }
    EXPECT_EQ(Calls(), (std::vector<std::string>{"mount|disk0s1", "unMount", "info|disk0s2",
                                                 "unMount|disk0s2", "mount|disk0s2", "mount|disk0s2", "mount",
                                                 "list", "info|disk0s1", "info|disk0s2", "info|disk0s3"}));
    EXPECT_EQ(Table(), kTable) << "a row twice, or a state that is not the tool's";
    EventLoop::Deliver([] { Window1()->UserReturn(); });
    Select(0);
    for (const int tab : {1, 0}) {
      SelectTab(tab);
      EventLoop::Deliver([] { Window1()->UserReturn(); });
      EXPECT_EQ(Calls().back() == "mount|disk0s1", tab == 0) << "a button that does not show was pressed";
    }
  });
}

TEST_F(MainWindow, SettingsTakeEffectAsTheirTabIsLeft) {
  WritePrefs(false, true, false);
  const auto unMountShows = [] { return Read([] { return Window1()->unMountBtn()->Visible.Get(); }); };
  RunProgram([&] {
    EXPECT_FALSE(unMountShows());
    SelectTab(1);
    EXPECT_FALSE(Window1()->CheckBoxScan()->Value || Window1()->CheckBoxShowUnMount()->Value);
    EXPECT_TRUE(Window1()->CheckBoxShowFeedbackWin()->Value);
    Tick("CheckBoxScan", true);
    Tick("CheckBoxShowFeedbackWin", false);
    Tick("CheckBoxShowUnMount", true);
    EXPECT_FALSE(App()->scan || unMountShows());
    SelectTab(0);
    EXPECT_TRUE(App()->scan && !App()->showFeedbackWin && App()->showUnMountBtn && unMountShows());
    SelectTab(1);
    Tick("CheckBoxShowUnMount", false);
    SelectTab(1);  // where we are already: no change
    SelectTab(7);
    Tick("CheckBoxScan", false);
    CloseMainWindow();  // what was changed since is lost
  });
  EXPECT_EQ(ReadPrefs(),
            "# Dravik's preferences version\n1.3\n# Scan on startup\nyes\n# Show feedback window'\nno\n"
            "# Show unMount button'\nyes\n# EOF\n");
}

class AtStart : public MainWindow, public testing::WithParamInterface<std::pair<bool, bool>> {};
INSTANTIATE_TEST_SUITE_P(ByScanAndFeedback, AtStart,
                         testing::Values(std::pair{false, true}, std::pair{true, false},
                                         std::pair{true, true}));

TEST_P(AtStart, ScansAndShowsTheFeedbackWindowWhenAsked) {
  const bool scan = GetParam().first, feedback = GetParam().second;
  WritePrefs(scan, feedback, false);
  Write("info.held", "");
  RunProgram([&] {
    EXPECT_TRUE(!scan || WaitForTool());
    EXPECT_EQ(TheStage().presented, scan && feedback ? "Window2 Window1 Window2 " : "Window1 ");
    EXPECT_EQ(IsOpen("Window2"), scan && feedback);
    if (IsOpen("Window2")) {
      EXPECT_EQ(Window2()->staticTitle()->Text.Get().Utf8(), kListTitle);
      EXPECT_EQ(Window2()->StaticText1()->Text.Get().Utf8(),
                "Looking for Drives / Partitions\rPlease wait...");
    }
    Remove("info.held");
    EXPECT_TRUE(WaitForScan());
    EXPECT_TRUE(PumpUntil([] { return TheStage().openWindows.size() == 1; })) << "the screen was not told";
    EXPECT_EQ(Table(), scan ? kTable : "");
    EXPECT_EQ(Calls().size(), scan ? 4u : 0u);
  });
}

TEST_F(MainWindow, AFailedListEndsTheProgramWithItsSettingsSaved) {
  WritePrefs(true, true, false);
  Write("list.status", "2");
  TheStage().answers.emplace_back([] {
    EXPECT_TRUE(IsOpen("Window2"));
    EXPECT_EQ(Read([] { return Window1()->ListBox1()->ListCount(); }), 0);
  });
  EXPECT_EQ(RunProgram([] { EXPECT_TRUE(PumpUntil([] { return EventLoop::Quitting(); })) << "it goes on"; }),
            0);
  EXPECT_EQ(TheStage().messages, std::vector<std::string>{"Error code: 2"});
  EXPECT_EQ(Calls(), std::vector<std::string>{"list"});
  EXPECT_EQ(ReadPrefs().find("# Dravik's preferences version\n1.3\n# Scan on startup\nyes\n"), 0u);
}

TEST_F(MainWindow, AScanDuringAScanIsRefusedAndTearsNothing) {
  WritePrefs(false, true, false);
  Write("info.held", "");
  RunProgram([&] {
    Press("scanButton");
    ASSERT_TRUE(WaitForTool());
    EXPECT_FALSE(IsOpen("Window2")) << "the handler does not wait for the scan";
    EXPECT_EQ(TheStage().presented, "Window1 Window2 ");
    Select(0);
    DismissMessages(1);
    Press("scanButton");
    ASSERT_EQ(TheStage().messages.size(), 1u);
    EXPECT_NE(TheStage().messages[0].find("ThreadAlreadyRunningException"), std::string::npos);
    EXPECT_EQ(Window2()->staticTitle()->Text.Get().Utf8(), kListTitle);
    EXPECT_EQ(Table(), "");
    EXPECT_EQ(Buttons(), "");
    Remove("info.held");
    EXPECT_TRUE(WaitForScan());
    EXPECT_FALSE(IsOpen("Window2"));
    // The scan went on over its three rows, for lists that were empty by then.
    EXPECT_EQ(Calls(), (std::vector<std::string>{"list", "info|disk0s1", "info", "info"}));
    EXPECT_EQ(Table(), "||||size not at the right\n||||size not at the right\n");
    Scan();
    EXPECT_EQ(Table(), kTable);
  });
}

TEST_F(MainWindow, AQuitFromOutsideLeavesACommandOfTheUserToItsEnd) {
  WritePrefs(false, false, true);
  Write("unMount.held", "");
  std::thread outside([this] {
    while (TextOf(tool_ / "pid").empty()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    Application::QuitFromOutside();
  });
  EXPECT_EQ(RunProgram([&] {
              Scan();
              Select(1);
              Press("unMountBtn");
              EXPECT_TRUE(EventLoop::Quitting()) << "the handler did not wait for the tool";
              EventLoop::Deliver([] { ADD_FAILURE() << "a handler ran after the quit"; });
            }),
            0);
  outside.join();
  EXPECT_TRUE(ToolRuns()) << "a disk was left half unmounted";
  Write("unMount", std::string(2'000'000, 'x'));  // more than a pipe holds, and nobody reads it
  Remove("unMount.held");
  for (int look = 0; look < 2000 && !Has("done"); ++look)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_TRUE(Has("done")) << "the tool was ended by its output";
  EXPECT_NE(ReadPrefs().find("\n# EOF\n"), std::string::npos);
}

}  // namespace
