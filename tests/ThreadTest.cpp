#include "framework/Thread.h"

#include <gtest/gtest.h>

#include "tests/Worker.h"

namespace {

class ThreadTest : public testing::Test {
 protected:
  ~ThreadTest() override {
    Thread::EndAll();
    EXPECT_FALSE(Baton::Wanted()) << "threads would stop for nobody from now on";
  }

  void Start(std::function<void()> work) {
    worker_->Work = std::move(work);
    InTurn([this] { worker_->Run(); });
  }
  bool Ends() {
    return WaitUntil([this] { return worker_->KillFd() < 0; });
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
    const int before = InTurn([this] { return count_; });
    return WaitUntil([&] { return count_ > before; });
  }

  Ref<Worker> worker_ = New<Worker>();
  int count_ = 0;
  bool left_ = false;
};

TEST_F(ThreadTest, RunsUntilItIsKilledHandsOverBothWaysAndRunsAgain) {
  for (int run = 0; run < 3; ++run) {
    left_ = false;
    StartCounting();
    for (int turn = 0; turn < 50; ++turn) ASSERT_TRUE(Counts()) << "one of the two starved";
    InTurn([&] {
      EXPECT_THROW(worker_->Run(), ThreadAlreadyRunningException);
      worker_->Kill();
    });
    ASSERT_TRUE(Ends());
    EXPECT_TRUE(left_) << "the thread did not unwind";
  }
}

TEST_F(ThreadTest, CanBeKilledWhileSuspendedOrAsleep) {
  for (const bool asleep : {false, true}) {
    StartCounting();
    ASSERT_TRUE(Counts());
    InTurn([&] { asleep ? worker_->Sleep(3'600'000) : worker_->Suspend(); });
    InTurn([&] { worker_->Kill(); });
    EXPECT_TRUE(Ends());
  }
}

TEST_F(ThreadTest, StopsItselfAtItsNextYieldPointOnly) {
  using namespace std::chrono;
  std::atomic<bool> passed = false;
  InTurn([&] { worker_->Suspend(), worker_->Sleep(3'600'000), worker_->Kill(); });  // all of no meaning yet
  Start([&] {
    const auto begin = steady_clock::now();
    worker_->Sleep(20);
    YieldPoint();
    EXPECT_GE(steady_clock::now() - begin, milliseconds(20));
    EXPECT_FALSE(Baton::Wanted());
    worker_->Suspend();
    YieldPoint();
    passed = true;
    worker_->Kill();
    ADD_FAILURE() << "a killed thread went on";
  });
  for (int look = 0; look < 50 && !passed; ++look) std::this_thread::sleep_for(milliseconds(1));
  EXPECT_FALSE(passed);
  InTurn([&] { worker_->Resume(); });
  EXPECT_TRUE(Ends() && passed);
}

}  // namespace
