#pragma once

#include <string>
#include <vector>

#include "ServerOption.h"

// The way of the options into the engine.
namespace TESSARIN_LUMARC {

// Tells the engine all options, in the order that it relies on. The init task, before VemoraInit.
void setServerOption(const TESSARIN_COMMON::ServerOption& option);

// The setters that a running server uses again.
void SetVideoProfiles(const std::vector<TESSARIN_COMMON::VideoProfile>& profiles);
void SetProxyConfigs(const std::vector<TESSARIN_COMMON::ProxyConfig>& proxies);

// The parameter texts that are composed here.
[[nodiscard]] std::string VendorParams(const TESSARIN_COMMON::VendorTypeConfig& vendor);
// From the text of a JSON object: its members under the known prefixes as "name=value,...". Empty for an empty text.
[[nodiscard]] std::string FgParams(const std::string& rtcFgConfig);
// The id goes in without quotes: it arrives as a JSON value.
[[nodiscard]] std::string DeviceIdParams(const std::string& deviceId);

}  // namespace TESSARIN_LUMARC
