#pragma once

#include <atomic>
#include <string>

#include "common/Singleton.h"

namespace TESSARIN_LOG {

// The host's own log, for what the symbol engine says. The host sets three C functions; until then the operations do
// nothing. Any thread may log, and the setter may come at any time.
class RustLogger : public TESSARIN_COMMON::Singleton<RustLogger> {
 public:
  using Callback = void (*)(const char* text);

  void SetCallbacks(Callback info, Callback warning, Callback error);
  void Info(const std::string& text) const { Call(info_, text); }
  void Warning(const std::string& text) const { Call(warning_, text); }
  void Error(const std::string& text) const { Call(error_, text); }

 private:
  static void Call(const std::atomic<Callback>& callback, const std::string& text);

  std::atomic<Callback> info_{nullptr};
  std::atomic<Callback> warning_{nullptr};
  std::atomic<Callback> error_{nullptr};
};

}  // namespace TESSARIN_LOG
