#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

#include "ThreadName.h"

namespace sim {

// Starts a thread that nobody waits for: the process may end by exit() while it runs.
template <class Body>
void StartThread(const char* name, Body body) {
  std::thread([name, body = std::move(body)]() mutable {
    NameThread(name);
    body();
  }).detach();
}

// The thread "sim_room", on which the room's news is told: closures run in the order of their time, those of one time
// in the order in which they were given. Any thread may give closures, which run with no lock held.
class Stage {
 public:
  static Stage& Get();

  void After(std::chrono::milliseconds delay, std::function<void()> closure);
  void Now(std::function<void()> closure) { After(std::chrono::milliseconds(0), std::move(closure)); }

 private:
  using Clock = std::chrono::steady_clock;

  Stage();
  void Run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<Clock::time_point, std::function<void()>> closures_;  // guarded by mutex_
};

}  // namespace sim
