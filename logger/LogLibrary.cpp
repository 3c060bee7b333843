#include <ravo/log_abi.h>

#include <cstdio>
#include <exception>

#include "logger/Logger.h"

namespace {

constexpr std::int32_t kRefused = -1;
constexpr std::int32_t kFailed = -2;

bool Valid(const char* path, const char* name, const char* file, std::int32_t flags, std::int32_t keep) {
  return path != nullptr && name != nullptr && file != nullptr && flags == 0 && keep >= 0;
}

}  // namespace

std::int32_t RAVO_CALL CreateTessarinLogger(std::int32_t version, const char* path, const char* name, const char* file,
                                            std::int32_t flags, std::int32_t keep, std::int32_t flush) {
  if (!Valid(path, name, file, flags, keep)) return kRefused;
  try {
    return logger::Logger::Get().Create({version, path, name, file, keep, flush != 0}) ? 0 : kRefused;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "log: %s is not usable, lines go to standard error: %s\n", path, failure.what());
    return kFailed;
  }
}

std::int32_t RAVO_CALL TessarinLogWrite(const char* module, std::int32_t level, const char* text) {
  if (module == nullptr || text == nullptr) return kRefused;
  try {
    logger::Logger::Get().Write(module, level, text);
    return 0;
  } catch (const std::exception&) {
    return kFailed;  // the disk is full, for instance; logging never ends the server
  }
}
