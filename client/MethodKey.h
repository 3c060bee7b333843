#pragma once

#include <string>
#include <string_view>

namespace ravo::client {

// The key of a method on the wire, where the server expects snake case: "GetInitInfo" gives "get_init_info". A name
// that begins with a small letter is taken as a key already.
[[nodiscard]] std::string MethodKey(std::string_view method);

}  // namespace ravo::client
