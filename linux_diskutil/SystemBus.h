#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <memory>
#include <string>

namespace diskutil {

// Only a mount needs the bus, and libsystemd brings along half a dozen libraries: linked, they made every
// `info` take 1.43 times as long (2.04 ms against 1.42). So libsystemd is loaded by the first request.
#define DRAVIK_SD_BUS_FUNCTIONS(USE)                      \
  USE(sd_bus_new)                                         \
  USE(sd_bus_set_address)                                 \
  USE(sd_bus_set_bus_client)                              \
  USE(sd_bus_start)                                       \
  USE(sd_bus_is_ready)                                    \
  USE(sd_bus_process)                                     \
  USE(sd_bus_wait)                                        \
  USE(sd_bus_close_unref)                                 \
  USE(sd_bus_call)                                        \
  USE(sd_bus_error_free)                                  \
  USE(sd_bus_message_unref)                               \
  USE(sd_bus_message_new_method_call)                     \
  USE(sd_bus_message_set_allow_interactive_authorization) \
  USE(sd_bus_message_append)                              \
  USE(sd_bus_message_enter_container)                     \
  USE(sd_bus_message_exit_container)                      \
  USE(sd_bus_message_at_end)                              \
  USE(sd_bus_message_read)                                \
  USE(sd_bus_message_skip)

/// The functions of libsystemd that are used here.
struct SdBus {
#define DRAVIK_DECLARE(name) decltype(&::name) name = nullptr;
  DRAVIK_SD_BUS_FUNCTIONS(DRAVIK_DECLARE)
#undef DRAVIK_DECLARE
};

/// Loads the library when it is called first. Nothing but nullptr where there is none.
const SdBus& SdBusLibrary();

struct BusUnref {
  void operator()(sd_bus* bus) const { SdBusLibrary().sd_bus_close_unref(bus); }
  void operator()(sd_bus_message* message) const { SdBusLibrary().sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, BusUnref>;
using Message = std::unique_ptr<sd_bus_message, BusUnref>;

struct Connection {
  Bus bus;  // nothing when there is no bus
  bool timedOut = false;
};

/// Connects to the system bus, or to the one at $DBUS_SYSTEM_BUS_ADDRESS, and waits until it has let us in,
/// which a bus that accepts and then says nothing never does. Throws std::system_error when there is a bus
/// and it cannot be reached.
Connection Connect(std::chrono::microseconds limit);

/// A call that is still to be filled and made. Nothing when there is no memory for it.
Message NewCall(sd_bus* bus, const char* service, const std::string& object, const char* interface,
                const char* method);

/// What came back for a call: a reply, or the name and the words of an error.
struct Answer {
  Message reply;
  std::string error;
  std::string words;
};

Answer Call(sd_bus* bus, sd_bus_message* call, std::chrono::microseconds limit);

/// Goes through an array of dictionary entries, calling `read` inside each until it fails.
template <class Read>
bool ForEachEntry(sd_bus_message* message, const std::string& entry, Read read) {
  const auto enter = [&](char type, const std::string& contents) {
    return SdBusLibrary().sd_bus_message_enter_container(message, type, contents.c_str()) >= 0;
  };
  const auto leave = [&] { return SdBusLibrary().sd_bus_message_exit_container(message) >= 0; };
  if (!enter(SD_BUS_TYPE_ARRAY, "{" + entry + "}")) return false;
  while (SdBusLibrary().sd_bus_message_at_end(message, 0) == 0)
    if (!enter(SD_BUS_TYPE_DICT_ENTRY, entry) || !read() || !leave()) return false;
  return leave();
}

}  // namespace diskutil
