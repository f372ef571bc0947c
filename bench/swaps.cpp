#include <fcntl.h>
#include <linux/loop.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "bench/Clock.h"
#include "bench/Command.h"
#include "framework/Descriptor.h"
#include "tests/linux_diskutil/UdisksMock.h"

// Counts how often another disk is hit. While `diskutil` has a volume mounted or unmounted, its disk is taken
// out and another one gets the name, at moments spread over the whole time. The disks are loop devices with
// real file systems; the service goes by the name, as UDisks2 does, and can be slow. For root.
//
//     bench_swaps [ROUNDS]
//
// Ends with status 1 when a hit was called a success, or something was left of one that was not told.

namespace {

namespace fs = std::filesystem;

constexpr const char* kPoint = "/media/Backup";  // where the service mounts
const std::string kFirst = "/media/first", kSecond = "/media/second";
const std::string kMountedHere = std::string(" ") + kPoint + " ";

void Sleep(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

bool IsMounted() {
  std::ifstream table("/proc/self/mounts");
  for (std::string line; std::getline(table, line);)
    if (line.find(kMountedHere) != std::string::npos) return true;
  return false;
}

/// A drive with a disk in it.
class Drive {
 public:
  Drive() : node_("/dev/loop" + std::to_string(FreeLoop())) {}
  ~Drive() { Eject(); }

  const std::string& Node() const { return node_; }
  std::string Disk() const {
    std::ifstream file("/sys/block/" + node_.substr(5) + "/diskseq");
    std::string sequence;
    file >> sequence;
    return "disk" + sequence;
  }
  unsigned long Number() const {
    struct stat status {};
    stat(node_.c_str(), &status);
    return status.st_rdev;
  }

  void Eject() const { ioctl(Descriptor(open(node_.c_str(), O_RDONLY | O_CLOEXEC)).Fd(), LOOP_CLR_FD); }
  /// False while somebody has the disk open that was in it.
  bool Insert(const std::string& image) const {
    const Descriptor disk(open(image.c_str(), O_RDWR | O_CLOEXEC));
    return ioctl(Descriptor(open(node_.c_str(), O_RDWR | O_CLOEXEC)).Fd(), LOOP_SET_FD, disk.Fd()) == 0;
  }

 private:
  static int FreeLoop() {
    return ioctl(Descriptor(open("/dev/loop-control", O_RDWR | O_CLOEXEC)).Fd(), LOOP_CTL_GET_FREE);
  }

  std::string node_;
};

struct Case {
  const char* user;
  const char* prefix;  // of the command
  bool mounts;         // or unmounts
  double delay;        // of the service, in seconds
};

struct Count {
  int swapped = 0, hit = 0, takenBack = 0, claimed = 0, unsaid = 0;
};

/// One run, the disk being swapped after so many seconds; never for a negative number.
void Run(const Drive& drive, const Case& each, double moment, Count& count) {
  while (!drive.Insert(kFirst)) Sleep(0.001);
  const std::string disk = drive.Disk();
  const auto mountIt = [&] { return mount(drive.Node().c_str(), kPoint, "ext4", 0, nullptr) == 0; };
  if (!each.mounts) mountIt();
  bool hit = false;
  const auto doAsked = [&] {
    Sleep(each.delay);
    const bool done = each.mounts ? mountIt() : umount(kPoint) == 0;
    hit = done && drive.Disk() != disk;
  };
  const UdisksMock service(drive.Number(), {{"", doAsked}, {"", [] { umount(kPoint); }}});

  std::atomic<bool> ended = false;
  bool swapped = false;
  std::thread person([&] {
    if (moment < 0) return;
    Sleep(moment);
    if (!each.mounts) umount(kPoint);
    drive.Eject();
    while (!ended && !swapped) swapped = drive.Insert(kSecond);
    if (swapped && !each.mounts) mountIt();  // as a desktop does
  });
  const std::string command =
      std::string(each.prefix) + "/media/diskutil " + (each.mounts ? "mount " : "unMount ") + disk + " 2>&1";
  FILE* const output = popen(command.c_str(), "r");
  std::string told(1000, '\0');
  told.resize(fread(told.data(), 1, told.size(), output));
  const bool success = pclose(output) == 0;
  ended = true;
  person.join();

  const bool unsaid = told.find("came in its place") == std::string::npos;
  count.swapped += swapped;
  count.hit += hit;
  count.takenBack += hit && each.mounts && !IsMounted();
  count.claimed += hit && success;
  count.unsaid += hit && unsaid && (!each.mounts || IsMounted());
  while (umount(kPoint) == 0) continue;
  drive.Eject();
}

bool Prepare() {
  if (geteuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
      mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
    return false;
  mkdir("/media", 0755);
  if (mount("none", "/media", "tmpfs", 0, nullptr) != 0 || mkdir(kPoint, 0755) != 0) return false;
  fs::copy_file(fs::canonical("/proc/self/exe").parent_path() / "../libexec/dravik/diskutil",
                "/media/diskutil");
  for (const std::string& image : {kFirst, kSecond}) {
    std::ofstream(image).close();
    fs::resize_file(image, 16 << 20);
    TimeOf({"mkfs.ext4", "-q", "-F", image});
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 40;
  if (!Prepare()) {
    std::fputs("This needs root, and a mount table of its own.\n", stderr);
    return 2;
  }
  const Drive drive;
  constexpr const char* kAsNobody = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
  int faults = 0;
  std::puts("user      verb     service   rounds  swapped  hit  taken back  called a success  left unsaid");
  for (const double delay : {0.3, 0.0}) {
    for (const Case& each :
         {Case{"root", "", true, delay}, Case{"root", "", false, delay},
          Case{"ordinary", kAsNobody, true, delay}, Case{"ordinary", kAsNobody, false, delay}}) {
      Count warmUp, count;
      Run(drive, each, -1, warmUp);
      const double began = Now();
      Run(drive, each, -1, warmUp);
      const double usual = Now() - began;
      for (int round = 0; round < rounds; ++round) Run(drive, each, usual * round / rounds, count);
      std::printf("%-9s %-8s %-7s %8d %8d %4d %11d %17d %12d\n", each.user, each.mounts ? "mount" : "unMount",
                  delay > 0 ? "0.3 s" : "at once", rounds, count.swapped, count.hit, count.takenBack,
                  count.claimed, count.unsaid);
      faults += count.claimed + count.unsaid;
    }
  }
  return faults == 0 ? 0 : 1;
}
