#pragma once

#include <ravo/engine_abi.h>

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "LentLists.h"
#include "common/Fields.h"

namespace sim {

enum DeviceType : std::int64_t { kMicrophone = 0, kSpeaker = 1, kCamera = 2, kDeviceTypes = 3 };

// A device as a parameter text gives it.
struct Device {
  std::int64_t type = kMicrophone;
  std::string id;
  std::string name;
  std::string containerId;
  bool isDefault = false;  // the system's; the first of a type if none is
  bool isBuiltin = false;
  bool isBluetooth = false;
  bool isVirtual = false;

  bool operator==(const Device&) const = default;
};

// How loud the devices of a type are.
struct DeviceLevel {
  std::int64_t type = kMicrophone;
  std::int64_t volume = 0;
  bool muted = false;
};

// Microphones, speakers and cameras with one current device, volume (0 to 100) and mute each. Entries come on Ravo's
// thread; changes are told on the stage's thread.
class Devices {
 public:
  static Devices& Get();

  // What has come and gone is told, type by type: the devices in question, those of the type before and those after. A
  // chosen device that is gone gives way to the default one, which is told too. A device that is known by type and id
  // takes the form that it is plugged in with.
  void Replace(std::vector<Device> devices);
  void Plug(const std::vector<Device>& devices);
  void Unplug(const std::vector<std::string>& ids);

  // The policy that the options ask for.
  void SetBlackList(std::vector<std::string> names);
  void EnableSameAsSystem(bool enable);
  void SetSameAsSystem(std::string id, std::string namePattern, std::string fallbackName);

  // The entries.
  void Lend(std::int64_t type, DeviceList& out);
  void TakeBack(DeviceInfo* devices, std::int32_t count) { lent_.TakeBack(devices, count); }
  std::int32_t Select(std::int64_t type, const char* id, bool flag);
  bool Default(std::int64_t type, DeviceInfo& out) const;
  bool Current(std::int64_t type, DeviceInfo& out) const;
  [[nodiscard]] std::int64_t Volume(std::int64_t type) const;
  std::int32_t SetVolume(std::int64_t type, std::int64_t volume);
  [[nodiscard]] bool IsMuted(std::int64_t type) const;
  std::int32_t SetMute(std::int64_t type, bool mute);
  // What a sound of this volume before the microphone comes to.
  [[nodiscard]] std::int64_t CapturedVolume(std::int64_t volume) const;

  void ReportLosses() const { lent_.ReportLosses(); }

 private:
  struct State {
    std::string currentId;  // empty for the default device
    std::int64_t volume = 70;
    bool muted = false;
  };
  using List = std::vector<Device>;

  Devices();
  [[nodiscard]] static List OfType(const List& devices, std::int64_t type);
  [[nodiscard]] List Listed(std::int64_t type) const;
  [[nodiscard]] std::optional<Device> CurrentDevice(std::int64_t type) const;
  [[nodiscard]] Device SameAsSystem(std::int64_t type, const List& devices) const;
  void Change(List devices);
  static void TellChanges(std::int64_t type, const List& before, const List& after);
  static void TellVolume(std::int64_t type, const State& state);

  mutable std::mutex mutex_;
  LentLists<DeviceInfo> lent_{"devices"};
  // Guarded by mutex_.
  List devices_;
  std::array<State, kDeviceTypes> states_;
  std::vector<std::string> blackList_;
  bool sameAsSystem_ = false;
  std::string sameAsSystemId_;
  std::string sameAsSystemName_;  // {{deviceId}} stands for the id of the default device
  std::string sameAsSystemFallback_;
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::Device> = Fields(Field{"type", &sim::Device::type}, Field{"id", &sim::Device::id},
                                                    Field{"name", &sim::Device::name},
                                                    Field{"containerId", &sim::Device::containerId},
                                                    Field{"isDefault", &sim::Device::isDefault},
                                                    Field{"isBuiltin", &sim::Device::isBuiltin},
                                                    Field{"isBluetooth", &sim::Device::isBluetooth},
                                                    Field{"isVirtual", &sim::Device::isVirtual});

template <>
inline constexpr auto kFields<sim::DeviceLevel> = Fields(Field{"type", &sim::DeviceLevel::type},
                                                         Field{"volume", &sim::DeviceLevel::volume},
                                                         Field{"muted", &sim::DeviceLevel::muted});

}  // namespace TESSARIN_COMMON
