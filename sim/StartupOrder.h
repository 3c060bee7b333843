#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace sim {

// Watches the order in which the engine is brought up: options and parameter texts, VemoraInit, registrations,
// VemoraInitRtc, VemoraInitDevice, then the rest; nothing after DestroyServer. A breach is a violation of the journal
// and has no other effect. Options may come again once the engine is up. Any thread may ask.
class StartupOrder {
 public:
  enum class Kind { Option, Init, Registration, InitRtc, InitDevice, Call, Destroy };

  static StartupOrder& Get();

  void Check(Kind kind, std::string_view entry);
  // The kind of an entry, from its name.
  [[nodiscard]] static Kind KindOf(std::string_view entry, bool isRegistration);

 private:
  enum class Phase { Options, Registrations, Rtc, Running, Destroyed };

  [[nodiscard]] static bool Fits(Kind kind, Phase phase);
  void Advance(Kind kind);

  std::mutex mutex_;
  Phase phase_ = Phase::Options;  // guarded by mutex_
};

}  // namespace sim
