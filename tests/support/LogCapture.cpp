#include "LogCapture.h"

#include <ravo/log_abi.h>

#include <algorithm>
#include <mutex>

#include "WaitUntil.h"

namespace support {
namespace {

struct Store {
  std::mutex mutex;
  std::vector<LogLine> lines;
};

Store& TheStore() {
  static auto* const store = new Store;
  return *store;
}

}  // namespace

LogCapture::LogCapture() {
  const std::lock_guard lock(TheStore().mutex);
  first_ = TheStore().lines.size();
}

std::vector<LogLine> LogCapture::Lines() const {
  const std::lock_guard lock(TheStore().mutex);
  return {TheStore().lines.begin() + static_cast<std::ptrdiff_t>(first_), TheStore().lines.end()};
}

std::vector<std::string> LogCapture::Texts() const {
  std::vector<std::string> texts;
  for (auto& line : Lines()) texts.push_back(std::move(line.text));
  return texts;
}

bool LogCapture::Has(const std::string& text) const {
  return Count(text) > 0;
}

int LogCapture::Count(const std::string& text) const {
  const auto lines = Lines();
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const auto& l) { return l.text == text; }));
}

bool LogCapture::WaitFor(const std::string& text) const {
  return WaitUntil([&] { return Has(text); });
}

}  // namespace support

extern "C" std::int32_t RAVO_CALL CreateTessarinLogger(std::int32_t, const char*, const char*, const char*,
                                                       std::int32_t, std::int32_t, std::int32_t) {
  return 0;
}

extern "C" std::int32_t RAVO_CALL TessarinLogWrite(const char* module, std::int32_t level, const char* text) {
  const std::lock_guard lock(support::TheStore().mutex);
  support::TheStore().lines.push_back({module, level, text});
  return 0;
}
