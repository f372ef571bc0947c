#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <string_view>
#include <vector>

#include "framework/CleanStart.h"
#include "linux_diskutil/Command.h"

namespace {

bool Write(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {  // a parent has left it so that a full pipe is not waited for
      pollfd room{file, POLLOUT, 0};
      poll(&room, 1, -1);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int count, char** words) try {
  if (!CleanStart()) {
    std::perror("Could not open /dev/null");
    return 1;
  }

  const diskutil::Outcome outcome =
      diskutil::RunCommand({words + (count > 0 ? 1 : 0), words + count}, diskutil::Udisks());
  if (outcome.status != 0) {
    Write(STDERR_FILENO, outcome.text);
    return outcome.status;
  }
  // Some file systems tell only at the close that they had no room.
  if (Write(STDOUT_FILENO, outcome.text) && close(STDOUT_FILENO) == 0) return 0;
  std::perror("Could not write the result");
  return 1;
} catch (const std::exception& error) {  // no memory, not even for the words
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
