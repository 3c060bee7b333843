#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "common/Fields.h"

namespace sim {

struct Company;

// How often a room shows that it lives, in milliseconds; 0 is never.
struct PulseRates {
  std::int64_t volumeMs = 200;
  std::int64_t qualityMs = 2000;
  std::int64_t statsMs = 2000;

  [[nodiscard]] bool IsUsable() const { return volumeMs >= 0 && qualityMs >= 0 && statsMs >= 0; }
};

// The steady callbacks of a stay in a room, while others are there: who speaks how loud, how good the network is, what
// the machine does. The others speak in turns. Any thread may call; the callbacks go out on the stage's thread.
class Pulse {
 public:
  static Pulse& Get();

  // Begins anew, for a room that was joined. Ends by itself with the stay.
  void Start();
  void SetRates(const PulseRates& rates);
  [[nodiscard]] PulseRates Rates() const;

  // How loud one of `count` speakers is at a beat, 0 to 100: the one whose turn it is, loud, the others hardly.
  [[nodiscard]] static std::int64_t VolumeAt(std::int64_t beat, std::size_t speaker, std::size_t count);

 private:
  struct Kind {
    std::int64_t PulseRates::*everyMs;
    void (*tell)(const Company& company, std::int64_t beat);
  };
  static const Kind kVolume;
  static const Kind kQuality;
  static const Kind kStats;

  void Schedule(const Kind& kind, std::int64_t run, std::int64_t beat);

  mutable std::mutex mutex_;
  PulseRates rates_;                  // guarded by mutex_
  std::atomic<std::int64_t> run_{0};  // beats of an earlier run are dropped
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::PulseRates> = Fields(Field{"volumeMs", &sim::PulseRates::volumeMs},
                                                        Field{"qualityMs", &sim::PulseRates::qualityMs},
                                                        Field{"statsMs", &sim::PulseRates::statsMs});

}  // namespace TESSARIN_COMMON
