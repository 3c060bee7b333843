// From the engine's callback into the slot, against three plain copies of the same planes into the same kind of memory.
#include <deque>
#include <optional>
#include <string>

#include "LocalServer.h"
#include "Server.h"
#include "SharedMemory.h"
#include "Subjects.h"
#include "Table.h"

namespace bench {

namespace {

std::optional<Limit> LimitIf(bool isLimited, Limit limit) {
  return isLimited ? std::optional(limit) : std::nullopt;
}

}  // namespace

void FrameSubject(const std::string& out) {
  constexpr int kRounds = 1500;
  const TempFolder folder;
  LocalServer server(folder.Path("pipe"), ProgramFolder());
  Table table("frame", "from the engine's callback into the slot; plain copies of the planes", "us");
  for (const PictureSize& size : kPictureSizes) {
    const Picture picture(size.width, size.height);
    std::deque<SharedMemory> targets;
    for (std::size_t i = 0; i < kTargets; ++i) targets.emplace_back(kHeaderBytes + picture.SizeBytes());
    const auto copy = [&](std::size_t target) { picture.CopyTo(targets[target].Bytes() + kHeaderBytes); };
    const auto sides = server.FrameSides(size.name, picture, "three memcpy", copy);
    table.Compare(size.name, sides, {{}, LimitIf(size.height >= 720, AtMost(1.05))}, kRounds);

    const std::string stream = size.name + std::string("0");
    const auto second = [&](Samples& us) {
      server.Tick();
      server.Deliver(stream, picture);
      us.push_back(NanosecondsOf([&] { server.Deliver(stream, picture); }) / 1000);
    };
    Row& row = table.Add(size.name, "ravo, 2nd of a tick", Interleave({{"", second}}, kRounds / 10)[0]);
    row.limit = LimitIf(size.height <= 1080, AtMost(1));  // the copies of larger ones leave nothing in the caches
  }
  table.Finish(out);
}

}  // namespace bench
