#include "framework/CleanStart.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

/// What a parent can leave behind, all of it at once.
TEST(CleanStart, PutsRightWhatAParentLeftBehind) {
  for (const int signal : {SIGCHLD, SIGTERM, SIGHUP, SIGINT}) std::signal(signal, SIG_IGN);
  sigset_t signals;
  sigfillset(&signals);
  pthread_sigmask(SIG_SETMASK, &signals, nullptr);
  umask(0777);
  const rlimit few{20, 500};
  setrlimit(RLIMIT_NOFILE, &few);
  const rlimit small{1000, RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &small);
  const int kept[] = {fcntl(0, F_DUPFD, 3), fcntl(1, F_DUPFD, 3), fcntl(2, F_DUPFD, 3)};
  for (const int fd : {0, 1, 2}) close(fd);

  const bool clean = CleanStart();
  char byte;
  const bool ends = read(0, &byte, 1) == 0, fails = write(1, "x", 1) < 0, isLost = write(2, "x", 1) == 1;
  for (const int fd : {0, 1, 2}) dup2(kept[fd], fd);
  EXPECT_TRUE(clean && ends && fails && isLost) << clean << ends << fails << isLost;

  pthread_sigmask(SIG_SETMASK, nullptr, &signals);
  EXPECT_FALSE(sigismember(&signals, SIGTERM));
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(limit.rlim_cur, 500u);
  getrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_EQ(limit.rlim_cur, RLIM_INFINITY);
  EXPECT_EQ(umask(0), mode_t{077});
  EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
  for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGXFSZ})
    EXPECT_EQ(std::signal(signal, SIG_DFL), SIG_IGN) << signal;
  const pid_t child = fork();
  if (child == 0) _exit(3);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child) << "children are not waited for";
  EXPECT_EQ(WEXITSTATUS(status), 3);
}

}  // namespace
