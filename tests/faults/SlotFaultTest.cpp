// Frames into a slot, with every call of the system and every piece of memory failing once.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "../slots/SlotFixture.h"
#include "FaultTest.h"
#include "slots/ShoomSlot.h"
#include "support/LogCapture.h"

namespace {

using faults::Case;
using slots_test::TestFrame;
using slots_test::VideoFrameSlots;

// The failures that the log tells of, each by its last words.
std::string Failures(const support::LogCapture& log) {
  std::string text;
  for (const auto& line : log.Lines()) {
    if (line.level > 4) text += ", " + line.text.substr(line.text.find("Update ") + 7);
  }
  return text;
}

// Whether segments, events or the mark of an owner are in the system.
bool HasNames(const std::string& owner) {
  const std::filesystem::directory_iterator names("/dev/shm");
  return std::any_of(begin(names), end(names), [&](const auto& name) {
    return name.path().filename().string().find(owner) != std::string::npos;
  });
}

// Of this process, which is a scenario's own.
std::string& Owner() {
  static auto* const owner = new std::string("none");
  return *owner;
}

// What the slots leave is removed at the end, so this is to run behind it.
void TellOfNames() {
  if (HasNames(Owner())) faults::Tell(", names left at the end");
}

// Three frames of one stream, of which at most one is lost. The client takes the slot back after the first, so that the
// second makes another; that one goes with all slots.
std::string ThreeFrames() {
  std::atexit(TellOfNames);
  slots_test::AddStream("ann", "a");
  const support::LogCapture log;
  int announced = 0;
  int lost = 0;
  std::string path;
  {
    VideoFrameSlots slots("faults", [&](auto, const auto&) { ++announced; });
    for (std::uint8_t value = 1; value <= 3; ++value) {
      const TestFrame frame(64, 36, value);
      slots.Tick();
      try {
        slots.UpdateSlot("a", frame.meta, frame.planes);
        if (value == 1) slots.DestroySlot(slots_test::RecordOf("a"));
      } catch (const std::bad_alloc&) {
        ++lost;
      }
    }
    faults::Disarm();
    const auto all = slots.Snapshot();
    if (!all.contains("a")) return "no slot";
    path = all.at("a").slot->Path();
    shoom::Shm view(path, sizeof(ravo_frame_header) + 1);
    if (view.Create(false) != 0 || view.Data()[sizeof(ravo_frame_header)] != 3) return "wrong frame";
  }
  Owner() = path.substr(path.find('_') + 1, path.rfind('_') - path.find('_') - 1);
  std::string outcome = announced == 2 ? "done" : "announced " + std::to_string(announced);
  if (HasNames('_' + Owner() + '_')) outcome += ", names left";
  if (lost > 0) outcome += ", out of memory";
  return outcome + Failures(log);
}

// The first slot has no segment, or the second.
std::vector<std::string> NoSegment(const std::string& failure) {
  const std::string line = ", create share memory failed! ret: " + failure;
  return {"announced 1" + line, "done" + line};
}

// A slot that is made while another lives: whatever it finds, the other one's names are not a dead owner's.
std::string TwoSlots() {
  slots_test::AddStream("ann", "a");
  slots_test::AddStream("bob", "b");
  VideoFrameSlots slots("faults", [](auto, const auto&) {});
  const TestFrame frame(64, 36, 1);
  for (const char* sid : {"a", "b"}) slots.UpdateSlot(sid, frame.meta, frame.planes);
  faults::Disarm();
  const auto all = slots.Snapshot();
  if (all.size() != 2) return "no slot";
  for (const auto& [sid, entry] : all) {
    if (shoom::Shm(entry.slot->Path(), 1).Create(false) != 0) return sid + " is gone";
  }
  return "done";
}

using SlotFault = faults::FaultTest;

TEST(OwnerFault, LeavesLivingSlotsAlone) {
  for (const char* call : {"flock", "open", "fstat"}) faults::ExpectOutcomes({call, {"done"}}, TwoSlots);
}

TEST_P(SlotFault, CostsAFrameAtMostAndIsReported) {
  faults::ExpectOutcomes(GetParam(), ThreeFrames);
}

INSTANTIATE_TEST_SUITE_P(
    All, SlotFault,
    testing::Values(Case{"shm_open", NoSegment("100, error message: Too many open files in system")},
                    Case{"posix_fallocate", NoSegment("100, error message: No space left on device")},
                    Case{"mmap", NoSegment("110, error message: Cannot allocate memory")},
                    Case{"sem_open", {"done, SetEvent failed!"}}, Case{"sem_post", {"done, SetEvent failed!"}},
                    Case{"flock", {"done"}}, Case{"open", {"done"}}, Case{"fstat", {"done"}},
                    Case{"sem_getvalue", {"done, SetEvent failed!"}}, Case{"close", {"done"}}, Case{"munmap", {"done"}},
                    Case{"sem_close", {"done"}}, Case{"sem_unlink", {"done, names left"}},
                    Case{"shm_unlink", {"done, names left"}},
                    Case{faults::kMemory,
                         {"done", "done, out of memory", "announced 1, out of memory", "done, SetEvent failed!",
                          "no memory", NoSegment("100, error message: Cannot allocate memory")[0],
                          NoSegment("100, error message: Cannot allocate memory")[1]}}),
    faults::NameOf);

}  // namespace
