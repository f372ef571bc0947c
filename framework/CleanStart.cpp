#include "framework/CleanStart.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

namespace {

void CleanSignals() {
  // A process that ignores SIGCHLD never hears how its children end.
  for (const int signal : {SIGCHLD, SIGTERM}) {
    struct sigaction now {};
    if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN) std::signal(signal, SIG_DFL);
  }
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool OccupyStandardDescriptors() {
  bool occupied = true;
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) >= 0) continue;
    occupied = open("/dev/null", fd == STDERR_FILENO ? O_WRONLY : O_RDONLY) == fd && occupied;
  }
  return occupied;
}

/// Raises the limit to that, or as far as we may.
template <class Resource>
void Raise(Resource resource, rlim_t wanted) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0 || limit.rlim_cur >= wanted) return;
  limit.rlim_cur = std::min(wanted, limit.rlim_max);
  setrlimit(resource, &limit);
}

}  // namespace

bool CleanStart() {
  constexpr rlim_t kUsualDescriptors = 1024;
  CleanSignals();
  Raise(RLIMIT_NOFILE, kUsualDescriptors);
  Raise(RLIMIT_FSIZE, RLIM_INFINITY);
  umask(umask(0) & ~static_cast<mode_t>(S_IRWXU));
  return OccupyStandardDescriptors();
}
