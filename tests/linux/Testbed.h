#pragma once

#include <string>

typedef struct _UMockdevTestbed UMockdevTestbed;

// The disks of devices.umockdev in place of the machine's own, as long as one of these lives. Redirects /sys,
// /dev and /proc for this process. The disks have no content but the signatures of their volume headers.
class Testbed {
 public:
  Testbed();
  ~Testbed();
  Testbed(const Testbed&) = delete;
  Testbed& operator=(const Testbed&) = delete;

  // The kernel's mount table: lines as in /proc/self/mountinfo.
  void SetMounts(const std::string& lines) const;
  // The disk has gone and another came and got its device numbers.
  void ReplaceDisk7() const;

 private:
  UMockdevTestbed* bed_;
  std::string root_;
};
