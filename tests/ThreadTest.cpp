#include "framework/Thread.h"

#include <chrono>
#include <stdexcept>

#include "framework/Application.h"
#include "framework/EventLoop.h"
#include "framework/Shell.h"
#include "tests/headless/ProgramFixture.h"
#include "tests/headless/Worker.h"

namespace {

class ThreadTest : public ProgramFixture {
 protected:
  void Start(std::function<void()> work) {
    worker_->Work = std::move(work);
    EventLoop::Deliver([this] { worker_->Run(); });
  }
  bool Ends() {
    return PumpUntil([this] { return worker_->KillFd() < 0; });
  }
  /// A worker that counts until it is killed.
  void StartCounting() {
    Start([this] {
      const struct Leave {
        bool& left;
        ~Leave() { left = true; }
      } leave{left_};
      for (;;) {
        ++count_;
        YieldPoint();
      }
    });
  }
  bool Counts() {
    const int before = Read([this] { return count_; });
    return PumpUntil([&] { return count_ > before; });
  }

  Ref<Worker> worker_ = New<Worker>();
  int count_ = 0;
  bool left_ = false;
};

TEST_F(ThreadTest, RunsUntilItIsKilledHandsOverBothWaysAndRunsAgain) {
  RunProgram([&] {
    for (int run = 0; run < 3; ++run) {
      left_ = false;
      StartCounting();
      for (int turn = 0; turn < 50; ++turn) ASSERT_TRUE(Counts()) << "one of the two starved";
      EventLoop::Deliver([&] {
        EXPECT_THROW(worker_->Run(), ThreadAlreadyRunningException);
        worker_->Kill();
      });
      ASSERT_TRUE(Ends());
      EXPECT_TRUE(left_) << "the thread did not unwind";
    }
  });
}

TEST_F(ThreadTest, StandsStillWhileSuspendedOrAsleepAndCanBeKilledThen) {
  using namespace std::chrono;
  RunProgram([&] {
    for (const bool asleep : {false, true}) {
      StartCounting();
      ASSERT_TRUE(Counts());
      const auto begin = steady_clock::now();
      EventLoop::Deliver([&] { asleep ? worker_->Sleep(60) : worker_->Suspend(); });
      const int last = Read([&] { return count_; }) + 1;  // it may be on its way from a yield point
      if (asleep) {
        EXPECT_TRUE(PumpUntil([&] { return count_ > last; }));
        EXPECT_GE(duration_cast<milliseconds>(steady_clock::now() - begin).count(), 60);
      } else {
        int looks = 0;
        EXPECT_TRUE(PumpUntil([&] { return ++looks > 10; }));
        EXPECT_LE(Read([&] { return count_; }), last);
        EventLoop::Deliver([&] { worker_->Resume(); });
        EXPECT_TRUE(Counts());
      }
      EventLoop::Deliver([&] { asleep ? worker_->Sleep(3'600'000) : worker_->Suspend(); });
      EventLoop::Deliver([&] { worker_->Kill(); });
      EXPECT_TRUE(Ends());
    }
  });
}

TEST_F(ThreadTest, AMessageAskedForDuringAHandlerComesUpBehindIt) {
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
      EXPECT_TRUE(TheStage().Messages.empty()) << "a message came up in the middle of a handler";
    });
    EXPECT_TRUE(Ends()) << "the message was forgotten";
  });
}

TEST_F(ThreadTest, AQuitEndsItsWaitForAMessage) {
  RunProgram([&] {
    worker_->Work = [] {
      MsgBox("Nobody will see this");
      ADD_FAILURE() << "the thread went on";
    };
    EventLoop::Deliver([&] {
      worker_->Run();
      Quit(0);
    });
  });
  EXPECT_TRUE(TheStage().Messages.empty());
}

TEST_F(ThreadTest, AnExceptionNamesItsClassAndEndsTheThreadOnly) {
  RunProgram([&] {
    DismissMessages(3);
    Start([] { Ref<Window>()->Show(); });
    ASSERT_TRUE(Ends());
    EventLoop::Deliver([] { Ref<Window>()->Show(); });
    EventLoop::Deliver([] { throw std::length_error("not a class"); });
    const char* const nil = "An exception of the class NilObjectException was not handled.";
    EXPECT_EQ(
        TheStage().Messages,
        (std::vector<std::string>{nil, nil, "An exception of the class std::length_error was not handled."}));
  });
}

}  // namespace
