#include "RustLogger.h"

namespace TESSARIN_LOG {

void RustLogger::SetCallbacks(Callback info, Callback warning, Callback error) {
  info_ = info;
  warning_ = warning;
  error_ = error;
}

void RustLogger::Call(const std::atomic<Callback>& callback, const std::string& text) {
  if (const Callback function = callback) function(text.c_str());
}

}  // namespace TESSARIN_LOG
