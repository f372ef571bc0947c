#include "framework/qt/SignalWatch.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "framework/Application.h"

namespace {

volatile std::sig_atomic_t writeEnd = -1;
volatile std::sig_atomic_t listening = 0;
volatile std::sig_atomic_t kept = 0;

void Pass(int) {
  if (!listening && kept) std::_Exit(EXIT_FAILURE);
  kept = 1;
  const int error = errno;
  [[maybe_unused]] const auto written = write(writeEnd, "s", 1);
  errno = error;
}

}  // namespace

SignalWatch::SignalWatch() : pipe_(Pipe::Open()) {
  if (pipe_.WriteFd() < 0) return;
  writeEnd = pipe_.WriteFd();
  struct sigaction pass {};
  pass.sa_handler = Pass;
  pass.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &former_[i]);
    if (former_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &pass, nullptr);
  }
}

void SignalWatch::Listen() {
  if (pipe_.ReadFd() < 0) return;
  listening = 1;
  notifier_ = std::make_unique<QSocketNotifier>(pipe_.ReadFd(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
    char byte;
    [[maybe_unused]] const auto count = read(pipe_.ReadFd(), &byte, 1);
    Application::QuitFromOutside();
  });
}

void SignalWatch::Close() {
  notifier_ = nullptr;
}

SignalWatch::~SignalWatch() {
  if (pipe_.WriteFd() < 0) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &former_[i], nullptr);
}
