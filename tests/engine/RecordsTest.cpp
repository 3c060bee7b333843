#include <gtest/gtest.h>

#include <cstring>

#include "common/JsonWriter.h"
#include "records/DeviceRecords.h"
#include "records/MeetingRecords.h"
#include "records/ScreenRecords.h"
#include "records/StreamRecords.h"

using namespace TESSARIN_COMMON;
using namespace TESSARIN_LUMARC;

namespace {

TEST(DeviceRecords, FlagsAreBooleansAndTheReservedBytesStayOut) {
  DeviceInfo device{};
  std::strcpy(device.deviceName, "Mic");
  std::memcpy(device.deviceId, "id\0rest", 8);
  device.deviceVid = 0x100000000;
  device.deviceType = -1;
  std::memset(device.reserved1, 0xFF, sizeof(device.reserved1));
  device.isBuiltin = 1;
  device.canAutoFraming = 2;
  EXPECT_EQ(JsonText(device),
            R"({"deviceName":"Mic","deviceId":"id","containerId":"","deviceVid":4294967296,"devicePid":0,)"
            R"("deviceType":-1,"isBuiltin":true,"isBluetooth":false,"isDisplayAudio":false,"isVirtual":false,)"
            R"("isUnknown":false,"canGetVolume":false,"canSetVolume":false,"stereoMode":false,)"
            R"("handsFreeMode":false,"canMove":false,"canZoom":false,"canAutoFraming":true})");
}

TEST(MeetingRecords, PerformanceTextsComeFromFixedArrays) {
  DevicePerformance performance{};
  performance.memory = 1.5;
  std::strcpy(performance.os, "Tiny");
  EXPECT_EQ(JsonText(performance),
            R"({"memory":1.5,"cpuCores":0,"cpuThreads":0,"cpuFrequency":0.0,"cpuModel":"","gpuModel":"",)"
            R"("os":"Tiny","osVersion":"","deviceModel":""})");
}

TEST(StreamRecords, FrameInfoFlipIsABooleanAndTimesKeep64Bits) {
  const VideoFrameInfo info{1, 2, 3, 1280, 720, 90, std::int64_t{1} << 40, true};
  EXPECT_EQ(JsonText(info), R"({"field_type":1,"format":2,"colorSpace":3,"width":1280,"height":720,"rotation":90,)"
                            R"("renderTimeMs":1099511627776,"flip":true})");
  const SubscribeInfo subscription{true, false, ~std::uint64_t{0}, 1};
  EXPECT_EQ(JsonText(subscription),
            R"({"subscribeVideo":true,"subscribeAudio":false,"videoIndex":18446744073709551615,"layer":1})");
}

TEST(ScreenRecords, CopiesTurnNullStringsIntoEmptyOnes) {
  const WindowInfo window{1, 2, 3, nullptr, "Title", -4, 5, 6, 7, nullptr, nullptr};
  EXPECT_EQ(JsonText(WindowRecord(window)),
            R"({"id":1,"pid":2,"handle":3,"application":"","title":"Title","x":-4,"y":5,"width":6,"height":7,)"
            R"("icon":"","url":""})");
  EXPECT_EQ(JsonText(ThumbnailRecord(Thumbnail{9, nullptr})), R"({"id":9,"val":""})");
}

std::string FailureOf(std::string_view text) {
  try {
    JsonNode root(text);
    IgnoreWindowParam param;
    ReadRecord(root, param);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no failure";
}

TEST(ScreenRecords, AnEmptyIgnoreWindowParamIsOfTheFirstKind) {
  JsonNode root("{}");
  IgnoreWindowParam param;
  ReadRecord(root, param);
  EXPECT_EQ(param.ignoreType, 1);
  EXPECT_TRUE(param.windowTitles.empty());
  EXPECT_TRUE(param.windowHandle.data.empty());
}

TEST(ScreenRecords, AWindowHandleIsAnObjectWithData) {
  JsonNode root(R"({"windowHandle":{"type_field":"Buffer","data":[1,-2]},"windowTitles":["a","b"]})");
  IgnoreWindowParam param;
  ReadRecord(root, param);
  EXPECT_EQ(param.windowHandle.type_field, "Buffer");
  EXPECT_EQ(param.windowHandle.data, (std::vector<std::int32_t>{1, -2}));
  EXPECT_EQ(param.windowTitles, (std::vector<std::string>{"a", "b"}));

  EXPECT_EQ(FailureOf(R"({"windowHandle":5})"), "not object[windowHandle.type_field]");
  EXPECT_EQ(FailureOf(R"({"windowHandle":{"type_field":"Buffer"}})"), "mandatory key not found[windowHandle.data]");
  EXPECT_EQ(FailureOf(R"({"windowHandle":null})"), "no failure");
}

}  // namespace
