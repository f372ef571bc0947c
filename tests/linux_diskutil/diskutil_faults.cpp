// Every call that can fail, failed once, in our own diskutil over mocked disks and a mocked UDisks2. However
// it fails, the tool ends by itself: with its whole result, or with a line that says why not.

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "tests/TextOf.h"
#include "tests/faults/Faults.h"
#include "tests/linux_diskutil/Testbed.h"
#include "tests/linux_diskutil/UdisksMock.h"

// What fails is the system. A device that goes away, and one that cannot be read, are no failures: they cost
// the row at most, and other tests show it.
// clang-format off
CALL(int, -1, open, (const char* path, int flags, mode_t mode), (path, flags, mode), EMFILE, ENFILE, ENOMEM)
CALL(int, -1, open64, (const char* path, int flags, mode_t mode), (path, flags, mode), EMFILE, ENFILE, ENOMEM)
CALL(int, -1, openat, (int folder, const char* path, int flags, mode_t mode), (folder, path, flags, mode), EMFILE, ENFILE, ENOMEM)
CALL(int, -1, openat64, (int folder, const char* path, int flags, mode_t mode), (folder, path, flags, mode), EMFILE, ENFILE, ENOMEM)
CALL(FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode), EMFILE, ENFILE, ENOMEM)
CALL(FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode), EMFILE, ENFILE, ENOMEM)
CALL(DIR*, nullptr, opendir, (const char* path), (path), EMFILE, ENFILE, ENOMEM)
CALL(ssize_t, -1, __wrap_read, (int file, void* to, size_t size), (file, to, size), ENOMEM, EINTR)
CALL(ssize_t, -1, read, (int file, void* to, size_t size), (file, to, size), ENOMEM)
CALL(ssize_t, -1, __wrap_pread, (int file, void* to, size_t size, off_t at), (file, to, size, at), ENOMEM, EINTR)
CALL(ssize_t, -1, write, (int file, const void* from, size_t size), (file, from, size), EIO, ENOSPC, EINTR)
CALL(int, -1, stat, (const char* path, struct stat* to), (path, to), ENOMEM)
CALL(ssize_t, -1, readlink, (const char* path, char* to, size_t size), (path, to, size), ENOMEM)
CALL(int, -1, socket, (int domain, int type, int protocol), (domain, type, protocol), EMFILE, ENFILE, ENOMEM)
CALL(int, -1, connect, (int file, const sockaddr* to, socklen_t size), (file, to, size), EAGAIN, ENOMEM)
CALL(ssize_t, -1, sendmsg, (int file, const msghdr* message, int flags), (file, message, flags), ENOBUFS, ECONNRESET)
CALL(ssize_t, -1, recvmsg, (int file, msghdr* message, int flags), (file, message, flags), ENOMEM, ECONNRESET)
CALL(int, -1, ppoll, (pollfd* files, nfds_t count, const timespec* wait, const sigset_t* signals), (files, count, wait, signals), ENOMEM)
CALL(void*, nullptr, __wrap_malloc, (std::size_t size), (size), ENOMEM)
// clang-format on

namespace {

std::string mounted;
const Testbed* bed = nullptr;
bool asRoot = false;  // on a system without UDisks2

/// What only root may call.
int CallKernel(const char* call, const std::string& mountsAfterwards) {
  static constexpr int kErrors[] = {EIO, ENOMEM};
  if ((errno = faults::Strike(call, kErrors)) != 0) return -1;
  const faults::Spare spare;
  bed->SetMounts(mountsAfterwards);
  return 0;
}

}  // namespace

extern "C" {
uid_t geteuid() noexcept {
  return asRoot ? 0 : 1000;
}
int mount(const char*, const char*, const char*, unsigned long, const void*) noexcept {
  return CallKernel("mount", mounted);
}
int umount(const char*) noexcept {
  return CallKernel("umount", "");
}
int mkdir(const char* path, mode_t mode) noexcept {
  return std::string_view(path).starts_with("/media") ? CallKernel("mkdir", "")
                                                      : mkdirat(AT_FDCWD, path, mode);
}
}

int DiskutilMain(int count, char** words);

int main() {
  const Testbed testbed;
  bed = &testbed;
  std::string home = std::filesystem::temp_directory_path() / "dravik-faults-XXXXXX";
  if (!mkdtemp(home.data())) return 1;
  std::filesystem::current_path(home);
  mounted = "36 20 8:18 / " + home + " rw - hfsplus /dev/sdb2 rw\n";
  bool passed = true;
  setenv("LIBMOUNT_FORCE_MOUNT2", "always", 1);  // the one system call, where libmount knows a newer way
  for (const std::string session : {"list", "info", "mount", "unMount", "mount as root", "unMount as root"}) {
    const std::string verb = session.substr(0, session.find(' '));
    const bool isList = verb == "list", isMount = verb == "mount";
    asRoot = verb != session;
    std::unique_ptr<UdisksMock> service;
    const auto prepare = [&] {
      testbed.SetMounts(isMount ? "" : mounted);
      if (!verb.ends_with("ount")) return;
      service.reset();
      const UdisksMock::Answer done{"", [&] { testbed.SetMounts(isMount ? mounted : ""); }};
      service =
          std::make_unique<UdisksMock>(asRoot ? UdisksMock::kNoDevice : makedev(8, 18), std::deque{done});
    };
    const auto play = [&] {
      std::string words[] = {"diskutil", verb, "disk7s2"};
      char* pointers[] = {words[0].data(), words[1].data(), words[2].data()};
      return DiskutilMain(isList ? 2 : 3, pointers);
    };
    const auto judge = [&](const faults::Run& good, const faults::Run& run) {
      const bool saysDone = WIFEXITED(run.status) && WEXITSTATUS(run.status) == 0;
      if (saysDone && run.shown != good.shown) return "half a result is called a whole one";
      for (const char* lie : {"not find", "not running", "not support", "no volume", "not mounted"})
        if (run.told.find(lie) != std::string::npos) return "something else is told";
      const std::string_view struck = run.struck ? run.struck : "";
      const bool cannotTell = struck == "write" && run.code != EINTR;
      const bool cannotKnow =
          struck == "recvmsg" || struck == "ppoll" || run.told.find("bad_alloc") != std::string::npos;
      const bool isMounted = TextOf("/proc/self/mountinfo").ends_with(mounted);
      if (verb.ends_with("ount") && isMounted == isMount && !saysDone && !cannotTell && !cannotKnow)
        return "it is done, and not said";
      return WIFEXITED(run.status) && cannotTell ? nullptr : run.WhatIsWrong(good);
    };
    passed &= faults::FailEachCall({session.c_str(), prepare, play, judge}, 200);
  }
  std::filesystem::remove_all(home);
  return passed ? 0 : 1;
}
