#pragma once

#include <spdlog/fmt/fmt.h>

#include <string_view>

namespace logger {

// The text as one line of a log: control characters but the tab become \n, \r or \xNN, so that what somebody sends
// cannot pass for a line of its own nor steer a terminal. Gives `text` back untouched where it holds none; `buffer`
// keeps the rewritten one.
std::string_view OneLine(std::string_view text, fmt::memory_buffer& buffer);

}  // namespace logger
