// A server of slots for the tests of what processes leave behind. It prints the path of its first slot and then ends in
// the way that its argument names: "hold" (when it is killed) or "exit" (at once, with another thread making slots and
// writing frames all the while).
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "../SlotFixture.h"

namespace {

using namespace slots_test;

VideoFrameSlots& Slots() {
  static auto* const slots = new VideoFrameSlots("slot process", [](auto, const auto&) {});
  return *slots;
}

const TestFrame& Picture() {
  static auto* const frame = new TestFrame(640, 360, 1);
  return *frame;
}

void WriteForEver(std::atomic<int>& rounds) {
  while (true) {
    Slots().Tick();
    Slots().UpdateSlot("a", Picture().meta, Picture().planes);
    Slots().UpdateSlot("b", Picture().meta, Picture().planes);
    if (++rounds % 4 == 0) Slots().DestroySlot(RecordOf("b"));
  }
}

}  // namespace

int main(int, char** arguments) {
  AddStream("ann", "a");
  AddStream("bob", "b");
  Slots().UpdateSlot("a", Picture().meta, Picture().planes);
  std::puts(Slots().Snapshot().at("a").slot->Path().c_str());
  std::fflush(stdout);
  if (arguments[1] == std::string("hold")) pause();
  static auto* const rounds = new std::atomic<int>(0);
  std::thread([] { WriteForEver(*rounds); }).detach();
  while (*rounds < 50) std::this_thread::yield();
  std::exit(0);
}
