/* A library with a few of the engine's entries, written in C, for the tests of the loader. It answers with what it was
 * given, so that a test sees whether values arrive. */
#include <ravo/engine_abi.h>
#include <string.h>

static OnVideoCommonFrameCallback on_frame;
static OnDeviceChangeCallback on_device_change;
static double tick_time;

void RAVO_CALL OnVideoCommonFrame(OnVideoCommonFrameCallback callback) {
  on_frame = callback;
}

void RAVO_CALL OnDeviceChange(OnDeviceChangeCallback callback) {
  on_device_change = callback;
}

/* Gives one frame of 4 by 2 pixels, its lines 6, 3 and 3 bytes long. */
void RAVO_CALL StartVideoCapture(void) {
  static const uint8_t y[12] = {1}, u[3] = {2}, v[3] = {3};
  static const uint8_t* const planes[3] = {y, u, v};
  static const int64_t strides[3] = {6, 3, 3};
  const VideoFrameInfo info = {1, 2, 3, 4, 2, 90, INT64_C(1) << 40, true};
  on_frame("ann", info, planes, 3, strides);
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

void RAVO_CALL ServerOptionSetActiveSpeakerConfig(ActiveSpeakerConfig config) {
  tick_time = config.tickTime;
}

void RAVO_CALL GetDevicePerformanceInfos(DevicePerformance* out) {
  memset(out, 0, sizeof(*out));
  out->memory = tick_time;
  strcpy(out->deviceModel, "tiny");
}

int64_t RAVO_CALL JoinRoom(const char* token, const char* roomId, const JoinUser* user, const JoinRoomOption* option) {
  const bool good = strcmp(token, "t") == 0 && strcmp(roomId, "r") == 0 && strcmp(user->userId, "u") == 0 &&
                    strcmp(user->extraInfo, "x") == 0 && option->flag1 && option->flag2 && !option->flag3;
  return good ? -option->channelProfile * (INT64_C(1) << 33) : 0;
}

/* Resolved, though nobody calls it. */
RAVO_ENGINE_API void RAVO_CALL VemoraUninit(void);
void RAVO_CALL VemoraUninit(void) {}
