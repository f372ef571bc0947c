#include "framework/qt/SignalWatch.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "framework/Application.h"

namespace {

volatile std::sig_atomic_t writeEnd = -1;
volatile std::sig_atomic_t listening = 0;
volatile std::sig_atomic_t kept = 0;

void PassOn(int) {
  if (!listening && kept) std::_Exit(EXIT_FAILURE);
  kept = 1;
  const int error = errno;  // of whatever the signal has interrupted
  [[maybe_unused]] const auto written = write(writeEnd, "s", 1);
  errno = error;
}

Pipe& ThePipe() {
  static auto& pipe = *new Pipe(Pipe::Open());
  return pipe;
}

}  // namespace

SignalWatch::SignalWatch() : pipe_(ThePipe()) {
  if (pipe_.WriteFd() < 0) return;  // signals end the process then, as they do without us
  writeEnd = pipe_.WriteFd();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    if (std::signal(signal, PassOn) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void SignalWatch::Listen() {
  listening = 1;
  auto* notifier = new QSocketNotifier(pipe_.ReadFd(), QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] {
    char byte;
    [[maybe_unused]] const auto count = read(pipe_.ReadFd(), &byte, 1);
    Application::QuitFromOutside();
  });
}
