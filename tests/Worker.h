#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "framework/Thread.h"

/// A thread of the program that does what a test says.
class Worker : public Thread {
 public:
  std::function<void()> Work;

 protected:
  void Event_Run() override { Work(); }
};

/// What a handler does on a main thread that has nobody above it.
template <class F>
auto InTurn(F&& act) {
  const Baton::Turn turn;
  return act();
}

/// False when the condition, looked at with the baton, does not hold within some seconds.
inline bool WaitUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!InTurn(condition)) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}
