#include "Params.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "CallRules.h"
#include "Devices.h"
#include "Firing.h"
#include "Journal.h"
#include "LocalMedia.h"
#include "Pulse.h"
#include "Room.h"
#include "Screens.h"
#include "Stage.h"
#include "common/JsonNode.h"

namespace sim {
namespace {

using Value = TESSARIN_COMMON::JsonValue;
using TESSARIN_COMMON::JsonNode;

// Reads a record over the values that it has.
template <class T>
T Read(const Value& value, T record) {
  JsonNode(&value).Get("", record);
  return record;
}

std::string Text(const Value& value) {
  std::string text;
  JsonNode(&value).Get("", text);
  return text;
}

void SetRoom(const Value& value) {
  JsonNode node(&value);
  Room::Get().SetManners(Read(value, Room::Get().Manners()));
  std::vector<Participant> participants;
  node.Get("participants", participants);
  for (const auto& participant : participants) {
    if (!participant.IsUsable()) throw std::runtime_error("participant " + participant.userId + " cannot be played");
    Room::Get().Add(participant);
  }
}

LocalSource ReadSource(const Value& value, const LocalSource& source) {
  LocalSource read = Read(value, source);
  if (!read.encoding.IsUsable()) throw std::runtime_error("the encoding cannot be played");
  return read;
}

void SetLeave(const Value& value) {
  for (const auto& user : value.GetArray()) Room::Get().RemoveUser(Text(user));
}

std::vector<Device> ReadDevices(const Value& value) {
  std::vector<Device> devices;
  JsonNode(&value).Get("", devices);
  return devices;
}

void Unplug(const Value& value) {
  std::vector<std::string> ids;
  JsonNode(&value).Get("", ids);
  Devices::Get().Unplug(ids);
}

void SetLevels(const Value& value) {
  Devices& devices = Devices::Get();
  for (const auto& row : value.GetArray()) {
    const std::int64_t type = Read(row, DeviceLevel{}).type;
    const DeviceLevel level = Read(row, DeviceLevel{type, devices.Volume(type), devices.IsMuted(type)});
    if (devices.SetVolume(type, level.volume) != 0) throw std::runtime_error("no such device or volume");
    devices.SetMute(type, level.muted);
  }
}

void SetPace(const Value& value) {
  const PulseRates rates = Read(value, Pulse::Get().Rates());
  if (!rates.IsUsable()) throw std::runtime_error("a time is below 0");
  Pulse::Get().SetRates(rates);
}

void SetDelays(const Value& value) {
  for (const auto& row : value.GetObject()) CallRules::Get().SetDelay(row.name.GetString(), row.value.GetInt64());
}

void SetResults(const Value& value) {
  for (const auto& row : value.GetObject()) {
    const bool given = !row.value.IsNull();
    CallRules::Get().SetResult(row.name.GetString(), given ? std::optional(row.value.GetInt64()) : std::nullopt);
  }
}

void SetFire(const Value& value) {
  for (const auto& row : value.GetArray()) {
    const auto volley = Volley::FromJson(row);
    Stage::Get().Now([volley] { volley.Fire(); });
  }
}

struct Key {
  std::string_view name;
  void (*apply)(const Value& value);
};

constexpr Key kKeys[] = {
    {"sim.journal", [](const Value& value) { Journal::Get().Open(Text(value)); }},
    {"sim.room", &SetRoom},
    {"sim.leave", &SetLeave},
    {"sim.pace", &SetPace},
    {"sim.devices", [](const Value& value) { Devices::Get().Replace(ReadDevices(value)); }},
    {"sim.plug", [](const Value& value) { Devices::Get().Plug(ReadDevices(value)); }},
    {"sim.unplug", &Unplug},
    {"sim.levels", &SetLevels},
    {"sim.camera", [](const Value& v) { LocalMedia::Get().SetCamera(ReadSource(v, LocalMedia::Get().Camera())); }},
    {"sim.screen", [](const Value& v) { LocalMedia::Get().SetScreen(ReadSource(v, LocalMedia::Get().Screen())); }},
    {"sim.screens", [](const Value& value) { Screens::Get().Replace(Read(value, ScreenScene{})); }},
    {"sim.delay", &SetDelays},
    {"sim.results", &SetResults},
    {"sim.fire", &SetFire},
};

void Apply(std::string_view name, const Value& value) {
  if (!name.starts_with("sim.")) return;
  const auto key = std::ranges::find(kKeys, name, &Key::name);
  if (key == std::end(kKeys)) return Journal::Get().Violation("unknown parameter " + std::string(name));
  try {
    key->apply(value);
  } catch (const std::exception& failure) {
    Journal::Get().Violation("parameter " + std::string(name) + ": " + failure.what());
  }
}

}  // namespace

bool AddParams(std::string_view text) {
  TESSARIN_COMMON::JsonDocument document;
  document.Parse(text.data(), text.size());
  if (document.HasParseError() || !document.IsObject()) return false;
  const Value& root = document;  // the constant rows compare without a doubt for Clang too
  for (const auto& member : root.GetObject()) Apply(member.name.GetString(), member.value);
  return true;
}

}  // namespace sim
