#include "framework/Messages.h"

#include <stdexcept>

#include "framework/Application.h"
#include "framework/Shell.h"
#include "tests/Worker.h"
#include "tests/headless/ProgramFixture.h"

namespace {

class Messages : public ProgramFixture {
 protected:
  void Start(std::function<void()> work) {
    worker_->Work = std::move(work);
    InTurn([this] { worker_->Run(); });
  }
  bool Ends() {
    return PumpUntil([this] { return worker_->KillFd() < 0; });
  }

  Ref<Worker> worker_ = New<Worker>();
};

TEST_F(Messages, AMessageAskedForDuringAHandlerComesUpBehindIt) {
  RunProgram([&] {
    std::atomic<bool> asked = false;
    DismissMessages(1);
    Start([&] {
      asked = true;
      MsgBox("Hello");
    });
    while (!asked) std::this_thread::yield();
    EventLoop::Deliver([] {
      New<Shell>()->Execute("sleep 0.1");
      EXPECT_TRUE(TheStage().messages.empty()) << "a message came up in the middle of a handler";
    });
    EXPECT_TRUE(Ends()) << "the message was forgotten";
  });
}

TEST_F(Messages, AQuitEndsItsWaitForAMessage) {
  RunProgram([&] {
    EventLoop::Deliver([&] {
      Start([] {
        MsgBox("Nobody will see this");
        ADD_FAILURE() << "the thread went on";
      });
      Quit(0);
    });
  });
  EXPECT_TRUE(TheStage().messages.empty());
}

TEST_F(Messages, AnExceptionNamesItsClassAndEndsTheThreadOnly) {
  RunProgram([&] {
    DismissMessages(3);
    Start([] { Ref<Window>()->Show(); });
    ASSERT_TRUE(Ends());
    EventLoop::Deliver([] { Ref<Window>()->Show(); });
    EventLoop::Deliver([] { throw std::length_error("not a class"); });
    const char* const nil = "An exception of the class NilObjectException was not handled.";
    EXPECT_EQ(
        TheStage().messages,
        (std::vector<std::string>{nil, nil, "An exception of the class std::length_error was not handled."}));
  });
}

}  // namespace
