#include "framework/MainThread.h"

#include <poll.h>

namespace {

class JustWaits final : public MainThread {
 public:
  void WaitForInput(const std::vector<int>& descriptors, int milliseconds) override {
    std::vector<pollfd> watched;
    for (const int descriptor : descriptors) watched.push_back({descriptor, POLLIN, 0});
    poll(watched.data(), watched.size(), milliseconds);
  }
  void LeaveWhenQuitting() override {}
};

JustWaits justWaits;
MainThread* current = &justWaits;

}  // namespace

MainThread& MainThread::Installed() {
  return *current;
}

void MainThread::Install(MainThread& mainThread) {
  current = &mainThread;
}
