#include "app/App.h"
#include "app/FileTypes.h"
#include "app/MenuBar1.h"
#include "framework/EventLoop.h"
#include "tests/headless/ProgramFixture.h"
#include "windows/AboutWindow.h"
#include "windows/Window2.h"
#include "windows/Window3.h"

namespace {

class Windows : public ProgramFixture {};

class Unfinished : public Window {
  void Event_Open() override { throw NilObjectException(); }
};

TEST_F(Windows, AreOneOfEachAndFreshAfterTheirClose) {
  RunProgram([] {
    EventLoop::Deliver([] {
      EXPECT_TRUE(Window1()->Left == 415 && Window1()->Top == 260) << "not in the middle of the screen";
      Window1()->UserMove(100, 50);
      const auto first = Window2();
      EXPECT_EQ(first, Window2());
      EXPECT_EQ(first->Left, 130);
      EXPECT_EQ(first->Top, 70);
      Window1()->UserResize(460, 800);
      EXPECT_EQ(Window1()->ListBox2()->Width, 379 + 10);
      EXPECT_EQ(Window1()->mountBtn()->Left, 336 + 10);
      EXPECT_EQ(Window1()->ListBox2()->Height, 134 + 520);
      EXPECT_EQ(Window1()->mountBtn()->Top, 226 + 520);
      first->staticTitle()->Text = "Mounting";
      first->StaticText1()->Text = "Mounting";
      first->UserClose();
      EXPECT_TRUE(first->IsOpen()) << "only code closes it";
      first->Close();
      first->Close();
      first->Show();
      EXPECT_FALSE(_GetImplicitWindow("Window2.Window2"));
      EXPECT_FALSE(first->staticTitle()->Reachable());
      EXPECT_EQ(Window2()->staticTitle()->Text.Get().Utf8(), "'diskutil' command...");
      EXPECT_EQ(Window2()->StaticText1()->Text.Get().Utf8(),
                "Looking for Drives / Partitions\rPlease wait...");
      Window2()->Close();
      Window2()->Close();  // makes one and ends it
      EXPECT_FALSE(_GetImplicitWindow("Window2.Window2"));

      EXPECT_THROW(ImplicitWindow<Unfinished>("Unfinished"), NilObjectException);
      EXPECT_EQ(Window::OpenWindows().size(), 1u);

      const auto information = Window3();
      EXPECT_TRUE(information->Left == 100 + (460 - 720) / 2 && information->Top == 50 + (800 - 493) / 2);
      information->infoFld()->UserEdit("typed");
      EXPECT_EQ(information->infoFld()->Text.Get().Utf8(), "typed");
      information->UserReturn();
      EXPECT_FALSE(information->IsOpen());
      EXPECT_EQ(Window3()->infoFld()->Text.Get().Utf8(), "");
    });
    EXPECT_FALSE(EventLoop::Quitting());
  });
  EXPECT_EQ(TheStage().windowsSeen, (std::vector<std::string>{"Window1.Window1", "Window3.Window3"}));
}

TEST_F(Windows, AboutClosesAndThenOpensItsLinks) {
  // clang-format off
  const std::tuple<const char*, void (*)(class AboutWindow& about), std::vector<std::string>> cases[] = {
      {"web",         [](auto& about) { about.StaticText5()->UserMouseDown(1, 1); }, {"https://elsewhere.example/"}},  // its own text
      {"mail",        [](auto& about) { EXPECT_FALSE(about.StaticText6()->MouseDown(about.StaticText6(), 1, 1)); }, {"mailto:contacts@dravik.example?subject=Dravik"}},
      {"donation",    [](auto& about) { about.BevelButton1()->UserPress(); }, {"https://www.dravik.example/paypal.php?app=Dravik"}},
      {"background",  [](auto& about) { EXPECT_FALSE(about.Event_MouseDown(3, 3)); }, {}},
      {"other label", [](auto& about) { about.StaticText1()->UserMouseDown(1, 1); }, {}},
      {"close box",   [](auto& about) { about.UserClose(); }, {}},
  };
  // clang-format on
  RunProgram([&] {
    for (const auto& [what, click, addresses] : cases) {
      SCOPED_TRACE(what);
      TheStage().addresses.clear();
      Choose("AppleAbout");
      const auto about = AboutWindow();
      Choose("AppleAbout");
      EXPECT_EQ(about, AboutWindow()) << "a second window";
      const auto web = about->StaticText5(), mail = about->StaticText6();
      web->Text = "https://elsewhere.example/";
      mail->Text = "nobody";
      for (const auto& [link, other] : {std::pair{web, mail}, {mail, web}}) {
        link->UserMouseEnter();
        EXPECT_TRUE(link->TextColor.Get() == RGB(0, 0, 255) && link->Underline && !other->Underline);
        link->UserMouseExit();
        EXPECT_TRUE(link->TextColor.Get() == RGB(0, 0, 0) && !link->Underline);
      }
      EventLoop::Deliver([&about, click = click] {
        about->UserReturn();
        EXPECT_TRUE(about->IsOpen());
        click(*about);
      });
      EXPECT_FALSE(about->IsOpen() || IsOpen("AboutWindow"));
      web->UserMouseDown(1, 1);  // which has gone
      EXPECT_EQ(TheStage().addresses, addresses);
    }
  });
}

TEST_F(Windows, MenusEnableWhatCanBeDone) {
  Ref<class MenuBar1> bar;
  RunProgram([&] {
    bar = MenuBar1();
    EXPECT_TRUE(FileTypes::pText);
    EXPECT_FALSE(Window1()->UntitledMenu0()->KeyboardShortcut);
    Window1()->AppleAbout()->AutoEnable = Window1()->AppleAbout()->Enabled = false;
    for (const bool canEdit : {false, true}) {
      TheStage().canEdit = canEdit;
      for (const char* name : {"EditUndo", "EditCut", "EditCopy", "EditPaste", "EditClear"}) Choose(name);
      EXPECT_EQ(Window1()->EditCopy()->Enabled, canEdit);
      EXPECT_TRUE(Window1()->AppleAbout()->Enabled && Window1()->FileQuit()->Enabled);
      EXPECT_FALSE(Window1()->UntitledMenu0()->Enabled);
      EXPECT_EQ(TheStage().edits.size(), canEdit ? 5u : 0u);
    }
    EXPECT_FALSE(App()->_AppleAbout_Action());
    EXPECT_TRUE(AboutWindow()->Handlers().Has("FileClose"));
    EXPECT_FALSE(AboutWindow()->Handlers().Run("FileClose"));
    EXPECT_TRUE(IsOpen("AboutWindow"));
  });
  EXPECT_TRUE(bar != MenuBar1() && !FileTypes::pText) << "what is global outlives the run";
}

}  // namespace
