#include "framework/Baton.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>

std::atomic<int> Baton::wanted_{0};

namespace {

/// Tickets: each comer draws the next number and waits until it is served.
std::mutex mutex;
std::condition_variable served;
std::uint64_t nextTicket = 0;
std::uint64_t nowServing = 0;

thread_local int turns = 0;  // how often this thread has taken the baton

}  // namespace

void Baton::Take() {
  if (turns == 0) {
    std::unique_lock lock(mutex);
    const std::uint64_t ticket = nextTicket++;
    if (ticket != nowServing) {
      AddReason();
      served.wait(lock, [&] { return ticket == nowServing; });
      DropReason();
    }
  }
  ++turns;
}

void Baton::Give() {
  if (--turns > 0) return;
  {
    const std::lock_guard lock(mutex);
    ++nowServing;
  }
  served.notify_all();
}

bool Baton::HeldHere() {
  return turns > 0;
}

Baton::Pause::Pause() : turns_(turns) {
  if (turns_ == 0) return;
  turns = 1;
  Give();
}

Baton::Pause::~Pause() {
  if (turns_ == 0) return;
  Take();
  turns = turns_;
}
