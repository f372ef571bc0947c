#pragma once

#include <atomic>
#include <thread>

#include "framework/Baton.h"
#include "framework/Object.h"
#include "framework/Pipe.h"

/// A cooperative thread of the program. Its code runs while it holds the baton; others run at its yield
/// points, while a `Shell` waits for a command, and while a message box is up.
///
/// All members are called while the baton is held.
class Thread : public Object {
 public:
  /// Ends the thread by unwinding: at its next yield point, or where it waits. A command it waits for is
  /// terminated, once it has been started.
  virtual void Kill();
  /// Lets a suspended thread go on.
  virtual void Resume();
  /// Starts `Event_Run` on the thread and returns at once. Raises ThreadAlreadyRunningException when the
  /// last run has not ended, RuntimeException when the system has nothing left to start it with.
  virtual void Run();
  /// The thread does nothing for so many milliseconds from its next yield point on.
  virtual void Sleep(int milliseconds);
  /// Stops the thread at its next yield point until `Resume`.
  virtual void Suspend();

  int Priority = 5;
  int StackSize = 0;
  /// What it works for.
  Object* Window = nullptr;

  /// The thread this code runs on, nullptr on the main thread.
  static Thread* Current();

  /// Readable from `Kill` on. A wait on this thread watches it too.
  int KillFd() const { return kill_.ReadFd(); }
  bool Killed() const { return killed_; }

  /// Gives the turn to those who wait for it; see YieldPoint.
  static void YieldCurrent();

  /// A scope without the baton in which the thread may hang. `EndAll` waits a moment for it, then leaves the
  /// thread behind for good. A killed thread does not enter but unwinds. Used on the thread itself.
  class Absence {
   public:
    explicit Absence(Thread& thread);
    ~Absence();
    Absence(const Absence&) = delete;
    Absence& operator=(const Absence&) = delete;

   private:
    Thread& thread_;
  };

  /// Ends the current run from inside, after a `Kill`. Called on the thread itself.
  [[noreturn]] void Unwind();

  /// Whether a thread runs that works for this window.
  static bool RunsFor(const Object& window);

  /// Kills all running threads but the one this code runs on.
  static void KillAll();
  /// Kills all running threads and waits until they and all that ran before are gone, or away for longer than
  /// a moment. Called without the baton.
  static void EndAll();

 protected:
  /// The thread's work.
  virtual void Event_Run() = 0;

 private:
  enum class Whereabouts { kHere, kAway, kLeftBehind };  // the latter two in an `Absence`

  void Body();
  void Yield();
  void RequestYield();
  void ComeBack();
  bool StaysAway();

  std::thread thread_;
  bool running_ = false;
  std::atomic<bool> killed_ = false;
  std::atomic<bool> suspended_ = false;
  std::atomic<Whereabouts> whereabouts_ = Whereabouts::kHere;
  int sleep_ = 0;                // milliseconds
  bool yieldRequested_ = false;  // and counted as a reason with the baton
  Pipe kill_;
};

/// A place where other code of the program may run. Costs one relaxed load while nobody waits. Does nothing
/// on the main thread, whose handlers run to their end.
inline void YieldPoint() {
  if (Baton::Wanted()) [[unlikely]]
    Thread::YieldCurrent();
}
