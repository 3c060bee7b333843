#pragma once

#include <cstdint>
#include <string>

#include "common/JsonDocument.h"

namespace sim {

// A callback to be fired with given values, once or often, from one thread or from several at once.
struct Volley {
  std::string entry;
  std::string arguments;  // a JSON array
  std::int64_t threads = 1;
  std::int64_t times = 1;  // on each thread

  // {"entry": "OnUserJoin", "args": ["ann", 0], "threads": 1, "times": 1}, the last two optional. A std::runtime_error
  // if it does not fit.
  [[nodiscard]] static Volley FromJson(const TESSARIN_COMMON::JsonValue& json);

  // One thread is the caller's own; several are made, and are waited for. The result is the number of callbacks made;
  // what keeps one from being made is told on standard error.
  std::int64_t Fire() const;

 private:
  bool FireOnce() const;
  [[nodiscard]] std::int64_t FireInTurn() const;
};

}  // namespace sim
