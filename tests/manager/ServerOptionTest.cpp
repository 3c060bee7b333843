#include "manager/ServerOption.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "common/JsonNode.h"
#include "common/JsonWriter.h"

using namespace TESSARIN_COMMON;

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

TEST(ServerOption, WhatIsWrittenReadsBackTheSame) {
  const char* text =
      R"({"serverName":"s","subscribeMaxNumber":3,"enableLib":2,"videoProfiles":[{"width":1280,"height":720}],)"
      R"("proxyConfigs":[{"proxyType":1,"proxyIp":"10.0.0.1","proxyPort":8080}],"deviceNameBlackList":["a","b"],)"
      R"("ignoreDefaultDeviceIds":[],"monitorExtendConfig":{"in_meeting_snap_duration":5},"logVersion":7})";
  const std::string once = JsonText(ParseServerOption(text));
  EXPECT_EQ(JsonText(ParseServerOption(once)), once);
  const ServerOption option = ParseServerOption(once);
  EXPECT_TRUE(option.enableLib);
  EXPECT_EQ(option.videoProfiles.at(0).width, 1280);
  EXPECT_TRUE(option.ignoreDefaultDeviceIds.empty());
  EXPECT_EQ(option.monitorExtendConfig.in_meeting_snap_duration, 5);
  EXPECT_EQ(option.monitorExtendConfig.not_meeting_log_duration, 1800000);
}

TEST(ServerOption, EnumerationsAreHeldInSixtyFourBitsAndWrittenInThirtyTwo) {
  const char* text =
      R"({"logVersion":4294967303,"resourceEnv":4294967298,"audioProfile":4294967297,"sleepTime":4294967297,)"
      R"("screenProfile":{"scaleMode":4294967301,"width":4294967301},)"
      R"("proxyConfigs":[{"proxyType":4294967302}],"vendorTypeConfig":{"vendorType":4294967299}})";
  const std::string written = JsonText(ParseServerOption(text));
  for (const char* part :
       {R"("logVersion":7,)", R"("resourceEnv":2,)", R"("audioProfile":1,)", R"("sleepTime":4294967297,)",
        R"("scaleMode":5,)", R"("width":4294967301,)", R"("proxyType":6,)", R"("vendorType":3,)"}) {
    EXPECT_NE(written.find(part), std::string::npos) << part;
  }
}

TEST(ServerOption, FailuresNameTheKey) {
  const struct {
    const char* text;
    const char* failure;
  } cases[] = {
      {"[]", "IsObject()[serverName]"},
      {R"({"subscribeMaxNumber":10.0})", "type unmatch[subscribeMaxNumber]"},
      {R"({"subscribeMaxNumber":"10"})", "type unmatch[subscribeMaxNumber]"},
      {R"({"mainProcessPid":4294967296})", "type unmatch[mainProcessPid]"},
      {R"({"enableLib":"true"})", "wish bool, but not bool or int[enableLib]"},
      {R"({"proxyConfigs":[{},{"proxyPort":"80"}]})", "type unmatch[proxyConfigs.[1].proxyPort]"},
      {R"({"vendorTypeConfig":7})", "IsObject()[vendorTypeConfig.vendorType]"},
      {"{", "Parse json string fail. err=Missing a name for object member.. offset="},
  };
  for (const auto& c : cases) {
    try {
      (void)ParseServerOption(c.text);
      ADD_FAILURE() << c.text;
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), c.failure);
    }
  }
}

TEST(ServerOption, AListGivenAsANumberIsEmptyAndNoFailure) {
  EXPECT_TRUE(ParseServerOption(R"({"videoProfiles":5,"ignoreDefaultDeviceIds":5})").ignoreDefaultDeviceIds.empty());
}

}  // namespace
