#include "linux_diskutil/SystemBus.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "linux_diskutil/OpenForReading.h"

namespace diskutil {
namespace {

/// What libsystemd returned; below zero it is the system's error.
int ThrowIfNegative(int result) {
  if (result < 0) throw std::system_error(-result, std::generic_category(), "Could not reach the system bus");
  return result;
}

}  // namespace

const SdBus& SdBusLibrary() {
  static const SdBus library = [] {
    SdBus made;
    errno = 0;
    void* handle = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
      ThrowIfExhausted("libsystemd");
      return made;
    }
#define DRAVIK_LOOK_UP(name) made.name = reinterpret_cast<decltype(made.name)>(dlsym(handle, #name));
    DRAVIK_SD_BUS_FUNCTIONS(DRAVIK_LOOK_UP)
#undef DRAVIK_LOOK_UP
    return made;
  }();
  return library;
}

Connection Connect(std::chrono::microseconds limit) {
  if (!SdBusLibrary().sd_bus_new) return {};
  sd_bus* made = nullptr;
  ThrowIfNegative(SdBusLibrary().sd_bus_new(&made));
  Bus bus(made);
  const char* set = secure_getenv("DBUS_SYSTEM_BUS_ADDRESS");
  const char* address = set && *set ? set : "unix:path=/run/dbus/system_bus_socket";
  ThrowIfNegative(SdBusLibrary().sd_bus_set_address(made, address));
  ThrowIfNegative(SdBusLibrary().sd_bus_set_bus_client(made, 1));
  const int started = SdBusLibrary().sd_bus_start(made);
  if (started == -ENOENT || started == -ECONNREFUSED) return {};
  ThrowIfNegative(started);
  const auto end = std::chrono::steady_clock::now() + limit;
  while (ThrowIfNegative(SdBusLibrary().sd_bus_is_ready(made)) == 0) {
    if (ThrowIfNegative(SdBusLibrary().sd_bus_process(made, nullptr)) > 0) continue;
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return {nullptr, true};
    ThrowIfNegative(SdBusLibrary().sd_bus_wait(made, static_cast<std::uint64_t>(left.count())));
  }
  return {std::move(bus)};
}

Message NewCall(sd_bus* bus, const char* service, const std::string& object, const char* interface,
                const char* method) {
  sd_bus_message* call = nullptr;
  const int result =
      SdBusLibrary().sd_bus_message_new_method_call(bus, &call, service, object.c_str(), interface, method);
  return Message(result < 0 ? nullptr : call);
}

Answer Call(sd_bus* bus, sd_bus_message* call, std::chrono::microseconds limit) {
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  const int result =
      SdBusLibrary().sd_bus_call(bus, call, static_cast<std::uint64_t>(limit.count()), &error, &reply);
  const char* unnamed = result < 0 ? "?" : "";
  Answer answer{Message(reply), error.name ? error.name : unnamed, error.message ? error.message : ""};
  SdBusLibrary().sd_bus_error_free(&error);
  return answer;
}

}  // namespace diskutil
