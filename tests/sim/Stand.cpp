#include "Stand.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sstream>
#include <vector>

namespace stand {
namespace {

struct Store {
  std::mutex mutex;  // guards what came
  std::condition_variable changed;
  std::vector<std::string> events;

  [[nodiscard]] int CountLocked(const std::string& beginning) const {
    return static_cast<int>(
        std::ranges::count_if(events, [&](const auto& event) { return event.starts_with(beginning); }));
  }
};

Store& TheStore() {
  static auto* const store = new Store;
  return *store;
}

template <class... Parts>
void Keep(const Parts&... parts) {
  std::ostringstream text;
  const char* separator = "";
  ((text << separator << parts, separator = " "), ...);
  const std::lock_guard lock(TheStore().mutex);
  TheStore().events.push_back(text.str());
  TheStore().changed.notify_all();
}

std::string Names(std::int32_t count, const DeviceInfo* list) {
  std::string names = "[";
  for (int i = 0; i < count; ++i) names += std::string(i == 0 ? "" : ",") + list[i].deviceId;
  return names + "]";
}

}  // namespace

void Register() {
  OnRtcSdkInit([] { Keep("OnRtcSdkInit"); });
  OnUserJoin([](const char* uid, std::int64_t value) { Keep("OnUserJoin", uid, value); });
  OnUserLeave([](const char* uid, std::int64_t value) { Keep("OnUserLeave", uid, value); });
  OnRoomStateChanged([](const char* room, const char* uid, std::int64_t, std::intptr_t, std::int64_t kind,
                        std::int64_t) { Keep("OnRoomStateChanged", room, uid, kind); });
  OnMultiStreamAdded([](const char* uid, const char* sid, std::int64_t index, const StreamResolution* resolutions,
                        std::int32_t count) {
    Keep("OnMultiStreamAdded", uid, sid, index, count, resolutions[count - 1].width, resolutions[count - 1].height,
         resolutions[count - 1].frameRate);
  });
  OnMultiStreamRemoved(
      [](const char* uid, const char* sid, std::int64_t index) { Keep("OnMultiStreamRemoved", uid, sid, index); });
  OnStreamSubscribed(
      [](std::int64_t state, const char* sid, const SubscribeInfo*) { Keep("OnStreamSubscribed", state, sid); });
  OnVideoCommonFrame([](const char* uid, VideoFrameInfo, const std::uint8_t* const*, std::int32_t,
                        const std::int64_t*) { Keep("OnVideoCommonFrame", uid); });
  OnDeviceAdded([](std::int64_t type, std::int32_t count1, const DeviceInfo* list1, std::int32_t count2,
                   const DeviceInfo* list2, std::int32_t count3, const DeviceInfo* list3) {
    Keep("OnDeviceAdded", type, Names(count1, list1), Names(count2, list2), Names(count3, list3));
  });
  OnDeviceChange([](DeviceInfo device, bool) { Keep("OnDeviceChange", device.deviceId); });
  OnSystemDefaultDeviceChange([](std::int64_t type, DeviceInfo before, DeviceInfo after) {
    Keep("OnSystemDefaultDeviceChange", type, before.deviceId, after.deviceId);
  });
}

int Count(const std::string& beginning) {
  const std::lock_guard lock(TheStore().mutex);
  return TheStore().CountLocked(beginning);
}

bool WaitFor(const std::string& beginning, int times) {
  std::unique_lock lock(TheStore().mutex);
  return TheStore().changed.wait_for(lock, std::chrono::seconds(20),
                                     [&] { return TheStore().CountLocked(beginning) >= times; });
}

void Started::SetUpTestSuite() {
  static bool started = false;
  if (std::exchange(started, true)) return;
  ServerOptionSetRTCParams("{}");
  VemoraInit(3, 0);
  Register();
  VemoraInitRtc();
  VemoraInitDevice();
}

void Started::Join(const std::string& participants) {
  SimSetParams((R"({"sim.room": {"participants": [)" + participants + "]}}").c_str());
  const JoinUser user{"me", ""};
  const JoinRoomOption option{16, 0, true, true, false};
  ASSERT_EQ(JoinRoom("token", "room", &user, &option), 0);
  ASSERT_TRUE(WaitFor("OnRoomStateChanged room me 1"));
}

void Started::Watch(const std::string& sid, std::int32_t width, std::int32_t height, std::int32_t frameRate) {
  const SubscribeConfig config{frameRate, width, height, {-1, -1, -1, -1, -1, -1, -1}};
  ASSERT_TRUE(WaitFor("OnMultiStreamAdded " + sid.substr(0, sid.rfind('_')) + " " + sid));
  ASSERT_EQ(Subscribe(sid.c_str(), 3, 0, &config), 0);
  ASSERT_TRUE(WaitFor("OnStreamSubscribed 0 " + sid));
}

}  // namespace stand
