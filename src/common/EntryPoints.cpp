// The functions that a host calls. Nothing includes or calls these from inside.
#include <ravo/log_abi.h>
#include <ravo/ravo.h>

#include <array>
#include <exception>
#include <fstream>
#include <string>

#include "common/Platform.h"
#include "log/LogInstance.h"
#include "manager/RavoManager.h"

namespace {

using TESSARIN_COMMON::ServerOption;
using TESSARIN_LOG::Log;
using TESSARIN_LUMARC::RavoManager;

constexpr const char* kVersionFile = "ravoVersion.list";

// What follows the key in the version file of the current directory, a line end included; "null" without one.
std::string RavoVersion() {
  constexpr std::size_t kMaxBytes = 1000;
  constexpr std::string_view kKey = "ravoVersion=";
  std::array<char, kMaxBytes + 1> buffer{};
  std::ifstream(kVersionFile, std::ios::binary).read(buffer.data(), kMaxBytes);
  const std::string text = buffer.data();
  const std::size_t place = text.find(kKey);
  return place == std::string::npos ? "null" : text.substr(place + kKey.size());
}

void LogStart(const std::string& options) {
  Log("======= Ravo Start Running =======");
  Log("Ravo Process Id:{}", TESSARIN_COMMON::CurrentProcessId());
  Log("Ravo version:{}", RavoVersion());
  Log("serverOptions: len:{}", options.size());
}

}  // namespace

extern "C" {

std::int32_t RAVO_CALL init_ravo(const char* options, RavoUninitCallback uninitCallback) {
  if (options == nullptr) return -1;
  std::string text;
  ServerOption option;
  try {
    text = options;
    option = TESSARIN_COMMON::ParseServerOption(text);
  } catch (const std::exception& error) {
    Log("parse serveroption error: {}", error.what());
    return -1;
  }
  if (uninitCallback != nullptr) {
    Log("set cb:{}", reinterpret_cast<const void*>(uninitCallback));
    RavoManager::SetUninitCallback(uninitCallback);
  }
  CreateTessarinLogger(static_cast<std::int32_t>(option.logVersion), option.logPath.c_str(), "TESSARIN_RAVO_COMMON",
                       "Ravo", 0, 7, 1);
  LogStart(text);
  try {
    RavoManager::GetInstance().init(option);
  } catch (const std::exception& error) {
    TESSARIN_LOG::LogAt("Ravo", TESSARIN_LOG::Level::Failure, "the server cannot start: {}", error.what());
    return -1;
  }
  return 0;
}

std::int32_t RAVO_CALL uninit_ravo(void) {
  Log("uninit_ravo");
  RavoManager::CallUninitCallback();
  RavoManager::GetInstance().DestroyServer();
  return 0;
}

bool RAVO_CALL ping_ravo(void) {
  return true;
}

void RAVO_CALL testCallapi(const char* request, std::uint32_t length) {
  static_cast<TESSARIN_COMMON::IIPCDelegate&>(RavoManager::GetInstance()).OnDataReceived(request, length);
}

}  // extern "C"
