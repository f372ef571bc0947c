#include "framework/Starter.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace {

struct Starter {
  std::mutex mutex;  // guards what follows
  std::condition_variable handedOver;
  std::function<void()> next;
  bool waits = false;  // a thread, for `next`
};

/// Outlives all threads, one of which may wait when the process ends.
Starter& TheStarter() {
  static auto* const starter = new Starter;
  return *starter;
}

void Work(std::function<void()> start) {
  Starter& starter = TheStarter();
  for (;;) {
    std::exchange(start, nullptr)();
    std::unique_lock lock(starter.mutex);
    if (starter.waits) return;
    starter.waits = true;
    starter.handedOver.wait(lock, [&starter] { return starter.next != nullptr; });
    starter.waits = false;
    start = std::exchange(starter.next, nullptr);
  }
}

}  // namespace

void StartOnThread(std::function<void()> start) {
  Starter& starter = TheStarter();
  const std::lock_guard lock(starter.mutex);
  if (starter.waits && !starter.next) {
    starter.next = std::move(start);
    starter.handedOver.notify_one();
  } else {
    std::thread([start = std::move(start)]() mutable { Work(std::move(start)); }).detach();
  }
}
