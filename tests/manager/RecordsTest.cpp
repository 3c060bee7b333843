// What no request and no event shows of records.
#include <gmock/gmock.h>

#include <cstring>
#include <stdexcept>

#include "common/JsonWriter.h"
#include "manager/records/DeviceRecords.h"
#include "manager/records/ScreenRecords.h"

using namespace TESSARIN_LUMARC;
using TESSARIN_COMMON::JsonText;

namespace {

TEST(Records, ADevicesFlagIsAnyByteButZeroAndItsReservedBytesStayOut) {
  DeviceInfo device{};
  std::memcpy(device.deviceId, "id\0rest", 8);
  std::memset(device.reserved1, 0xFF, sizeof(device.reserved1));
  device.canAutoFraming = 2;
  const std::string text = JsonText(device);
  EXPECT_TRUE(text.starts_with(R"({"deviceName":"","deviceId":"id","containerId":"",)")) << text;
  EXPECT_TRUE(text.ends_with(R"("canZoom":false,"canAutoFraming":true})")) << text;
}

TEST(Records, AThumbnailWithoutATextIsEmpty) {
  EXPECT_EQ(JsonText(ThumbnailRecord(Thumbnail{5, nullptr})), R"({"id":5,"val":""})");
}

TEST(Records, AWindowHandleMayBeMissingButNotItsData) {
  const auto read = [](std::string_view text) {
    TESSARIN_COMMON::JsonNode root(text);
    IgnoreWindowParam param;
    ReadRecord(root, param);
  };
  EXPECT_NO_THROW(read(R"({"windowHandle":null})"));
  EXPECT_THAT([&] { read(R"({"windowHandle":5})"); },
              testing::ThrowsMessage<std::runtime_error>("not object[windowHandle.type_field]"));
  EXPECT_THAT([&] { read(R"({"windowHandle":{"type_field":"Buffer"}})"); },
              testing::ThrowsMessage<std::runtime_error>("mandatory key not found[windowHandle.data]"));
}

}  // namespace
