#include "framework/Thread.h"

#include <gtest/gtest.h>

#include "tests/Worker.h"

namespace {

class ThreadTest : public testing::Test {
 protected:
  ~ThreadTest() override { Thread::EndAll(); }

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

TEST_F(ThreadTest, StandsStillWhileSuspendedOrAsleepAndCanBeKilledThen) {
  using namespace std::chrono;
  for (const bool asleep : {false, true}) {
    StartCounting();
    ASSERT_TRUE(Counts());
    const auto begin = steady_clock::now();
    InTurn([&] { asleep ? worker_->Sleep(60) : worker_->Suspend(); });
    const int last = InTurn([&] { return count_; }) + 1;  // it may be on its way from a yield point
    if (asleep) {
      EXPECT_TRUE(WaitUntil([&] { return count_ > last; }));
      EXPECT_GE(duration_cast<milliseconds>(steady_clock::now() - begin).count(), 60);
    } else {
      int looks = 0;
      EXPECT_TRUE(WaitUntil([&] { return ++looks > 10; }));
      EXPECT_LE(InTurn([&] { return count_; }), last);
      InTurn([&] { worker_->Resume(); });
      EXPECT_TRUE(Counts());
    }
    InTurn([&] { asleep ? worker_->Sleep(3'600'000) : worker_->Suspend(); });
    InTurn([&] { worker_->Kill(); });
    EXPECT_TRUE(Ends());
  }
}

}  // namespace
