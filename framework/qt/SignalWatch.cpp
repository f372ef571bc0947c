#include "framework/qt/SignalWatch.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdlib>

#include "framework/Application.h"

namespace {

volatile std::sig_atomic_t writeEnd = -1;
volatile std::sig_atomic_t listening = 0;
volatile std::sig_atomic_t kept = 0;

void Pass(int) {
  if (!listening && kept) std::_Exit(EXIT_FAILURE);
  kept = 1;
  [[maybe_unused]] const auto written = write(writeEnd, "s", 1);
}

Pipe& ThePipe() {
  static auto& pipe = *new Pipe(Pipe::Open());
  return pipe;
}

}  // namespace

SignalWatch::SignalWatch() : pipe_(ThePipe()) {
  writeEnd = pipe_.WriteFd();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    if (std::signal(signal, Pass) == SIG_IGN) std::signal(signal, SIG_IGN);
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
