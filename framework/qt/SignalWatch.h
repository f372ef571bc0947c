#pragma once

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <memory>

#include "framework/Pipe.h"

/// Quits the program the normal way on SIGTERM, SIGINT and SIGHUP, unless the one who started it has it
/// ignore them.
class SignalWatch {
 public:
  SignalWatch();
  ~SignalWatch();

 private:
  static constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

  Pipe pipe_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::array<struct sigaction, kSignals.size()> former_{};
};
