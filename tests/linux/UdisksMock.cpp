#include "tests/linux/UdisksMock.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

struct UdisksMockHandler {
  static int AnswerObjects(sd_bus_message* call, unsigned long number) {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    // A drive without the property comes first, as on a real bus, then somebody else's disk, then ours.
    sd_bus_message_append(
        reply, "a{oa{sa{sv}}}", 3,                                                           //
        "/org/freedesktop/UDisks2/drives/x", 1, "org.freedesktop.UDisks2.Drive", 1,          //
        "Size", "t", std::uint64_t{number},                                                  //
        "/org/freedesktop/UDisks2/block_devices/other", 1, "org.freedesktop.UDisks2.Block",  //
        1, "DeviceNumber", "t", std::uint64_t{number + 1},                                   //
        "/org/freedesktop/UDisks2/block_devices/ours", 2, "org.freedesktop.UDisks2.Block",   //
        2, "Symlinks", "aay", 0, "DeviceNumber", "t", std::uint64_t{number},                 //
        "org.freedesktop.UDisks2.Filesystem", 0);
    const int sent = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return sent;
  }

  static int AnswerFromScript(UdisksMock& mock, sd_bus_message* call, const std::string& method) {
    const char* option = nullptr;
    int refuseToAsk = 0;
    sd_bus_message_enter_container(call, 'a', "{sv}");
    sd_bus_message_read(call, "{sv}", &option, "b", &refuseToAsk);
    const bool mayAsk = !refuseToAsk && sd_bus_message_get_allow_interactive_authorization(call) > 0;
    {
      const std::lock_guard lock(mock.mutex_);
      mock.requests_.push_back(mayAsk ? method + "?" : method);
    }
    if (mock.script_.empty()) return sd_bus_reply_method_errorf(call, "test.NotInTheScript", " ");
    const UdisksMock::Answer answer = mock.script_.front();
    mock.script_.pop_front();
    if (answer.then) answer.then();
    if (answer.error == UdisksMock::kSilence) return 0;
    if (answer.error.empty())
      return sd_bus_reply_method_return(call, method == "Mount" ? "s" : "", "/media/x");
    return sd_bus_reply_method_errorf(call, answer.error.c_str(), "two\nlines");
  }

  static int OnMessage(sd_bus_message* call, void* data, sd_bus_error*) {
    auto& mock = *static_cast<UdisksMock*>(data);
    const std::string method = sd_bus_message_get_member(call) ? sd_bus_message_get_member(call) : "";
    const std::string_view path = sd_bus_message_get_path(call) ? sd_bus_message_get_path(call) : "";
    if (method == "Hello") {
      sd_bus_reply_method_return(call, "s", ":1.1");
    } else if (mock.deviceNumber_ == UdisksMock::kNoDevice) {
      sd_bus_reply_method_errorf(call, SD_BUS_ERROR_SERVICE_UNKNOWN, "no such service");
    } else if (method == "GetManagedObjects") {
      AnswerObjects(call, mock.deviceNumber_);
    } else if (path == "/org/freedesktop/UDisks2/block_devices/ours") {
      AnswerFromScript(mock, call, method);
    }
    return 1;
  }
};

UdisksMock::UdisksMock(unsigned long deviceNumber, std::deque<Answer> script)
    : deviceNumber_(deviceNumber),
      script_(std::move(script)),
      listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  // An abstract socket: nothing is left behind, whatever happens.
  const std::string name = "dravik-test-" + std::to_string(getpid());
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(listener_, 5) != 0) {
    throw std::runtime_error(std::string("no socket for the bus: ") + std::strerror(errno));
  }
  setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:abstract=" + name).c_str(), 1);
  if (deviceNumber != kDeafBus) thread_ = std::thread([this] { Serve(); });
}

UdisksMock::~UdisksMock() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
  close(listener_);
  unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

std::vector<std::string> UdisksMock::Requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

// One client after the other, as the program comes.
void UdisksMock::Serve() {
  while (!stop_) {
    pollfd waiting{listener_, POLLIN, 0};
    if (poll(&waiting, 1, 10) <= 0) continue;
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    sd_bus* bus = nullptr;
    sd_id128_t id{};
    sd_id128_randomize(&id);
    sd_bus_new(&bus);
    sd_bus_set_fd(bus, client, client);
    sd_bus_set_server(bus, 1, id);
    sd_bus_add_filter(bus, nullptr, &UdisksMockHandler::OnMessage, this);
    sd_bus_start(bus);
    for (int result = 0; result >= 0 && !stop_;) {
      result = sd_bus_process(bus, nullptr);
      if (result == 0) result = sd_bus_wait(bus, 10'000);
    }
    sd_bus_close_unref(bus);
  }
}
