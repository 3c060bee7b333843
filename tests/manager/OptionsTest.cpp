#include "manager/ServerOption.h"

#include <gmock/gmock.h>

#include "common/JsonWriter.h"
#include "manager/EngineOptions.h"

using namespace TESSARIN_COMMON;
using namespace TESSARIN_LUMARC;
using testing::AllOf;
using testing::HasSubstr;

namespace {

// Every key with its default, in the order of the wire.
constexpr const char* kDefaults =
    R"({"serverName":"TessarinVemora","ipcPath":"","appId":"","mainProcessPid":0,"projectKey":"","hostName":"",)"
    R"("userId":"","deviceId":"","activeSpeakerConfig":{"tickTime":0.0,"sampleInterval":0.0,"maxRecordTime":0.0,)"
    R"("minSpeakerVolume":0.0,"timeBase":0.0,"rankBase":0.0},"subscribeMaxNumber":10,"subscribeDebounceTime":300,)"
    R"("beautyEffectParam":{"enable":false,"smooth":0.0,"white":0.0,"sharp":0.0},"serverTitle":"",)"
    R"("enableAutoSubscribe":false,"logName":"Vemora","logPath":"","logVersion":0,"RTCLogPath":"",)"
    R"("isRelease":false,"enableLib":false,"enableDebug":false,"enableRTCLog":false,"enableTessarinDevice":true,)"
    R"("enableDeviceRemember":false,"enableInitDevice":true,"enableHotSwapDeviceAutoChange":true,)"
    R"("enableDelayDeviceAddedAndRemoved":false,"enableKeyboardCancellation":false,"enableBackgroundBlur":false,)"
    R"("deviceManagerConfig":{"enableHID":false,"enableCaptureCard":false},)"
    R"("openGLLibraryPath":{"glv1":"","glesv2":""},"qzNetConfig":{"qncConfigPath":"","qznetLibPath":""},)"
    R"("resourcePath":"","resourceEnv":1,"effectDownloadConfig":{"accessKey":"","host":"","platform":"",)"
    R"("deviceType":"","channel":"","deviceId":""},"enableRNNoise":true,"enableFaceBeauty":false,)"
    R"("videoProfiles":[],"screenProfile":{"width":0,"height":0,"maxKbps":0,"frameRate":0,"scaleMode":0,)"
    R"("codecMode":0},"audioProfile":0,"appVersion":"","pcSdkVersion":"","rtcSdkVersion":"","vemoraVersion":"",)"
    R"("deviceNameBlackList":[],"memDeviceNameBlackList":[],"ignoreDefaultDeviceIds":["TessarinAudioDevice_UID"],)"
    R"("excludeDeviceType":0,"leaveMeetingConfig":{"autoDestroyRTCEngine":false,"autoMuteLocalVideo":false,)"
    R"("destroyTimeoutDuration":0},"sentryDSN":"","sleepTime":0,"addonLoader":{"remoteWindowManager":"",)"
    R"("echoTest":"","audioCapture":"","uvc":""},"backgroundImage":"","dynamicLayoutType":0,)"
    R"("enableVideoEnhance":false,"enableSameAsSystem":false,"deviceSameAsSystemConfig":)"
    R"=({"sameAsSystemDeviceId":"SAME_AS_SYSTEM_ID","sameAsSystemDeviceName":"SAME_AS_SYSTEM({{deviceId}})",)="
    R"("sameAsSystemFallbackDeviceName":"SAME_AS_SYSTEM"},"defaultEnableLocalVideo":true,"enableAutoMonitor":true,)"
    R"("monitorExtendConfig":{"in_meeting_snap_duration":60000,"in_meeting_log_duration":300000,)"
    R"("not_meeting_snap_duration":300000,"not_meeting_log_duration":1800000,)"
    R"("not_meeting_report_duration":3600000,"enable_not_meeting_monitor":false},"enableNativeUI":false,)"
    R"("manuallyDylibPath":"","isNativeDovra":false,"rtcFgConfig":"","effectProductLine":0,)"
    R"("enableAutoPublish":true,"productLine":"","enableRestartDaemon":false,"enableRouteStdoutToLog":false,)"
    R"("enableRouteStderrToLog":false,"isOverseaDovraPkg":false,"enableRavoModuleParallelLoad":false,)"
    R"("enableShareEffectContext":false,"controlBarSimplifyEnable":false,"proxyConfigs":[],)"
    R"("vendorTypeConfig":{"vendorType":0,"isMediaOversea":false,"isDataOversea":false,"serviceType":""},)"
    R"("enableShareMemorySlots":true,"enableVideoCallback":false,"enableNV12":false,)"
    R"("enableCvPixelBufferNV12":false,"enableCommonVideo":false,"advancedAudioWhiteList":"",)"
    R"("enableVideoSink":false,"rtcParams":"","enableRtcDeviceManage":false,"sentryOption":{"productName":""}})";

TEST(ServerOption, AnEmptyTextGivesEveryKeyItsDefault) {
  EXPECT_EQ(JsonText(ParseServerOption("{}")), kDefaults);
}

TEST(ServerOption, EnumerationsAreHeldInSixtyFourBitsAndWrittenInThirtyTwo) {
  const char* text =
      R"({"logVersion":4294967303,"resourceEnv":4294967298,"audioProfile":4294967297,"sleepTime":4294967297,)"
      R"("screenProfile":{"scaleMode":4294967301,"width":4294967301},)"
      R"("proxyConfigs":[{"proxyType":4294967302}],"vendorTypeConfig":{"vendorType":4294967299}})";
  EXPECT_THAT(
      JsonText(ParseServerOption(text)),
      AllOf(HasSubstr(R"("logVersion":7,)"), HasSubstr(R"("resourceEnv":2,)"), HasSubstr(R"("audioProfile":1,)"),
            HasSubstr(R"("sleepTime":4294967297,)"), HasSubstr(R"("scaleMode":5,)"),
            HasSubstr(R"("width":4294967301,)"), HasSubstr(R"("proxyType":6,)"), HasSubstr(R"("vendorType":3,)")));
}

// The whole text is in the test of the server's start.
TEST(EngineOptions, TheVendorsEnvironmentIsTwoButForTheThird) {
  VendorTypeConfig vendor;
  for (const std::int64_t type : {0, 2, 3, 4, -1}) {
    vendor.vendorType = type;
    EXPECT_THAT(VendorParams(vendor), HasSubstr(type == 3 ? R"("rtc.env" : 0,)" : R"("rtc.env" : 2,)"));
  }
}

TEST(EngineOptions, FgMembersWithAKnownPrefixAreListedInTheirOrder) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"{}", R"({"rtc.fg_config":""})"},
      {"no json", R"({"rtc.fg_config":""})"},
      {R"({"room.fg.rtc.a":1,"share.fg.rtc.b":true,"other.c":5})", R"({"rtc.fg_config":"a=1,b=true"})"},
      {R"({"tessarin.callmeeting.client.rtc.  x":"v","room.fg.rtc.y":1.5})", R"({"rtc.fg_config":"x=v,y=1"})"},
      {R"({"room.fg.rtc.list":[1],"room.fg.rtc.null":null,"room.fg.rtc.off":false})",
       R"({"rtc.fg_config":"off=false"})"},
  };
  for (const auto& [config, params] : cases) EXPECT_EQ(FgParams(config), params) << config;
}

// A short one is in the test of the server's start.
TEST(EngineOptions, ALongDeviceIdIsCut) {
  EXPECT_EQ(DeviceIdParams(std::string(5000, 'x')).size(), 1023u);
}

}  // namespace
