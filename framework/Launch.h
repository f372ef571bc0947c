#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/Descriptor.h"

/// What a command prints into.
enum class Outlet {
  kPipe,  // read as it comes; a command that prints once we have gone is ended by that
  kFile,  // without a name, in memory where the system can: the command never waits for us and outlives us
};

/// The start of one command. Finding, opening and starting it can each hang with a folder of PATH. A Launch
/// does that on another thread, which can be left behind.
///
/// What keeps a command from running is told on standard error.
class Launch {
 public:
  /// Statuses for a command that did not run, as shells give them.
  static constexpr int kNotFound = 127;
  static constexpr int kCannotRun = 126;

  struct Outcome {
    pid_t pid = -1;  // -1 where it did not run, for which `status` stands then
    int status = kNotFound;
    Outlet outlet = Outlet::kPipe;
    Descriptor output;
  };

  /// Looks the first word up in the absolute folders of PATH, last in `toolFolder`, and starts the words on
  /// this thread, to print into a pipe. Returns when that is done, if ever.
  static Outcome OnThisThread(const std::vector<std::string>& words, const std::string& toolFolder);

  /// The same on another thread, to print into a file where one can be had.
  Launch(const std::vector<std::string>& words, const std::string& toolFolder);
  /// A command that has not been started by now will not be; one that prints into a pipe is ended.
  ~Launch();
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  /// Readable once there is an outcome; -1 where there is one already.
  int DoneFd() const;
  /// The outcome, once there is one.
  std::optional<Outcome> TakeOutcome();

 private:
  struct Job;
  static void Run(Job& job);

  std::shared_ptr<Job> job_;
};
