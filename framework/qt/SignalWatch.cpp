#include "framework/qt/SignalWatch.h"

#include <unistd.h>

#include <cerrno>

#include "framework/Application.h"

namespace {

volatile std::sig_atomic_t writeEnd = -1;

void Pass(int) {
  const int error = errno;
  [[maybe_unused]] const auto written = write(writeEnd, "s", 1);
  errno = error;
}

}  // namespace

SignalWatch::SignalWatch() : pipe_(Pipe::Open()) {
  if (pipe_.WriteFd() < 0) return;
  writeEnd = pipe_.WriteFd();
  notifier_ = std::make_unique<QSocketNotifier>(pipe_.ReadFd(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
    char byte;
    [[maybe_unused]] const auto count = read(pipe_.ReadFd(), &byte, 1);
    Application::QuitFromOutside();
  });

  struct sigaction pass {};
  pass.sa_handler = Pass;
  pass.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &former_[i]);
    // Who starts the program with SIGHUP ignored wants it to outlive the terminal.
    if (kSignals[i] != SIGHUP || former_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &pass, nullptr);
  }
}

SignalWatch::~SignalWatch() {
  if (!notifier_) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &former_[i], nullptr);
}
