#pragma once

#include <memory>
#include <string>

std::string TestData(const std::string& name);

/// The disks of devices.umockdev in place of the machine's own, as long as one of these lives. Redirects
/// /sys, /dev and /proc for this process. The disks have no content but the signatures of their volume
/// headers.
class Testbed {
 public:
  Testbed();

  // The kernel's mount table: lines as in /proc/self/mountinfo.
  void SetMounts(const std::string& lines) const;
  // The disk that is disk7 has this sequence number from then on: another came and got its device numbers.
  void NumberDisk7(const std::string& sequence) const;

 private:
  std::shared_ptr<void> bed_;
  std::string root_;
};
