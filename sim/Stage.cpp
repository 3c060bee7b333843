#include "Stage.h"

#include <utility>

namespace sim {

Stage& Stage::Get() {
  static auto* const stage = new Stage;
  return *stage;
}

Stage::Stage() {
  StartThread("sim_room", [this] { Run(); });
}

void Stage::After(std::chrono::milliseconds delay, std::function<void()> closure) {
  {
    const std::lock_guard lock(mutex_);
    closures_.emplace(Clock::now() + delay, std::move(closure));
  }
  changed_.notify_one();
}

void Stage::Run() {
  std::unique_lock lock(mutex_);
  while (true) {
    if (closures_.empty()) {
      changed_.wait(lock);
    } else if (const auto due = closures_.begin()->first; Clock::now() < due) {
      changed_.wait_until(lock, due);
    } else {
      const auto closure = std::move(closures_.begin()->second);
      closures_.erase(closures_.begin());
      lock.unlock();
      closure();
      lock.lock();
    }
  }
}

}  // namespace sim
