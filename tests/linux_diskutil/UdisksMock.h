#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A UDisks2 on a bus of its own, which $DBUS_SYSTEM_BUS_ADDRESS names from then on. It knows one device and
/// answers requests about it from a script.
class UdisksMock {
 public:
  struct Answer {
    std::string error;           // name of a D-Bus error; empty for success
    std::function<void()> then;  // what happens before the answer
  };
  // An error for scripts: takes the request and never answers.
  static constexpr const char* kSilence = "silence";
  // In place of a device: a bus without UDisks2, and a bus that accepts and then says nothing.
  static constexpr unsigned long kNoDevice = 0;
  static constexpr unsigned long kDeafBus = ~0UL;

  UdisksMock(unsigned long deviceNumber, std::deque<Answer> script)
      : deviceNumber_(deviceNumber), script_(std::move(script)) {
    // The kernel picks the name of an abstract socket: nothing is left behind, whatever happens.
    sockaddr_un address{AF_UNIX, {}};
    socklen_t length = sizeof address;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address.sun_family) != 0) std::abort();
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
    listen(listener_, 5);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", (std::string("unix:abstract=") + (address.sun_path + 1)).c_str(), 1);
    if (deviceNumber != kDeafBus) thread_ = std::thread([this] { Serve(); });
  }
  ~UdisksMock() {
    stop_ = true;
    shutdown(listener_, SHUT_RDWR);  // which ends the wait for a client
    if (thread_.joinable()) thread_.join();
    close(listener_);
  }

  // What was asked of the device, such as "Mount" or, with leave to ask a person, "Mount?".
  std::vector<std::string> Requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }

 private:
  // One client after the other, as the program comes.
  void Serve() {
    while (!stop_) {
      const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
      if (client < 0) continue;
      sd_bus* bus = nullptr;
      sd_bus_new(&bus);
      sd_bus_set_fd(bus, client, client);
      sd_bus_set_server(bus, 1, {});
      sd_bus_add_filter(bus, nullptr, &OnMessage, this);
      sd_bus_start(bus);
      for (int result = 0; result >= 0 && !stop_;) {
        result = sd_bus_process(bus, nullptr);
        if (result == 0) result = sd_bus_wait(bus, 10'000);
      }
      sd_bus_close_unref(bus);
    }
  }

  static int OnMessage(sd_bus_message* call, void* data, sd_bus_error*) {
    if (!sd_bus_message_is_method_call(call, nullptr, nullptr)) return 0;
    auto& mock = *static_cast<UdisksMock*>(data);
    const std::string method = sd_bus_message_get_member(call);
    if (method == "Hello") return sd_bus_reply_method_return(call, "s", ":1.1");
    if (mock.deviceNumber_ == kNoDevice)
      return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_SERVICE_UNKNOWN, "-");
    if (method == "GetManagedObjects") return mock.TellObjects(call);
    return mock.AnswerFromScript(call, method);
  }

  int TellObjects(sd_bus_message* call) const {
    // A drive without a device comes first, as on a real bus, then somebody else's disk, then ours.
    return sd_bus_reply_method_return(
        call, "a{oa{sa{sv}}}", 3,  //
        "/drives/x", 1, "org.freedesktop.UDisks2.Drive", 1, "Size", "t", deviceNumber_,
        "/block_devices/other", 1, "org.freedesktop.UDisks2.Block", 1, "DeviceNumber", "t", deviceNumber_ + 1,
        "/block_devices/ours", 2, "org.freedesktop.UDisks2.Block", 2, "Symlinks", "aay", 0, "DeviceNumber",
        "t", deviceNumber_, "org.freedesktop.UDisks2.Filesystem", 0);
  }

  int AnswerFromScript(sd_bus_message* call, const std::string& method) {
    int refuseToAsk = 0;
    sd_bus_message_read(call, "a{sv}", 1, nullptr, "b", &refuseToAsk);
    const bool mayAsk = !refuseToAsk && sd_bus_message_get_allow_interactive_authorization(call) > 0;
    const bool ours = std::string(sd_bus_message_get_path(call)) == "/block_devices/ours";
    const std::lock_guard lock(mutex_);
    requests_.push_back((ours ? "" : "wrong object: ") + method + (mayAsk ? "?" : ""));
    if (script_.empty()) return sd_bus_reply_method_errorf(call, "test.NotInTheScript", "-");
    const Answer answer = script_.front();
    script_.pop_front();
    if (answer.then) answer.then();
    if (answer.error == kSilence) return 1;
    if (!answer.error.empty()) return sd_bus_reply_method_errorf(call, answer.error.c_str(), "two\nlines");
    return sd_bus_reply_method_return(call, method == "Mount" ? "s" : "", "/media/Backup");
  }

  unsigned long deviceNumber_;
  std::deque<Answer> script_;
  std::vector<std::string> requests_;
  mutable std::mutex mutex_;
  int listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};
