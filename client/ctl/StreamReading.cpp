#include "StreamReading.h"

#include <algorithm>

#include "common/Clock.h"

namespace ravo::ctl {
namespace {

constexpr std::int64_t kStampCycleMs = 2'000'000;
constexpr std::int64_t kPlausibleMs = 60'000;
constexpr auto kWait = std::chrono::milliseconds(100);  // how late a stop may be seen

}  // namespace

std::optional<std::int64_t> FrameAgeMs(std::uint32_t renderTimeMs, std::int64_t steadyMs) {
  if (renderTimeMs >= kStampCycleMs) return std::nullopt;
  const std::int64_t age = (steadyMs % kStampCycleMs - renderTimeMs + kStampCycleMs) % kStampCycleMs;
  if (age > kPlausibleMs) return std::nullopt;
  return age;
}

std::optional<std::int64_t> Percentile(std::vector<std::int64_t> values, int percent) {
  if (values.empty()) return std::nullopt;
  const std::size_t rank = (values.size() * static_cast<std::size_t>(percent) + 99) / 100;
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::max<std::size_t>(rank, 1) - 1);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

StreamReading::StreamReading(client::SlotTracker& slots, std::string sid, std::string uid, bool isScreen)
    : slots_(slots), sid_(std::move(sid)), uid_(std::move(uid)), isScreen_(isScreen) {
  thread_ = std::thread([this] { Run(); });
}

void StreamReading::Stop() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
}

double StreamReading::FramesPerSecond() const {
  const std::chrono::duration<double> time = last_ - first_;
  return frames_ > 1 ? static_cast<double>(frames_ - 1) / time.count() : 0.0;
}

void StreamReading::Run() {
  try {
    while (!stop_) {
      const std::uint32_t lastCounter = frame_.counter;
      const auto outcome = slots_.Read(sid_, frame_, kWait);
      if (outcome == client::FrameReader::Outcome::Frame) {
        Note(lastCounter);
        Count();
      }
      if (outcome == client::FrameReader::Outcome::Broken) throw std::runtime_error("the slot holds no frame");
    }
  } catch (const std::exception& failure) {
    failure_ = failure.what();
  }
}

StreamReading::Progress StreamReading::Now() const {
  const std::lock_guard lock(mutex_);
  return progress_;
}

// Each slot counts its frames from 0.
void StreamReading::Note(std::uint32_t lastCounter) {
  const std::lock_guard lock(mutex_);
  if (progress_.frames++ > 0 && frame_.counter > lastCounter) progress_.dropped += frame_.counter - lastCounter - 1;
  progress_.width = frame_.width;
  progress_.height = frame_.height;
}

void StreamReading::Count() {
  last_ = std::chrono::steady_clock::now();
  if (frames_++ == 0) first_ = last_;
  const auto age = FrameAgeMs(frame_.renderTimeMs, TESSARIN_COMMON::Clock::System().SteadyMs());
  if (age) agesMs_.push_back(*age);
}

}  // namespace ravo::ctl
