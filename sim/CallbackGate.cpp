#include "CallbackGate.h"

#include <condition_variable>
#include <mutex>

namespace sim {
namespace {

struct State {
  std::mutex mutex;
  std::condition_variable left;
  std::atomic<bool> closed{false};
  std::atomic<std::int64_t> inside{0};
};

State& TheState() {
  static auto* const state = new State;
  return *state;
}

thread_local std::int64_t insideHere = 0;

}  // namespace

CallbackGate::Pass::Pass() : open_(false) {
  State& state = TheState();
  ++state.inside;
  ++insideHere;
  open_ = !state.closed;  // after the count, so that Close either sees the count or is seen
}

CallbackGate::Pass::~Pass() {
  State& state = TheState();
  --insideHere;
  --state.inside;
  if (!state.closed) return;
  { const std::lock_guard lock(state.mutex); }
  state.left.notify_all();
}

bool CallbackGate::Close(std::chrono::milliseconds bound) {
  State& state = TheState();
  state.closed = true;
  std::unique_lock lock(state.mutex);
  return state.left.wait_for(lock, bound, [&] { return state.inside <= insideHere; });
}

bool CallbackGate::IsClosed() {
  return TheState().closed;
}

}  // namespace sim
