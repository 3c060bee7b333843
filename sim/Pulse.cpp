#include "Pulse.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "Callbacks.h"
#include "Devices.h"
#include "LocalMedia.h"
#include "Room.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::int64_t kBeatsOfATurn = 15;
constexpr std::int64_t kSampleMs = 200;

// Goes round between `from` and `to`, so that a reader sees numbers that move.
std::int64_t Wave(std::int64_t beat, std::int64_t from, std::int64_t to) {
  const double turn = (1.0 - std::cos(static_cast<double>(beat) * 0.7)) / 2.0;
  return from + std::llround(turn * static_cast<double>(to - from));
}

// What the ear takes for half as loud is a quarter of the power.
std::int64_t Linear(std::int64_t volume) {
  return volume * volume / 100;
}

void TellVolumes(const Company& company, std::int64_t beat) {
  std::vector<VolumeInfo> volumes;
  std::int64_t loudest = 0;
  for (std::size_t i = 0; i < company.others.size(); ++i) {
    const std::int64_t volume = Pulse::VolumeAt(beat, i, company.others.size());
    volumes.push_back({company.others[i].c_str(), volume, Linear(volume)});
    loudest = std::max(loudest, volume);
  }
  const bool speaks = LocalMedia::Get().IsAudioEnabled();
  const std::int64_t own = speaks ? Devices::Get().CapturedVolume(Wave(beat, 20, 60)) : 0;
  const LocalVolumeInfo local{company.self.c_str(), own, own / 2, Linear(own)};
  Emit<&OnAudioVolumeIndication>(volumes.data(), static_cast<std::int32_t>(volumes.size()), loudest, kSampleMs);
  Emit<&OnLocalAudioVolumeIndication>(&local);
}

void TellQuality(const Company& company, std::int64_t beat) {
  constexpr std::int32_t kGood = 1;
  const auto uplink = static_cast<std::int32_t>(Wave(beat, 1, 2));
  const LocalQuality local{
      company.self.c_str(), kGood, kGood, uplink, uplink, uplink, kGood, kGood, kGood, kGood, kGood};
  std::vector<RemoteQuality> remotes;
  for (const auto& user : company.others) remotes.push_back({user.c_str(), kGood, uplink});
  Emit<&OnNetworkQuality>(&local, remotes.data(), static_cast<std::int32_t>(remotes.size()));
}

void TellStats(const Company&, std::int64_t beat) {
  constexpr std::int64_t kMemoryMb = 8192;
  const auto app = static_cast<double>(Wave(beat, 8, 14)) / 100;
  const std::int64_t usedMb = Wave(beat, 5000, 5200);
  const SysStats stats{4,
                       app,
                       app + 0.15,
                       420.0,
                       kMemoryMb,
                       usedMb,
                       kMemoryMb - usedMb,
                       420.0 / kMemoryMb,
                       static_cast<double>(usedMb) / kMemoryMb};
  Emit<&OnSysStats>(&stats);
  const BandwidthEstimation bandwidth{Wave(beat, 3800, 4200), 0, Wave(beat, 7600, 8400), 0};
  Emit<&OnNetworkBandwidthEstimationResult>(&bandwidth);
}

}  // namespace

const Pulse::Kind Pulse::kVolume{&PulseRates::volumeMs, &TellVolumes};
const Pulse::Kind Pulse::kQuality{&PulseRates::qualityMs, &TellQuality};
const Pulse::Kind Pulse::kStats{&PulseRates::statsMs, &TellStats};

Pulse& Pulse::Get() {
  static auto* const pulse = new Pulse;
  return *pulse;
}

void Pulse::Start() {
  const std::int64_t run = ++run_;
  for (const Kind* kind : {&kVolume, &kQuality, &kStats}) Schedule(*kind, run, 0);
}

void Pulse::SetRates(const PulseRates& rates) {
  {
    const std::lock_guard lock(mutex_);
    rates_ = rates;
  }
  Start();
}

PulseRates Pulse::Rates() const {
  const std::lock_guard lock(mutex_);
  return rates_;
}

std::int64_t Pulse::VolumeAt(std::int64_t beat, std::size_t speaker, std::size_t count) {
  const auto turn = static_cast<std::size_t>(beat / kBeatsOfATurn) % count;
  return speaker == turn ? Wave(beat, 40, 80) : Wave(beat, 0, 3);
}

// Outside of a room the chain of beats ends; the next join starts another.
void Pulse::Schedule(const Kind& kind, std::int64_t run, std::int64_t beat) {
  const std::int64_t everyMs = Rates().*(kind.everyMs);
  if (everyMs == 0) return;
  Stage::Get().After(std::chrono::milliseconds(everyMs), [this, &kind, run, beat] {
    const Company company = Room::Get().Present();
    if (run != run_ || company.self.empty()) return;
    if (!company.others.empty()) kind.tell(company, beat);
    Schedule(kind, run, beat + 1);
  });
}

}  // namespace sim
