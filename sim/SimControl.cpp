#include "SimControl.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>

#include "Callbacks.h"
#include "Firing.h"
#include "Journal.h"
#include "Params.h"
#include "common/JsonDocument.h"

using namespace sim;

bool RAVO_CALL SimFire(const char* entry, const char* arguments) {
  return Volley{entry, arguments}.Fire() == 1;
}

std::int64_t RAVO_CALL SimFireFromThreads(const char* entry, const char* arguments, std::int32_t threads,
                                          std::int32_t times) {
  return Volley{entry, arguments, threads, times}.Fire();
}

bool RAVO_CALL SimPushFrame(const char* userId, const char* info, const std::uint8_t* const* planes, std::int64_t count,
                            const std::int64_t* strides) try {
  TESSARIN_COMMON::JsonDocument document;
  document.Parse(info, std::strlen(info));
  Arena arena;
  VideoFrameInfo frameInfo{};
  ReadRecord(document, arena, frameInfo);
  return Emit<&OnVideoCommonFrame>(userId, frameInfo, planes, static_cast<std::int32_t>(count), strides);
} catch (const std::exception& failure) {
  std::fprintf(stderr, "simulated engine: the frame is not pushed: %s\n", failure.what());
  return false;
}

bool RAVO_CALL SimSetParams(const char* text) {
  return AddParams(text);
}

std::int64_t RAVO_CALL SimCallCount(const char* entry) {
  return Journal::Get().Count(entry);
}

bool RAVO_CALL SimWaitForCall(const char* entry, std::int64_t count, std::int64_t boundMs) {
  return Journal::Get().WaitFor(entry, count, std::chrono::milliseconds(boundMs));
}

std::int64_t RAVO_CALL SimLastCall(const char* entry, char* buffer, std::int64_t sizeBytes) {
  const std::string line = Journal::Get().LastLine(entry);
  std::snprintf(buffer, static_cast<std::size_t>(sizeBytes), "%s", line.c_str());
  return static_cast<std::int64_t>(line.size());
}

std::int64_t RAVO_CALL SimViolationCount(void) {
  return Journal::Get().Violations();
}
