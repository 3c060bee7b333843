#include "Logger.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <thread>

#include "LineText.h"
#include "LogFiles.h"
#include "PrivateFile.h"
#include "common/BriefLock.h"

namespace logger {
namespace {

using namespace std::chrono_literals;

constexpr char kPattern[] = "%Y-%m-%d %H:%M:%S.%e %L [%t] [%n] %v";
constexpr std::size_t kPartBytes = 32u << 20;  // a run's file is parted beyond
constexpr std::size_t kOlderParts = 3;
constexpr std::size_t kBufferBytes = 64u << 10;  // a busy server's lines of some milliseconds in one write
constexpr std::size_t kEarlyBytes = 1u << 20;
constexpr auto kFlushPause = 1s;

spdlog::level::level_enum Severity(int level) {
  if (level <= 2) return spdlog::level::debug;
  if (level == 3) return spdlog::level::info;
  return level == 4 ? spdlog::level::warn : spdlog::level::err;
}

std::unique_ptr<spdlog::sinks::sink> Formatted(std::unique_ptr<spdlog::sinks::sink> sink) {
  sink->set_pattern(kPattern);
  return sink;
}

}  // namespace

Logger& Logger::Get() {
  static auto* const logger = new Logger;  // other threads write while the process ends
  return *logger;
}

Logger::Logger() : console_(Formatted(std::make_unique<spdlog::sinks::stderr_sink_st>())) {}

bool Logger::Create(const Settings& settings) {
  const std::lock_guard lock(mutex_);
  if (made_) return false;
  made_ = true;
  auto early = std::move(early_);
  if (settings.folder.empty()) return true;

  OpenFile(settings);
  for (const auto& line : early) file_->log(line);
  const std::string first = fmt::format("log of {}, version {}", settings.name, settings.version);
  file_->log(spdlog::details::log_msg("log", spdlog::level::info, first));
  file_->flush();
  std::atexit([] { Get().FlushForGood(); });
  if (settings.flushSoon) StartFlusher();
  return true;
}

void Logger::OpenFile(const Settings& settings) {
  const std::filesystem::path folder(std::u8string(settings.folder.begin(), settings.folder.end()));
  const auto path = PrepareLogFile(folder, settings.stem, settings.keepRuns);
  fileBuffer_ = std::make_unique<char[]>(kBufferBytes);  // the C library takes the size only with a buffer
  spdlog::file_event_handlers events;
  events.before_open = [](const spdlog::filename_t& name) { MakePrivate(name); };
  events.after_open = [buffer = fileBuffer_.get()](const spdlog::filename_t&, std::FILE* file) {
    std::setvbuf(file, buffer, _IOFBF, kBufferBytes);
  };
  file_ = Formatted(
      std::make_unique<spdlog::sinks::rotating_file_sink_st>(path.native(), kPartBytes, kOlderParts, false, events));
}

void Logger::Write(const char* module, int level, const char* text) {
  fmt::memory_buffer rewritten;
  const std::string_view oneLine = OneLine(text, rewritten);
  const TESSARIN_COMMON::BriefLock lock(mutex_);
  // Under the lock, so that the lines' times rise.
  const spdlog::details::log_msg line(module, Severity(level), {oneLine.data(), oneLine.size()});
  if (file_ == nullptr) {
    console_->log(line);
    if (!made_) KeepEarly(line);
    return;
  }
  file_->log(line);
  FlushAfter(line.level);
}

void Logger::KeepEarly(const spdlog::details::log_msg& line) {
  earlyBytes_ += line.payload.size();
  if (earlyBytes_ <= kEarlyBytes) early_.emplace_back(line);
}

void Logger::FlushAfter(spdlog::level::level_enum level) {
  if (flushEach_ || level >= spdlog::level::warn) {
    file_->flush();
    unflushed_ = false;
  } else if (flusherRuns_ && !unflushed_) {
    unflushed_ = true;
    written_.notify_one();
  }
}

void Logger::StartFlusher() {
  try {
    std::thread([this] { RunFlusher(); }).detach();
    flusherRuns_ = true;
  } catch (const std::system_error&) {
    flushEach_ = true;  // dearer, and nothing is lost
  }
}

void Logger::RunFlusher() {
  for (;;) {
    {
      std::unique_lock lock(mutex_);
      written_.wait(lock, [this] { return unflushed_; });
    }
    std::this_thread::sleep_for(kFlushPause);
    const std::lock_guard lock(mutex_);
    TryFlush();
    unflushed_ = false;
  }
}

void Logger::FlushForGood() {
  // Where the system ends the other threads first, one of them may hold the lock for ever. The C library writes out
  // its streams after us, so that nothing hangs on this.
  for (int tries = 0; tries < 200; ++tries) {
    if (mutex_.try_lock()) {
      const std::lock_guard lock(mutex_, std::adopt_lock);
      flushEach_ = true;
      TryFlush();
      return;
    }
    std::this_thread::sleep_for(5ms);
  }
}

void Logger::TryFlush() {
  try {
    file_->flush();
  } catch (const std::exception&) {
    // The disk is full, for instance; a later flush may have better luck.
  }
}

}  // namespace logger
