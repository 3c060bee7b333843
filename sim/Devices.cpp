#include "Devices.h"

#include <algorithm>
#include <cstdio>

#include "Callbacks.h"
#include "Stage.h"

namespace sim {
namespace {

bool IsKnown(std::int64_t type) {
  return type >= 0 && type < kDeviceTypes;
}

template <std::size_t N>
void CopyText(char (&out)[N], const std::string& text) {
  std::snprintf(out, N, "%s", text.c_str());
}

DeviceInfo InfoOf(const Device& device) {
  DeviceInfo info{};
  CopyText(info.deviceName, device.name);
  CopyText(info.deviceId, device.id);
  CopyText(info.containerId, device.containerId);
  info.deviceVid = 0x1209;
  info.devicePid = 1 + device.type;
  info.deviceType = static_cast<std::int32_t>(device.type);
  info.isBuiltin = device.isBuiltin;
  info.isBluetooth = device.isBluetooth;
  info.isVirtual = device.isVirtual;
  info.canGetVolume = device.type != kCamera;
  info.canSetVolume = device.type != kCamera;
  return info;
}

std::vector<DeviceInfo> InfosOf(const std::vector<Device>& devices) {
  std::vector<DeviceInfo> infos;
  infos.reserve(devices.size());
  for (const auto& device : devices) infos.push_back(InfoOf(device));
  return infos;
}

std::optional<Device> DefaultOf(const std::vector<Device>& devices) {
  if (devices.empty()) return std::nullopt;
  const auto found = std::ranges::find_if(devices, &Device::isDefault);
  return found == devices.end() ? devices.front() : *found;
}

std::vector<Device> Missing(const std::vector<Device>& from, const std::vector<Device>& in) {
  std::vector<Device> missing;
  std::ranges::copy_if(from, std::back_inserter(missing),
                       [&](const Device& device) { return std::ranges::find(in, device.id, &Device::id) == in.end(); });
  return missing;
}

template <auto Registration>
void TellLists(std::int64_t type, const std::vector<Device>& changed, const std::vector<Device>& before,
               const std::vector<Device>& after) {
  if (changed.empty()) return;
  const auto list1 = InfosOf(changed);
  const auto list2 = InfosOf(before);
  const auto list3 = InfosOf(after);
  const auto count = [](const auto& list) { return static_cast<std::int32_t>(list.size()); };
  Emit<Registration>(type, count(list1), list1.data(), count(list2), list2.data(), count(list3), list3.data());
}

}  // namespace

Devices& Devices::Get() {
  static auto* const devices = new Devices;
  return *devices;
}

Devices::Devices() {
  devices_ = {{kMicrophone, "sim-mic-1", "Built-in Microphone", "sim-board", true, true, false, false},
              {kMicrophone, "sim-mic-2", "Headset Microphone", "sim-headset", false, false, true, false},
              {kSpeaker, "sim-speaker-1", "Built-in Speakers", "sim-board", true, true, false, false},
              {kSpeaker, "sim-speaker-2", "Headset", "sim-headset", false, false, true, false},
              {kCamera, "sim-camera-1", "Built-in Camera", "sim-board", true, true, false, false},
              {kCamera, "sim-camera-2", "Virtual Camera", "", false, false, false, true}};
}

void Devices::Replace(List devices) {
  const std::lock_guard lock(mutex_);
  Change(std::move(devices));
}

void Devices::Plug(const List& devices) {
  const std::lock_guard lock(mutex_);
  List all = devices_;
  for (const auto& device : devices) {
    std::erase_if(all, [&](const Device& known) { return known.type == device.type && known.id == device.id; });
    if (device.isDefault) {
      for (auto& other : all) other.isDefault = other.isDefault && other.type != device.type;
    }
    all.push_back(device);
  }
  Change(std::move(all));
}

void Devices::Unplug(const std::vector<std::string>& ids) {
  const std::lock_guard lock(mutex_);
  List left = devices_;
  std::erase_if(left, [&](const Device& device) { return std::ranges::find(ids, device.id) != ids.end(); });
  Change(std::move(left));
}

// With the lock. What is told was settled here, so that a change that follows at once is told as a change of its own.
void Devices::Change(List devices) {
  std::array<std::optional<Device>, kDeviceTypes> used;
  for (std::int64_t type = 0; type < kDeviceTypes; ++type) used[static_cast<std::size_t>(type)] = CurrentDevice(type);
  const List before = std::exchange(devices_, std::move(devices));
  for (std::int64_t type = 0; type < kDeviceTypes; ++type) {
    const List listed = Listed(type);
    std::string& chosen = states_[static_cast<std::size_t>(type)].currentId;
    if (std::ranges::find(listed, chosen, &Device::id) == listed.end()) chosen.clear();
    const auto& wasUsed = used[static_cast<std::size_t>(type)];
    auto nowUsed = CurrentDevice(type);
    if (wasUsed && nowUsed && wasUsed->id == nowUsed->id) nowUsed.reset();
    Stage::Get().Now([type, nowUsed, old = OfType(before, type), now = OfType(devices_, type)] {
      TellChanges(type, old, now);
      if (nowUsed) Emit<&OnDeviceChange>(InfoOf(*nowUsed), true);
    });
  }
}

void Devices::TellChanges(std::int64_t type, const List& before, const List& after) {
  TellLists<&OnDeviceAdded>(type, Missing(after, before), before, after);
  TellLists<&OnDeviceRemoved>(type, Missing(before, after), before, after);
  const auto oldDefault = DefaultOf(before);
  const auto newDefault = DefaultOf(after);
  if (oldDefault && newDefault && oldDefault->id != newDefault->id) {
    Emit<&OnSystemDefaultDeviceChange>(type, InfoOf(*oldDefault), InfoOf(*newDefault));
  }
}

void Devices::SetBlackList(std::vector<std::string> names) {
  const std::lock_guard lock(mutex_);
  blackList_ = std::move(names);
}

void Devices::EnableSameAsSystem(bool enable) {
  const std::lock_guard lock(mutex_);
  sameAsSystem_ = enable;
}

void Devices::SetSameAsSystem(std::string id, std::string namePattern, std::string fallbackName) {
  const std::lock_guard lock(mutex_);
  sameAsSystemId_ = std::move(id);
  sameAsSystemName_ = std::move(namePattern);
  sameAsSystemFallback_ = std::move(fallbackName);
}

void Devices::Lend(std::int64_t type, DeviceList& out) {
  const std::lock_guard lock(mutex_);
  const auto infos = InfosOf(Listed(type));
  out.devices = lent_.Lend(infos);
  out.count = static_cast<std::int32_t>(infos.size());
}

std::int32_t Devices::Select(std::int64_t type, const char* id, bool flag) {
  if (!IsKnown(type)) return -1;
  {
    const std::lock_guard lock(mutex_);
    const auto devices = Listed(type);
    if (std::ranges::find(devices, id, &Device::id) == devices.end()) return -1;
    states_[static_cast<std::size_t>(type)].currentId = id;
  }
  Stage::Get().Now([=, deviceId = std::string(id)] { Emit<&OnDeviceSetSuccess>(type, deviceId.c_str(), flag, true); });
  return 0;
}

bool Devices::Default(std::int64_t type, DeviceInfo& out) const {
  const std::lock_guard lock(mutex_);
  const auto device = DefaultOf(OfType(devices_, type));
  if (device) out = InfoOf(*device);
  return device.has_value();
}

bool Devices::Current(std::int64_t type, DeviceInfo& out) const {
  const std::lock_guard lock(mutex_);
  const auto device = CurrentDevice(type);
  if (device) out = InfoOf(*device);
  return device.has_value();
}

std::int64_t Devices::Volume(std::int64_t type) const {
  const std::lock_guard lock(mutex_);
  return IsKnown(type) && type != kCamera ? states_[static_cast<std::size_t>(type)].volume : -1;
}

std::int32_t Devices::SetVolume(std::int64_t type, std::int64_t volume) {
  if (!IsKnown(type) || type == kCamera || volume < 0 || volume > 100) return -1;
  const std::lock_guard lock(mutex_);
  State& state = states_[static_cast<std::size_t>(type)];
  if (std::exchange(state.volume, volume) != volume) Stage::Get().Now([=] { TellVolume(type, state); });
  return 0;
}

bool Devices::IsMuted(std::int64_t type) const {
  const std::lock_guard lock(mutex_);
  return IsKnown(type) && states_[static_cast<std::size_t>(type)].muted;
}

std::int32_t Devices::SetMute(std::int64_t type, bool mute) {
  const std::lock_guard lock(mutex_);
  State& state = states_[static_cast<std::size_t>(type)];
  if (std::exchange(state.muted, mute) == mute) return 0;
  Stage::Get().Now([type, state] {
    if (type == kMicrophone) {
      Emit<&OnRecordingMuteStateChange>(state.muted);
    } else {
      Emit<&OnVolumeChange>(state.volume, state.muted, false);
    }
  });
  return 0;
}

std::int64_t Devices::CapturedVolume(std::int64_t volume) const {
  const std::lock_guard lock(mutex_);
  const State& microphone = states_[kMicrophone];
  return microphone.muted ? 0 : volume * microphone.volume / 100;
}

void Devices::TellVolume(std::int64_t type, const State& state) {
  if (type == kMicrophone) {
    Emit<&OnRecordingVolumeChange>(state.volume);
  } else {
    Emit<&OnPlaybackVolumeChange>(state.volume);
  }
}

Devices::List Devices::OfType(const List& devices, std::int64_t type) {
  List found;
  std::ranges::copy_if(devices, std::back_inserter(found), [&](const Device& device) { return device.type == type; });
  return found;
}

// What a client is shown: without the names on the black list, and with the row that follows the system.
Devices::List Devices::Listed(std::int64_t type) const {
  List devices = OfType(devices_, type);
  std::erase_if(devices,
                [&](const Device& device) { return std::ranges::find(blackList_, device.name) != blackList_.end(); });
  if (sameAsSystem_ && IsKnown(type) && type != kCamera) devices.insert(devices.begin(), SameAsSystem(type, devices));
  return devices;
}

Device Devices::SameAsSystem(std::int64_t type, const List& devices) const {
  constexpr std::string_view kPlaceholder = "{{deviceId}}";
  Device row{type, sameAsSystemId_, sameAsSystemFallback_, "", false, false, false, true};
  const auto standard = DefaultOf(devices);
  const auto place = sameAsSystemName_.find(kPlaceholder);
  if (!standard || place == std::string::npos) return row;
  row.name = sameAsSystemName_;
  row.name.replace(place, kPlaceholder.size(), standard->id);
  return row;
}

std::optional<Device> Devices::CurrentDevice(std::int64_t type) const {
  if (!IsKnown(type)) return std::nullopt;
  const auto devices = Listed(type);
  const auto found = std::ranges::find(devices, states_[static_cast<std::size_t>(type)].currentId, &Device::id);
  return found == devices.end() ? DefaultOf(OfType(devices_, type)) : *found;
}

}  // namespace sim
