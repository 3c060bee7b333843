// Stands in for the library: shows the options that it gets, and serves until it is asked to stop.
#include <ravo/ravo.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>

namespace {

std::promise<void>& Stop() {
  static auto* const stop = new std::promise<void>;
  return *stop;
}

}  // namespace

std::int32_t RAVO_CALL init_ravo(const char* options, RavoUninitCallback callback) {
  std::fprintf(stderr, "options:%s\n", options);
  if (std::strchr(options, '{') == nullptr) return -1;
  Stop().get_future().wait();
  callback();
  std::exit(0);
}

std::int32_t RAVO_CALL uninit_ravo() {
  Stop().set_value();
  return 0;
}
