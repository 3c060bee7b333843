// Frame slots, writer and reader in this process with a mapping each.
#include <fmt/format.h>
#include <ravo/frame_slot.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <thread>

#include "Torture.h"
#include "slots/Shm.h"
#include "slots/StreamDataManager.h"
#include "slots/VideoFrameSlots.h"

namespace torture {
namespace {

using namespace TESSARIN_LUMARC::slots;

constexpr char kSid[] = "user_0";

// A picture of one value, in planes of its own.
struct Picture {
  Picture(std::uint32_t width, std::uint32_t height, std::uint8_t value) {
    meta.width = width;
    meta.height = height;
    meta.stride0 = width;
    meta.stride1 = meta.stride2 = (width + 1) / 2;
    bytes.assign(std::size_t{width + 1} * height, value);
    planes.assign(3, bytes.data());
  }
  Picture(Picture&&) = default;  // the planes stay where they are

  FrameMeta meta;
  std::vector<std::uint8_t> bytes;  // enough for each plane
  std::vector<const std::uint8_t*> planes;
};

void AddStream() {
  StreamInfo stream;
  stream.uid = "user";
  stream.sid = kSid;
  StreamDataManager::GetInstance().UpdateStream(stream);
}

void Send(VideoFrameSlots& slots, const Picture& picture) {
  slots.Tick();
  slots.UpdateSlot(kSid, picture.meta, picture.planes);
}

// One read that stops in the middle of its copy until the writer has gone on, or for a moment only.
class Reader {
 public:
  Reader(const std::string& path, std::uint64_t sizeBytes)
      : sizeBytes_(static_cast<std::size_t>(sizeBytes)),
        view_(path, static_cast<std::uint32_t>(sizeBytes)),
        copy_(sizeBytes_) {
    Require(view_.Create(false) == shoom::Shm::kOk, "the slot can be opened");
  }

  // True if a frame was accepted.
  bool TryRead(const std::atomic<std::uint64_t>& written, bool stall) {
    ravo_frame_header header;
    if (ravo_slot_begin(view_.Data(), sizeBytes_, &header) != RAVO_SLOT_OK) return false;
    const auto bytes = static_cast<std::size_t>(ravo_frame_data_bytes(&header, sizeBytes_));
    const std::uint8_t* data = view_.Data() + RAVO_SLOT_HEADER_BYTES;
    std::memcpy(copy_.data(), data, bytes / 2);
    const auto end = Clock::now() + Milliseconds(2);
    for (const auto seen = written.load(); stall && written == seen && Clock::now() < end;) std::this_thread::yield();
    std::memcpy(copy_.data() + bytes / 2, data + bytes / 2, bytes - bytes / 2);
    if (ravo_slot_unchanged(view_.Data(), &header) == 0) return ++torn_, false;
    const auto value = static_cast<std::uint8_t>(header.counter % 64);
    const bool whole =
        std::all_of(copy_.data(), copy_.data() + bytes, [&](std::uint8_t byte) { return byte == value; });
    Require(whole, fmt::format("no torn frame is accepted: frame {}", header.counter));
    return true;
  }
  [[nodiscard]] std::size_t Torn() const { return torn_; }

 private:
  const std::size_t sizeBytes_;
  shoom::Shm view_;
  std::vector<std::uint8_t> copy_;
  std::size_t torn_ = 0;
};

// A slot as another process sees it, with what lies behind it in its last page.
class Guarded {
 public:
  explicit Guarded(const ShareMemoryInfo& info)
      : sizeBytes_(static_cast<std::size_t>(info.bufferSize)),
        view_(std::make_unique<shoom::Shm>(info.path, static_cast<std::uint32_t>(info.bufferSize))) {
    Require(view_->Create(false) == shoom::Shm::kOk, "an announced slot can be opened");
  }

  [[nodiscard]] bool Intact() const {
    constexpr std::size_t kPageBytes = 4096;
    const std::uint8_t* page = view_->Data();
    const std::size_t end = (sizeBytes_ + kPageBytes - 1) / kPageBytes * kPageBytes;
    return std::all_of(page + sizeBytes_, page + end, [](std::uint8_t byte) { return byte == 0; });
  }
  // Whether nobody but this view has kept the slot.
  [[nodiscard]] bool GoneWith() {
    const std::string path = view_->Path();
    view_.reset();
    return shoom::Shm(path, RAVO_SLOT_HEADER_BYTES).Create(false) != shoom::Shm::kOk;
  }

 private:
  const std::size_t sizeBytes_;
  std::unique_ptr<shoom::Shm> view_;
};

}  // namespace

std::string StallingReader(std::size_t frames) {
  constexpr std::size_t kBurst = 64;
  AddStream();
  VideoFrameSlots slots("torture", [](auto, const auto&) {});
  std::vector<Picture> pictures;  // of the values 0 to 63, by the frame's number
  for (unsigned value = 0; value < 64; ++value) pictures.emplace_back(320, 180, static_cast<std::uint8_t>(value));
  Send(slots, pictures[0]);
  const auto slot = slots.Snapshot().at(kSid).slot;
  std::atomic<std::uint64_t> written{1};
  std::atomic<std::uint64_t> accepted{0};
  std::atomic<bool> stop{false};
  const auto begin = Clock::now();
  std::thread writer([&] {
    while (written < frames && !stop) {
      Send(slots, pictures[written % 64]);
      // Without a pause nothing would ever be accepted.
      if (++written % kBurst == 0) {
        for (const auto seen = accepted.load(); accepted == seen && !stop;) std::this_thread::yield();
      }
    }
    stop = true;
  });
  std::size_t torn = 0;
  std::string broken;
  try {
    Reader reader(slot->Path(), slot->BufferSize());
    for (std::size_t i = 0; !stop; ++i) accepted += reader.TryRead(written, i % 2 == 0) ? 1 : 0;
    torn = reader.Torn();
  } catch (const std::runtime_error& error) {
    broken = error.what();
  }
  stop = true;
  writer.join();
  Require(broken.empty(), broken);
  Require(torn > 0 && accepted > 0, "there was something to catch");
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  return fmt::format("{} accepted and whole, {} torn and thrown away, {:.0f} frames/s", accepted.load(), torn,
                     static_cast<double>(written) / seconds);
}

std::string SizeChanges(std::size_t changes) {
  AddStream();
  std::vector<std::pair<std::int64_t, ShareMemoryInfo>> announced;
  VideoFrameSlots slots("torture", [&](std::int64_t op, const auto& records) {
    for (const auto& record : records) announced.emplace_back(op, record);
  });
  std::mt19937 random(1);
  const auto upTo = [&](unsigned limit) { return static_cast<unsigned>(1 + random() % limit); };
  std::unique_ptr<Guarded> slot;
  std::size_t made = 0, gone = 0, frames = 0;
  for (std::size_t change = 0; change < changes; ++change) {
    const Picture picture(upTo(640), upTo(360), 0xff);
    // The client answers after a few frames, and sees the next slot in the one after its answer.
    for (auto left = upTo(4); left > 0; --left, ++frames) Send(slots, picture);
    bool remove = false;
    for (const auto& [op, record] : std::exchange(announced, {})) {
      remove = op == kShareMemoryRemove;
      if (op != kShareMemoryAdd) continue;
      slot = std::make_unique<Guarded>(record);
      ++made;
    }
    Require(slot == nullptr || slot->Intact(), fmt::format("nothing is written past a slot: change {}", change));
    if (!remove) continue;
    ShareMemoryInfo ended;
    ended.sid = kSid;
    slots.DestroySlot(ended);
    Require(slot->GoneWith(), "an acknowledged slot is gone");
    slot.reset();
    ++gone;
  }
  slots.DestroyAllSlots();
  if (slot != nullptr) gone += slot->GoneWith() ? 1 : 0;
  Require(made == gone && made > changes / 3, "every slot is made, acknowledged and gone");
  return fmt::format("{} frames, {} slots made and gone, none written past", frames, made);
}

}  // namespace torture
