// The program itself, as it is started by others.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tests/linux/Testbed.h"

namespace {

int StatusOf(const std::string& redirected) {
  const int status = std::system(("LD_PRELOAD=" UMOCKDEV_PRELOAD
                                  " ASAN_OPTIONS=verify_asan_link_order=0 " PROGRAM " list 2>/dev/null " +
                                  redirected)
                                     .c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Program, FailsWhenItsResultCannotBeWritten) {
  const Testbed bed;
  EXPECT_EQ(StatusOf("| cmp - " TEST_DATA "/list.txt"), 0);
  EXPECT_EQ(StatusOf(">/dev/full"), 1);
  EXPECT_EQ(StatusOf(">&-"), 1);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const int pipeWithoutReader = dup2(ends[1], 9);
  EXPECT_EQ(StatusOf(">&9"), 1);
  close(pipeWithoutReader);
  close(ends[1]);
}

}  // namespace
