#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A UDisks2 on a bus of its own, which $DBUS_SYSTEM_BUS_ADDRESS names as long as one of these lives. It knows
// one device and answers requests about it from a script.
class UdisksMock {
 public:
  struct Answer {
    std::string error;           // Name of a D-Bus error; empty for success.
    std::function<void()> then;  // What happens before the answer.
  };
  // An error for scripts: takes the request and never answers.
  static constexpr const char* kSilence = "silence";
  // In place of a device: a bus without UDisks2, and a bus that accepts and then says nothing.
  static constexpr unsigned long kNoDevice = 0;
  static constexpr unsigned long kDeafBus = ~0UL;

  UdisksMock(unsigned long deviceNumber, std::deque<Answer> script);
  ~UdisksMock();
  UdisksMock(const UdisksMock&) = delete;
  UdisksMock& operator=(const UdisksMock&) = delete;

  // What was asked of the device, such as "Mount" or, with leave to ask a person, "Mount?".
  std::vector<std::string> Requests() const;

 private:
  friend struct UdisksMockHandler;
  void Serve();

  unsigned long deviceNumber_;
  std::deque<Answer> script_;
  int listener_;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};
