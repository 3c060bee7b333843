// The text of the start-up options, and the texts that the engine is given for them.
#include <exception>

#include "Fuzzer.h"
#include "common/JsonWriter.h"
#include "manager/EngineOptions.h"
#include "manager/ServerOption.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace TESSARIN_COMMON;
  ServerOption option;
  try {
    option = ParseServerOption(fuzz::Text(data, size));
  } catch (const std::exception&) {
    return 0;
  }
  static_cast<void>(ParseServerOption(JsonText(option)));  // as the client reads them, so that a failure is a fault
  static_cast<void>(TESSARIN_LUMARC::FgParams(option.rtcFgConfig));
  static_cast<void>(TESSARIN_LUMARC::DeviceIdParams(option.deviceId));
  static_cast<void>(TESSARIN_LUMARC::VendorParams(option.vendorTypeConfig));
  return 0;
}
