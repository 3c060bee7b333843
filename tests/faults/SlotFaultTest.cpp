// Frames into a slot, with every call of the system and every piece of memory failing once.
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

// Three frames of one stream, of which at most the first is lost; the slot goes at the end.
std::string ThreeFrames() {
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
  if (std::filesystem::exists("/dev/shm/" + path)) return "segment left";
  std::string outcome = announced == 1 ? "done" : "announced " + std::to_string(announced);
  if (lost > 0) outcome += ", out of memory";
  return outcome + Failures(log);
}

constexpr const char* kNoSegment = ", create share memory failed! ret: ";

using SlotFault = faults::FaultTest;

TEST_P(SlotFault, CostsAFrameAtMostAndIsReported) {
  faults::ExpectOutcomes(GetParam(), ThreeFrames);
}

INSTANTIATE_TEST_SUITE_P(
    All, SlotFault,
    testing::Values(
        Case{"shm_open", {std::string("done") + kNoSegment + "100, error message: Too many open files in system"}},
        Case{"posix_fallocate", {std::string("done") + kNoSegment + "100, error message: No space left on device"}},
        Case{"mmap", {std::string("done") + kNoSegment + "110, error message: Cannot allocate memory"}},
        Case{"sem_open", {"done, SetEvent failed!"}}, Case{"sem_post", {"done, SetEvent failed!"}},
        Case{"flock", {"done"}}, Case{"open", {"done"}}, Case{"fstat", {"done"}},
        Case{"sem_getvalue", {"done, SetEvent failed!"}},
        Case{faults::kMemory,
             {"done", "done, out of memory", "done, SetEvent failed!", "no memory",
              std::string("done") + kNoSegment + "100, error message: Cannot allocate memory"}}),
    faults::NameOf);

}  // namespace
