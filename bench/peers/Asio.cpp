#include "Asio.h"

#include <asio.hpp>

namespace bench {

namespace {

// A context and its thread, for the life of the process.
asio::io_context& Context() {
  static auto* const context = [] {
    auto* const made = new asio::io_context(1);
    std::thread([made] {
      const auto work = asio::make_work_guard(*made);
      made->run();
    }).detach();
    return made;
  }();
  return *context;
}

}  // namespace

double AsioThroughput(int producers) {
  asio::io_context& context = Context();
  return Throughput(producers, [&](auto task) { asio::post(context, task); });
}

}  // namespace bench
