// The parts of the server that the program is made of log through these two calls. A program on the command line shows
// what went wrong, and nothing else.
#include <ravo/log_abi.h>

#include <cstdint>
#include <cstdio>

namespace {
constexpr std::int32_t kUnexpected = 4;
}

std::int32_t RAVO_CALL CreateTessarinLogger(std::int32_t, const char*, const char*, const char*, std::int32_t,
                                            std::int32_t, std::int32_t) {
  return 0;
}

std::int32_t RAVO_CALL TessarinLogWrite(const char*, std::int32_t level, const char* text) {
  if (level >= kUnexpected) std::fprintf(stderr, "ravoctl: %s\n", text);
  return 0;
}
