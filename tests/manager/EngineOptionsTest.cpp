#include "manager/EngineOptions.h"

#include <gtest/gtest.h>

using namespace TESSARIN_LUMARC;

namespace {

TEST(EngineOptions, TheVendorTextIsExact) {
  const std::string text =
      "\n              {\n                \"rtc.channel_profile\":16,\n                \"rtc.env\" : 2,\n"
      "                \"rtc.is_oversea\":\n                {\n                  \"isMediaOversea\":true,\n"
      "                  \"isDataOversea\":false\n                }\n              }\n            ";
  TESSARIN_COMMON::VendorTypeConfig vendor;
  vendor.isMediaOversea = true;
  for (const std::int64_t type : {0, 1, 2, 4, -1}) {
    vendor.vendorType = type;
    EXPECT_EQ(VendorParams(vendor), text) << type;
  }
  vendor.vendorType = 3;
  EXPECT_NE(VendorParams(vendor).find("\"rtc.env\" : 0,"), std::string::npos);
}

TEST(EngineOptions, FgMembersWithAKnownPrefixAreListedInTheirOrder) {
  const struct {
    const char* config;
    const char* params;
  } cases[] = {
      {"", ""},
      {"{}", R"({"rtc.fg_config":""})"},
      {"no json", R"({"rtc.fg_config":""})"},
      {R"({"room.fg.rtc.a":1,"share.fg.rtc.b":true,"other.c":5})", R"({"rtc.fg_config":"a=1,b=true"})"},
      {R"({"tessarin.callmeeting.client.rtc.  x":"v","room.fg.rtc.y":1.5})", R"({"rtc.fg_config":"x=v,y=1"})"},
      {R"({"room.fg.rtc.list":[1],"room.fg.rtc.null":null,"room.fg.rtc.off":false})",
       R"({"rtc.fg_config":"off=false"})"},
  };
  for (const auto& c : cases) EXPECT_EQ(FgParams(c.config), c.params) << c.config;
}

TEST(EngineOptions, TheDeviceIdGoesInAsItIsAndALongOneIsCut) {
  EXPECT_EQ(DeviceIdParams("\"d1\""), R"({"rtc.device_id":"d1"})");
  EXPECT_EQ(DeviceIdParams(std::string(5000, 'x')).size(), 1023u);
}

}  // namespace
