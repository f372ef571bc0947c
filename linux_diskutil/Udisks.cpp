#include "linux_diskutil/Udisks.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "linux_diskutil/PrintableText.h"
#include "linux_diskutil/SystemBus.h"

namespace diskutil {
namespace {

constexpr const char* kService = "org.freedesktop.UDisks2";
constexpr const char* kBlock = "org.freedesktop.UDisks2.Block";
constexpr const char* kFilesystem = "org.freedesktop.UDisks2.Filesystem";

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  for (const std::string_view each : names)
    if (name == each) return true;
  return false;
}

/// The object of the device among all objects of UDisks2; empty when it knows no such device.
std::string FindObject(sd_bus_message* objects, dev_t number) {
  std::string found;
  ForEachEntry(objects, "oa{sa{sv}}", [&] {
    const char* path = nullptr;
    if (SdBusLibrary().sd_bus_message_read(objects, "o", &path) < 0) return false;
    return ForEachEntry(objects, "sa{sv}", [&] {
      const char* interface = nullptr;
      if (SdBusLibrary().sd_bus_message_read(objects, "s", &interface) < 0) return false;
      return ForEachEntry(objects, "sv", [&] {
        const char* property = nullptr;
        if (SdBusLibrary().sd_bus_message_read(objects, "s", &property) < 0) return false;
        if (std::strcmp(interface, kBlock) != 0 || std::strcmp(property, "DeviceNumber") != 0)
          return SdBusLibrary().sd_bus_message_skip(objects, "v") >= 0;
        std::uint64_t value = 0;
        if (SdBusLibrary().sd_bus_message_read(objects, "v", "t", &value) < 0) return false;
        if (value == number) found = path;
        return true;
      });
    });
  });
  return found;
}

enum class Asking { kNever, kAllowed };

Answer CallFilesystem(sd_bus* bus, const std::string& object, const char* method, Asking asking,
                      std::chrono::microseconds limit) {
  const Message call = NewCall(bus, kService, object, kFilesystem, method);
  const bool allowed = asking == Asking::kAllowed;
  if (!call ||
      SdBusLibrary().sd_bus_message_set_allow_interactive_authorization(call.get(), allowed ? 1 : 0) < 0 ||
      SdBusLibrary().sd_bus_message_append(call.get(), "a{sv}", 1, "auth.no_user_interaction", "b",
                                           allowed ? 0 : 1) < 0) {
    return {nullptr, "?", {}};
  }
  return Call(bus, call.get(), limit);
}

/// The bus's words for a service that does not run and cannot be started.
bool IsMissing(std::string_view error) {
  return error.starts_with("org.freedesktop.DBus.Error.Spawn.") ||
         IsOneOf(error,
                 {"org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner"});
}

/// libsystemd's own word for a limit that has passed, and UDisks2's.
bool TimedOut(std::string_view error) {
  return IsOneOf(error, {"org.freedesktop.DBus.Error.Timeout", "org.freedesktop.UDisks2.Error.TimedOut"});
}

/// The bus's word for a service that went away with our request, and libsystemd's for a bus that did.
bool Died(std::string_view error) {
  return IsOneOf(error, {"org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.Disconnected",
                         "System.Error.ECONNRESET"});
}

Failure FromError(const Answer& answer) {
  const std::string_view error = answer.error;
  using Reason = Failure::Reason;
  if (IsMissing(error)) return {Reason::kNoService, {}};
  if (TimedOut(error)) return {Reason::kTimedOut, {}};
  if (Died(error)) return {Reason::kServiceDied, {}};
  if (error == "org.freedesktop.DBus.Error.NoMemory") return {Reason::kNoMemory, {}};
  if (error == "org.freedesktop.UDisks2.Error.DeviceBusy") return {Reason::kBusy, {}};
  if (IsOneOf(error,
              {"org.freedesktop.UDisks2.Error.NotAuthorized",
               "org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain",
               "org.freedesktop.UDisks2.Error.NotAuthorizedDismissed",
               "org.freedesktop.UDisks2.Error.OptionNotPermitted", "org.freedesktop.DBus.Error.AccessDenied",
               "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"})) {
    return {Reason::kNotAuthorised, {}};
  }
  // UDisks2 gives this interface to what holds a file system, and to nothing else.
  if (IsOneOf(error,
              {"org.freedesktop.DBus.Error.UnknownMethod", "org.freedesktop.DBus.Error.UnknownInterface"})) {
    return {Reason::kNotMountable, {}};
  }
  if (error == "org.freedesktop.DBus.Error.UnknownObject") return {Reason::kGone, {}};
  const bool tried = error == "org.freedesktop.UDisks2.Error.Failed";
  return {tried ? Reason::kMountFailed : Reason::kOther, PrintableText(answer.words)};
}

}  // namespace

Udisks::Response Udisks::Request(const char* method, dev_t number, const Check& isStillMeant) const {
  const auto [bus, timedOut] = Connect(questionLimit_);
  if (timedOut) return {Failure{Failure::Reason::kTimedOut, {}}};
  if (!bus) return {Failure{Failure::Reason::kNoService, {}}};

  const Message list = NewCall(bus.get(), kService, "/org/freedesktop/UDisks2",
                               "org.freedesktop.DBus.ObjectManager", "GetManagedObjects");
  if (!list) throw std::bad_alloc();
  const Answer objects = Call(bus.get(), list.get(), questionLimit_);
  if (!objects.reply) return {FromError(objects)};
  const std::string object = FindObject(objects.reply.get(), number);
  if (object.empty()) return {Failure{Failure::Reason::kNotMountable, {}}};

  if (!isStillMeant()) return {Failure{Failure::Reason::kGone, {}}};
  Answer answer = CallFilesystem(bus.get(), object, method, Asking::kNever, workLimit_);
  if (IsOneOf(answer.error, {"org.freedesktop.UDisks2.Error.NotAuthorizedCanObtain",
                             "org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"})) {
    if (!isStillMeant()) return {Failure{Failure::Reason::kGone, {}}};
    answer = CallFilesystem(bus.get(), object, method, Asking::kAllowed, workLimit_);
  }
  if (!answer.reply) return {FromError(answer)};
  return {std::nullopt, std::move(answer.reply)};
}

MountAttempt Udisks::Mount(dev_t number, const Check& isStillMeant) const {
  Response response = Request("Mount", number, isStillMeant);
  const char* point = nullptr;
  if (response.message && SdBusLibrary().sd_bus_message_read(response.message.get(), "s", &point) < 0)
    point = nullptr;
  return {std::move(response.failure), point ? point : ""};
}

MaybeFailure Udisks::Unmount(dev_t number, const Check& isStillMeant) const {
  return Request("Unmount", number, isStillMeant).failure;
}

}  // namespace diskutil
