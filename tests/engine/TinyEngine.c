/* A library with a few of the engine's entries, written in C, for the tests of the loader, which calls none of them. */
#include <ravo/engine_abi.h>

void RAVO_CALL OnDeviceChange(OnDeviceChangeCallback callback) {
  (void)callback;
}

int32_t RAVO_CALL SetDevice(int64_t deviceType, const char* deviceId, bool flag) {
  (void)deviceType;
  (void)deviceId;
  (void)flag;
  return 0;
}

RAVO_ENGINE_API void RAVO_CALL VemoraUninit(void);
void RAVO_CALL VemoraUninit(void) {}
