#include <fmt/format.h>

#include <cstdint>
#include <vector>

#include "Commands.h"
#include "Output.h"
#include "Table.h"
#include "common/Fields.h"
#include "common/JsonNode.h"

namespace ravo::ctl {
namespace {

// What the lists show of the server's records.
struct DeviceRow {
  std::string deviceName;
  std::string deviceId;
  bool isBuiltin = false;
  bool isBluetooth = false;
  bool isVirtual = false;
};

struct DeviceGroup {
  std::string currentDeviceId;
  std::int32_t deviceType = 0;
  std::vector<DeviceRow> devices;
};

struct ScreenRow {
  std::int64_t id = 0;
  std::int64_t pid = 0;
  std::string application;
  std::string title;
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
};

}  // namespace
}  // namespace ravo::ctl

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<ravo::ctl::DeviceRow> = Fields(Field{"deviceName", &ravo::ctl::DeviceRow::deviceName},
                                                             Field{"deviceId", &ravo::ctl::DeviceRow::deviceId},
                                                             Field{"isBuiltin", &ravo::ctl::DeviceRow::isBuiltin},
                                                             Field{"isBluetooth", &ravo::ctl::DeviceRow::isBluetooth},
                                                             Field{"isVirtual", &ravo::ctl::DeviceRow::isVirtual});

template <>
inline constexpr auto kFields<ravo::ctl::DeviceGroup> = Fields(Field{"currentDeviceId",
                                                                     &ravo::ctl::DeviceGroup::currentDeviceId},
                                                               Field{"deviceType", &ravo::ctl::DeviceGroup::deviceType},
                                                               Field{"devices", &ravo::ctl::DeviceGroup::devices});

template <>
inline constexpr auto kFields<ravo::ctl::ScreenRow> =
    Fields(Field{"id", &ravo::ctl::ScreenRow::id}, Field{"pid", &ravo::ctl::ScreenRow::pid},
           Field{"application", &ravo::ctl::ScreenRow::application}, Field{"title", &ravo::ctl::ScreenRow::title},
           Field{"x", &ravo::ctl::ScreenRow::x}, Field{"y", &ravo::ctl::ScreenRow::y},
           Field{"width", &ravo::ctl::ScreenRow::width}, Field{"height", &ravo::ctl::ScreenRow::height});

}  // namespace TESSARIN_COMMON

namespace ravo::ctl {
namespace {

using TESSARIN_COMMON::JsonNode;

template <class T>
std::vector<T> RowsOf(const std::string& json) {
  std::vector<T> rows;
  JsonNode(json).Get("", rows);
  return rows;
}

std::string TypeName(std::int32_t type) {
  constexpr const char* kNames[] = {"microphone", "speaker", "camera"};
  return type >= 0 && type < 3 ? kNames[type] : std::to_string(type);
}

std::string Kind(const DeviceRow& device) {
  std::string kind = device.isBuiltin ? " built-in" : "";
  if (device.isBluetooth) kind += " bluetooth";
  if (device.isVirtual) kind += " virtual";
  return kind.empty() ? "-" : kind.substr(1);
}

// Of the device in use; cameras have none.
std::string VolumeOf(const Context& context, std::int32_t type) {
  const std::string volume = context.Call("GetCurrentVolume", fmt::format("[{}]", type));
  if (volume.starts_with('-')) return "-";
  const bool muted =
      context.Call(type == 0 ? "IsCurrentRecordingDeviceMuted" : "IsCurrentPlayoutDeviceMuted") == "true";
  return muted ? volume + " muted" : volume;
}

std::string Place(const ScreenRow& row) {
  return fmt::format("{}x{}{:+}{:+}", row.width, row.height, row.x, row.y);
}

}  // namespace

int RunDevices(Context& context) {
  const std::string groups = MemberText(context.Call("GetInitInfo"), "deviceInfo");
  if (context.line.Json()) {
    PrintLine(groups);
    return 0;
  }
  Table table({" ", "TYPE", "NAME", "ID", "KIND", "VOLUME"});
  for (const auto& group : RowsOf<DeviceGroup>(groups)) {
    for (const auto& device : group.devices) {
      const bool used = device.deviceId == group.currentDeviceId;
      table.Add({used ? "*" : "", TypeName(group.deviceType), device.deviceName, device.deviceId, Kind(device),
                 used ? VolumeOf(context, group.deviceType) : "-"});
    }
  }
  fmt::print("{}", table.Text());
  return 0;
}

int RunWindows(Context& context) {
  const std::string desktops = context.Call("ScGetDesktopList");
  const std::string windows = context.Call("ScGetWindowList");
  if (context.line.Json()) {
    PrintLine("{\"desktops\":" + desktops + ",\"windows\":" + windows + "}");
    return 0;
  }
  Table table({"KIND", " ID", "PLACE", " PID", "APPLICATION", "TITLE"});
  for (const auto& row : RowsOf<ScreenRow>(desktops)) {
    table.Add({"desktop", std::to_string(row.id), Place(row), "-", "-", "-"});
  }
  for (const auto& row : RowsOf<ScreenRow>(windows)) {
    table.Add({"window", std::to_string(row.id), Place(row), std::to_string(row.pid), row.application, row.title});
  }
  fmt::print("{}", table.Text());
  return 0;
}

}  // namespace ravo::ctl
