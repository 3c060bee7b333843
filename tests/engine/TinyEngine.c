/* A library with a few of the engine's entries, written in C, for the tests of the loader. It answers with what it was
 * given, so that a test sees whether values arrive. */
#include <ravo/engine_abi.h>
#include <string.h>

static OnDeviceChangeCallback on_device_change;

void RAVO_CALL OnDeviceChange(OnDeviceChangeCallback callback) {
  on_device_change = callback;
}

int32_t RAVO_CALL SetDevice(int64_t deviceType, const char* deviceId, bool flag) {
  DeviceInfo device;
  memset(&device, 0, sizeof(device));
  strcpy(device.deviceId, deviceId);
  device.deviceType = (int32_t)deviceType;
  device.canAutoFraming = 1;
  on_device_change(device, flag);
  return -7;
}

/* Resolved, though nobody calls it. */
RAVO_ENGINE_API void RAVO_CALL VemoraUninit(void);
void RAVO_CALL VemoraUninit(void) {}
