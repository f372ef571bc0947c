#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "linux/Command.h"

namespace {

// A standard descriptor that was closed before we started would be given to the next file we open, a disk
// perhaps, and our text would go there. Taken up like this, writing to it fails as it should.
bool OccupyStandardDescriptors() {
  int file = 0;
  do {
    file = open("/dev/null", O_RDONLY);
  } while (file >= 0 && file <= STDERR_FILENO);
  if (file >= 0) close(file);
  return file >= 0;
}

bool Write(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

int main(int count, char** words) {
  if (!OccupyStandardDescriptors()) {
    Write(STDERR_FILENO, std::string("Could not open /dev/null: ") + std::strerror(errno) + "\n");
    return 1;
  }
  std::signal(SIGPIPE, SIG_IGN);  // A reader that has gone is an error like any other.

  const diskutil::Outcome outcome =
      diskutil::RunCommand({words + (count > 0 ? 1 : 0), words + count}, diskutil::Udisks());
  if (outcome.status != 0) {
    Write(STDERR_FILENO, outcome.text);
    return outcome.status;
  }
  // Some file systems tell only at the close that they had no room.
  if (Write(STDOUT_FILENO, outcome.text) && close(STDOUT_FILENO) == 0) return 0;
  Write(STDERR_FILENO, std::string("Could not write the result: ") + std::strerror(errno) + "\n");
  return 1;
}
