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

// None of it ever ends: a thread uses it up to the last moment.
auto& slots = *new VideoFrameSlots("slot process", [](auto, const auto&) {});
const auto& picture = *new TestFrame(640, 360, 1);
std::atomic<int> rounds{0};

void WriteForEver() {
  while (true) {
    slots.Tick();
    for (const char* sid : {"a", "b"}) slots.UpdateSlot(sid, picture.meta, picture.planes);
    if (++rounds % 4 == 0) slots.DestroySlot(RecordOf("b"));
  }
}

}  // namespace

int main(int, char** arguments) {
  AddStream("ann", "a");
  AddStream("bob", "b");
  slots.UpdateSlot("a", picture.meta, picture.planes);
  std::puts(slots.Snapshot().at("a").slot->Path().c_str());
  std::fflush(stdout);
  if (arguments[1] == std::string("hold")) pause();
  std::thread(WriteForEver).detach();
  while (rounds < 50) std::this_thread::yield();
  std::exit(0);
}
