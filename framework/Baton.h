#pragma once

#include <atomic>

/// The one turn to run program code. Whoever holds it touches framework objects; nobody else does.
///
/// The main thread takes it for each event it delivers. A `Thread` holds it from its start to its end and
/// gives it away at yield points and while it waits. Waiting threads get it in the order in which they came,
/// so a thread that gives it away at a yield point lets the one that waits really have it.
class Baton {
 public:
  /// Holds the baton for a scope.
  class Turn {
   public:
    Turn() { Take(); }
    ~Turn() { Give(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
  };

  /// Gives the baton away for a scope, whatever number of turns this thread has taken, and takes the same
  /// number back at the end. A thread that does not hold it gives nothing away.
  class Pause {
   public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    int turns_;
  };

  static void Take();
  static void Give();
  static bool HeldHere();

  /// True when somebody waits for the baton or a thread has been asked to do something at its next yield
  /// point. One relaxed load.
  static bool Wanted() { return wanted_.load(std::memory_order_relaxed) != 0; }

  /// A reason, besides a waiting thread, to stop at yield points: one more, one less.
  static void AddReason() { wanted_.fetch_add(1, std::memory_order_relaxed); }
  static void DropReason() { wanted_.fetch_sub(1, std::memory_order_relaxed); }

 private:
  static std::atomic<int> wanted_;
};
