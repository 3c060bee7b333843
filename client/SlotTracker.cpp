#include "SlotTracker.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "common/JsonNode.h"
#include "common/JsonWriter.h"

namespace ravo::client {
namespace {

using TESSARIN_COMMON::JsonNode;

constexpr char kUpdateKey[] = "SHARE_MEMORY_UPDATE";
enum Operation : std::int64_t { kAdd = 0, kRemove = 1 };

}  // namespace

SlotTracker::SlotTracker(Session& session) : session_(session) {
  session.AddListener([this](const Event& event) {
    if (event.key == kUpdateKey) OnEvent(event);
  });
}

SlotTracker::~SlotTracker() {
  session_.Close();
}

bool SlotTracker::Refresh(std::chrono::milliseconds timeout) {
  const Reply reply = session_.Call("GetShareMemoryInfo", "[]", timeout);
  if (!reply.Ok()) return false;
  std::vector<ShareMemoryInfo> slots;
  JsonNode(reply.content).Get("", slots);
  for (const auto& info : slots) Add(info);
  return true;
}

std::vector<ShareMemoryInfo> SlotTracker::Slots() const {
  const std::lock_guard lock(mutex_);
  std::vector<ShareMemoryInfo> slots;
  for (const auto& [sid, slot] : slots_) {
    if (!slot->removed) slots.push_back(slot->info);
  }
  return slots;
}

bool SlotTracker::Reads(const std::string& sid) const {
  const std::lock_guard lock(mutex_);
  const auto found = slots_.find(sid);
  return found != slots_.end() && found->second->reading;
}

FrameReader::Outcome SlotTracker::Read(const std::string& sid, Frame& out, std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  const auto slot = Lease(sid, end);
  if (slot == nullptr) return FrameReader::Outcome::TimedOut;
  std::string error;
  // Only the thread that holds the lease touches the reader.
  if (slot->reader == nullptr) slot->reader = FrameReader::Open(slot->path, error);
  auto outcome = FrameReader::Outcome::Broken;
  if (slot->reader != nullptr) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    outcome = slot->reader->Next(out, std::max(left, std::chrono::milliseconds(0)));
  }
  Release(slot);
  if (!error.empty()) throw std::runtime_error("cannot open the slot of " + sid + ": " + error);
  return outcome;
}

void SlotTracker::OnEvent(const Event& event) {
  std::int64_t operation = 0;
  std::vector<ShareMemoryInfo> slots;
  try {
    JsonNode arguments(event.content);
    arguments[0].Get("", operation);
    arguments[1].Get("", slots);
  } catch (const std::runtime_error&) {
    return;  // no announcement that a server makes
  }
  for (const auto& info : slots) {
    if (operation == kAdd) Add(info);
    if (operation == kRemove) Remove(info);
  }
}

void SlotTracker::Add(const ShareMemoryInfo& info) {
  {
    const std::lock_guard lock(mutex_);
    auto& slot = slots_[info.sid];
    if (slot == nullptr || slot->path != info.path) slot = std::make_shared<Slot>(info.path);
    slot->info = info;  // of a known path: the picture has turned
  }
  added_.notify_all();
}

void SlotTracker::Remove(const ShareMemoryInfo& info) {
  if (LetGo(info)) Acknowledge(info);
}

// True if the end is to be acknowledged now: nobody reads there, and it was not done before. The end of a stream or of
// its video names no path: it means whichever slot there is.
bool SlotTracker::LetGo(const ShareMemoryInfo& info) {
  const std::lock_guard lock(mutex_);
  const auto found = slots_.find(info.sid);
  const bool known = found != slots_.end() && (info.path.empty() || found->second->path == info.path);
  if (!known && info.path.empty()) return false;
  const std::string path = known ? found->second->path : info.path;
  if (known) {
    found->second->removed = found->second->reading;
    if (found->second->reading) return false;
    slots_.erase(found);
  }
  return std::exchange(lastEnded_[info.sid], path) != path;
}

void SlotTracker::Acknowledge(const ShareMemoryInfo& info) {
  TESSARIN_COMMON::JsonWriter arguments;
  arguments.StartArray();
  arguments.Add(nullptr, static_cast<std::int64_t>(kRemove));
  arguments.Add(nullptr, std::vector{info});
  arguments.EndArray();
  session_.CallAsync("AckShareMemoryUpdate", arguments.Text(), [](const Reply&) {});
}

std::shared_ptr<SlotTracker::Slot> SlotTracker::Lease(const std::string& sid,
                                                      std::chrono::steady_clock::time_point end) {
  std::unique_lock lock(mutex_);
  std::shared_ptr<Slot> slot;
  added_.wait_until(lock, end, [&] {
    const auto found = slots_.find(sid);
    slot = found != slots_.end() && !found->second->removed ? found->second : nullptr;
    return slot != nullptr;
  });
  if (slot != nullptr) slot->reading = true;
  return slot;
}

void SlotTracker::Release(const std::shared_ptr<Slot>& slot) {
  {
    const std::lock_guard lock(mutex_);
    slot->reading = false;
    if (!slot->removed) return;
    slot->reader.reset();
    const auto found = slots_.find(slot->info.sid);
    if (found == slots_.end() || found->second != slot) return;  // the server has gone on without our answer
    slots_.erase(found);
    lastEnded_[slot->info.sid] = slot->path;
  }
  Acknowledge(slot->info);
}

}  // namespace ravo::client
