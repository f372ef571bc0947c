#include "linux/Udisks.h"

#include <dlfcn.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

namespace diskutil {
namespace {

constexpr const char* kService = "org.freedesktop.UDisks2";
constexpr const char* kBlock = "org.freedesktop.UDisks2.Block";
constexpr const char* kFilesystem = "org.freedesktop.UDisks2.Filesystem";

// Only a mount needs the bus, and libsystemd brings along half a dozen libraries: linked, they would cost
// every other call more time to load than its work takes. So libsystemd is loaded by the first request.
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

struct Library {
#define DRAVIK_DECLARE(name) decltype(&::name) name = nullptr;
  DRAVIK_SD_BUS_FUNCTIONS(DRAVIK_DECLARE)
#undef DRAVIK_DECLARE
  bool complete = false;
};

const Library& Lib() {
  static const Library library = [] {
    Library made;
    void* handle = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    made.complete = handle != nullptr;
#define DRAVIK_LOOK_UP(name)                                                                  \
  made.name = handle ? reinterpret_cast<decltype(made.name)>(dlsym(handle, #name)) : nullptr; \
  made.complete = made.complete && made.name;
    DRAVIK_SD_BUS_FUNCTIONS(DRAVIK_LOOK_UP)
#undef DRAVIK_LOOK_UP
    return made;
  }();
  return library;
}

struct Unref {
  void operator()(sd_bus* bus) const { Lib().sd_bus_close_unref(bus); }
  void operator()(sd_bus_message* message) const { Lib().sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Unref>;
using Message = std::unique_ptr<sd_bus_message, Unref>;

// What came back for a call: a reply, or the name and the words of an error.
struct Answer {
  Message reply;
  std::string error;
  std::string words;
};

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  for (const std::string_view each : names) {
    if (name == each) return true;
  }
  return false;
}

Answer Call(sd_bus* bus, sd_bus_message* call, std::chrono::microseconds limit) {
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  const int result = Lib().sd_bus_call(bus, call, static_cast<std::uint64_t>(limit.count()), &error, &reply);
  const char* unnamed = result < 0 ? "?" : "";
  Answer answer{Message(reply), error.name ? error.name : unnamed, error.message ? error.message : ""};
  Lib().sd_bus_error_free(&error);
  return answer;
}

struct Connection {
  Bus bus;  // Nothing when there is no bus.
  bool timedOut = false;
};

// Connects and waits until the bus has let us in, which a bus that accepts and then says nothing never does.
Connection Connect(std::chrono::microseconds limit) {
  if (!Lib().complete) return {};
  sd_bus* made = nullptr;
  if (Lib().sd_bus_new(&made) < 0) return {};
  Bus bus(made);
  const char* set = secure_getenv("DBUS_SYSTEM_BUS_ADDRESS");
  const char* address = set && *set ? set : "unix:path=/run/dbus/system_bus_socket";
  if (Lib().sd_bus_set_address(made, address) < 0 || Lib().sd_bus_set_bus_client(made, 1) < 0 ||
      Lib().sd_bus_start(made) < 0) {
    return {};
  }
  const auto end = std::chrono::steady_clock::now() + limit;
  while (Lib().sd_bus_is_ready(made) == 0) {
    const int done = Lib().sd_bus_process(made, nullptr);
    if (done < 0) return {};
    if (done > 0) continue;
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return {nullptr, true};
    if (Lib().sd_bus_wait(made, static_cast<std::uint64_t>(left.count())) < 0) return {};
  }
  return {Lib().sd_bus_is_ready(made) > 0 ? std::move(bus) : nullptr};
}

// Goes through an array of dictionary entries, calling `read` inside each until it fails.
template <typename Read>
bool ForEachEntry(sd_bus_message* message, const std::string& entry, Read read) {
  const auto enter = [&](char type, const std::string& contents) {
    return Lib().sd_bus_message_enter_container(message, type, contents.c_str()) >= 0;
  };
  const auto leave = [&] { return Lib().sd_bus_message_exit_container(message) >= 0; };
  if (!enter(SD_BUS_TYPE_ARRAY, "{" + entry + "}")) return false;
  while (Lib().sd_bus_message_at_end(message, 0) == 0) {
    if (!enter(SD_BUS_TYPE_DICT_ENTRY, entry) || !read() || !leave()) return false;
  }
  return leave();
}

// The object of the device among all objects of UDisks2; empty when it knows no such device.
std::string FindObject(sd_bus_message* objects, dev_t number) {
  std::string found;
  ForEachEntry(objects, "oa{sa{sv}}", [&] {
    const char* path = nullptr;
    if (Lib().sd_bus_message_read(objects, "o", &path) < 0) return false;
    return ForEachEntry(objects, "sa{sv}", [&] {
      const char* interface = nullptr;
      if (Lib().sd_bus_message_read(objects, "s", &interface) < 0) return false;
      return ForEachEntry(objects, "sv", [&] {
        const char* property = nullptr;
        if (Lib().sd_bus_message_read(objects, "s", &property) < 0) return false;
        if (std::strcmp(interface, kBlock) != 0 || std::strcmp(property, "DeviceNumber") != 0) {
          return Lib().sd_bus_message_skip(objects, "v") >= 0;
        }
        std::uint64_t value = 0;
        if (Lib().sd_bus_message_read(objects, "v", "t", &value) < 0) return false;
        if (value == number) found = path;
        return true;
      });
    });
  });
  return found;
}

enum class Asking { Never, Allowed };

// Nothing when there is no memory for it.
Message NewCall(sd_bus* bus, const std::string& object, const char* interface, const char* method) {
  sd_bus_message* call = nullptr;
  const int result =
      Lib().sd_bus_message_new_method_call(bus, &call, kService, object.c_str(), interface, method);
  return Message(result < 0 ? nullptr : call);
}

Answer CallFilesystem(sd_bus* bus, const std::string& object, const char* method, Asking asking,
                      std::chrono::microseconds limit) {
  const Message call = NewCall(bus, object, kFilesystem, method);
  const bool allowed = asking == Asking::Allowed;
  if (!call || Lib().sd_bus_message_set_allow_interactive_authorization(call.get(), allowed ? 1 : 0) < 0 ||
      Lib().sd_bus_message_append(call.get(), "a{sv}", 1, "auth.no_user_interaction", "b", allowed ? 0 : 1) <
          0) {
    return {nullptr, "?", {}};
  }
  return Call(bus, call.get(), limit);
}

bool TimedOut(std::string_view error) {
  return IsOneOf(error, {"org.freedesktop.DBus.Error.Timeout", "org.freedesktop.DBus.Error.NoReply",
                         "org.freedesktop.UDisks2.Error.TimedOut"});
}

Failure FromError(const Answer& answer) {
  const std::string_view error = answer.error;
  using Reason = Failure::Reason;
  if (TimedOut(error)) return {Reason::TimedOut, {}};
  if (error == "org.freedesktop.UDisks2.Error.DeviceBusy") return {Reason::Busy, {}};
  if (IsOneOf(error,
              {"org.freedesktop.UDisks2.Error.NotAuthorized",
               "org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain",
               "org.freedesktop.UDisks2.Error.NotAuthorizedDismissed",
               "org.freedesktop.UDisks2.Error.OptionNotPermitted", "org.freedesktop.DBus.Error.AccessDenied",
               "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"})) {
    return {Reason::NotAuthorised, {}};
  }
  // UDisks2 gives this interface to what holds a file system, and to nothing else.
  if (IsOneOf(error,
              {"org.freedesktop.DBus.Error.UnknownMethod", "org.freedesktop.DBus.Error.UnknownInterface"})) {
    return {Reason::NotMountable, {}};
  }
  if (error == "org.freedesktop.DBus.Error.UnknownObject") return {Reason::Gone, {}};
  return {Reason::Other, answer.words};
}

}  // namespace

MaybeFailure Udisks::Request(const char* method, dev_t number) const {
  const auto [bus, timedOut] = Connect(timeLimit_);
  if (timedOut) return Failure{Failure::Reason::TimedOut, {}};
  if (!bus) return Failure{Failure::Reason::NoService, {}};

  const Message list = NewCall(bus.get(), "/org/freedesktop/UDisks2", "org.freedesktop.DBus.ObjectManager",
                               "GetManagedObjects");
  if (!list) throw std::bad_alloc();
  const Answer objects = Call(bus.get(), list.get(), timeLimit_);
  if (!objects.reply) {
    return TimedOut(objects.error) ? Failure{Failure::Reason::TimedOut, {}}
                                   : Failure{Failure::Reason::NoService, objects.words};
  }
  const std::string object = FindObject(objects.reply.get(), number);
  if (object.empty()) return Failure{Failure::Reason::NotMountable, {}};

  Answer answer = CallFilesystem(bus.get(), object, method, Asking::Never, timeLimit_);
  if (IsOneOf(answer.error, {"org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain",
                             "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"})) {
    answer = CallFilesystem(bus.get(), object, method, Asking::Allowed, personLimit_);
  }
  if (answer.reply) return std::nullopt;
  return FromError(answer);
}

}  // namespace diskutil
