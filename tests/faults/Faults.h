#pragma once

#include <dlfcn.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <span>
#include <string>

/// Lets one call of the system fail in each run of a session, the next one each time.
namespace faults {

inline std::atomic<bool> armed = false;
inline thread_local int spared = 0;

/// While one lives nothing fails: the test itself is at work.
struct Spare {
  Spare() { ++spared; }
  ~Spare() { --spared; }
};

/// How one run of a session ended, and the call that failed in it.
struct Run {
  int status = 0;  // as `waitpid` tells it
  std::string shown, told;
  const char* struck = nullptr;
  int code = 0;
  bool left = false;  // a child that does not end

  /// What is wrong with it, nullptr for nothing: a run may show something else than a good one, and then says
  /// so.
  const char* WhatIsWrong(const Run& good) const;
};

/// The error that a call has to fail with, 0 for none.
int Strike(const char* call, std::span<const int> errors);

struct Session {
  const char* name;
  std::function<void()> prepare;  // in this process
  std::function<int()> play;      // in one of its own, in the current folder; its exit status
  /// What is wrong with a run: nullptr for nothing.
  std::function<const char*(const Run& good, const Run& run)> judge;
};

/// Plays the session again and again until a run goes through, and prints what the judge finds wrong. Returns
/// false when that was anything, or where there were fewer points than `least`.
bool FailEachCall(const Session& session, int least);

}  // namespace faults

// Stands in for a call of the system, also for libraries. `failure` is what it returns when it fails with
// `error`.
#define CALL(type, failure, name, parameters, arguments, ...)                                        \
  extern "C" type Call_##name parameters __asm__(#name);                                             \
  extern "C" type Call_##name parameters {                                                           \
    static const auto real =                                                                         \
        reinterpret_cast<type(*) parameters>(dlsym(RTLD_NEXT, #name[0] == '_' ? &#name[7] : #name)); \
    static constexpr int kErrors[] = {__VA_ARGS__};                                                  \
    const int error = faults::Strike(#name, kErrors);                                                \
    return error == 0 ? real arguments : (errno = error, static_cast<type>(failure));                \
  }
