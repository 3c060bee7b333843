#include <ravo/log_abi.h>

#include <cstdint>

std::int32_t RAVO_CALL CreateTessarinLogger(std::int32_t, const char*, const char*, const char*, std::int32_t,
                                            std::int32_t, std::int32_t) {
  return 0;
}

std::int32_t RAVO_CALL TessarinLogWrite(const char*, std::int32_t, const char*) {
  return 0;
}
