#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace sim {

// Lets callbacks out until the engine is destroyed. Once Close has returned, no callback runs and none will start, but
// for those that the caller of Close itself is inside of. Any thread may use it.
class CallbackGate {
 public:
  // Held around one callback; false if the gate is closed and nothing may be called.
  class Pass {
   public:
    Pass();
    ~Pass();
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    explicit operator bool() const { return open_; }

   private:
    bool open_;
  };

  // Waits for the callbacks of other threads; false if some still run after the bound.
  static bool Close(std::chrono::milliseconds bound);
  [[nodiscard]] static bool IsClosed();
};

}  // namespace sim
