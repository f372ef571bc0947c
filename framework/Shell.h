#pragma once

#include <functional>

#include "framework/Object.h"
#include "framework/String.h"

/// Runs one command at a time and waits for it.
///
/// No command interpreter takes part: the line is cut at blanks, the first word is looked up on PATH and last
/// among the program's own tools, and all words reach the command as they are. Whatever a word holds, it runs
/// nothing. Used by the thread that made it.
class Shell : public Object {
 public:
  /// Runs the command line and returns when the command has ended and its output is at its end. On a
  /// `Thread` the baton is given away meanwhile, and a `Kill` ends the command. On the main thread the
  /// user's input waits, while the screen stays alive; where a quit ends that wait, the command goes on to
  /// its own end.
  void Execute(const String& commandLine);

  /// Exit status of the last command, 0 to 255; 128 + n when signal n ended it; 127 when there is no such
  /// command, 126 when it cannot be run.
  int ErrorCode() const { return errorCode_; }

  /// All that the last command printed on its standard output; the first GiB where it is more.
  const String& Result() const { return result_; }

  /// How a command came out.
  struct Outcome {
    int errorCode = 0;
    String result;
  };
  using Runner = std::function<Outcome(const String& commandLine)>;
  /// From now on `runner` answers all command lines in place of child processes. It runs on the thread that
  /// executes them, with the baton.
  static void InstallRunner(Runner runner);

 private:
  int errorCode_ = 0;
  String result_;
};
