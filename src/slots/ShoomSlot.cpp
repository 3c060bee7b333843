#include "ShoomSlot.h"

#include <ravo/frame_slot.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include "PlaneCopy.h"
#include "SlotOwner.h"
#include "StreamDataManager.h"
#include "common/Fnv1a.h"
#include "common/Platform.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC::slots {
namespace {

using TESSARIN_LOG::IntervalGate;
using TESSARIN_LOG::Level;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::LogAt;

constexpr std::int64_t kThrottleMs = 5000;
constexpr std::size_t kHashDigits = 10;
constexpr std::uint64_t kMaxSegmentBytes = std::numeric_limits<std::uint32_t>::max();

std::string HashText(std::string_view text) {
  return std::to_string(TESSARIN_COMMON::Fnv1a(text)).substr(0, kHashDigits);
}

std::string OwnerOf(std::string_view serverName) {
  return HashText(std::string(serverName) + std::to_string(TESSARIN_COMMON::CurrentProcessId()));
}

std::uint64_t NextSlotNumber() {
  static std::atomic<std::uint64_t> counter{0};
  return ++counter;
}

// Where a format has a plane, its bytes; the layout of format 3 reserves what format 2 does.
std::uint64_t PlaneSize(const FrameMeta& meta, unsigned plane) {
  ravo_frame_header header{};
  header.height = meta.height;
  header.stride0 = meta.stride0;
  header.stride1 = meta.stride1;
  header.stride2 = meta.stride2;
  header.format = meta.format;
  return ravo_frame_plane_bytes(&header, plane);
}

void WarnOfMissingPlane(unsigned plane) {
  static IntervalGate gate(kThrottleMs);
  if (gate.IsTime()) LogAt("Ravo", Level::Unexpected, "[STREAM_FRAME] ShoomSlot::Update plane {} is missing", plane);
}

// A missing plane leaves the bytes in its place as they are, so that the others keep theirs.
void CopyPlanes(std::uint8_t* destination, const FrameMeta& meta, Planes planes) {
  for (unsigned plane = 0; plane < 3; ++plane) {
    const auto bytes = static_cast<std::size_t>(PlaneSize(meta, plane));
    if (bytes == 0) continue;
    if (plane < planes.size() && planes[plane] != nullptr) {
      CopyPlane(destination, planes[plane], bytes);
    } else {
      WarnOfMissingPlane(plane);
    }
    destination += bytes;
  }
}

void LogCreateFailure(int code, const std::string& systemText) {
  static IntervalGate gate(kThrottleMs);
  if (!gate.IsTime()) return;
  LogAt("Ravo", Level::Failure,
        "[STREAM_FRAME] ShoomSlot::Update create share memory failed! ret: {}, error message: {}", code, systemText);
}

// A plain store that no earlier one sinks below. Readers rely on this, and on x86 keeping stores in order.
void Put(std::uint32_t& word, std::uint32_t value) {
  std::atomic_ref(word).store(value, std::memory_order_release);
}

}  // namespace

std::uint64_t FrameSize(const FrameMeta& meta) {
  FrameMeta reserved = meta;
  if (meta.format == RAVO_FRAME_NO_PIXELS) reserved.format = RAVO_FRAME_NV12;
  constexpr std::uint64_t kCap = std::uint64_t{1} << 40;  // the sum of three cannot overflow
  std::uint64_t size = RAVO_SLOT_HEADER_BYTES;
  for (unsigned plane = 0; plane < 3; ++plane) size += std::min(PlaneSize(reserved, plane), kCap);
  return size;
}

SlotName::SlotName(std::string_view sid, std::string_view serverName)
    : owner(OwnerOf(serverName)), path(HashText(sid) + '_' + owner + '_' + std::to_string(NextSlotNumber())) {
  ClaimOwner(owner);  // before anything has this name
}

ShoomSlot::ShoomSlot(std::string_view sid, std::string_view serverName, std::uint64_t firstFrameBytes,
                     std::uint64_t bufferNumber, const TESSARIN_COMMON::Clock& clock)
    : name_(sid, serverName),
      mainEvent_(RAVO_SLOT_EVENT_PREFIX + name_.path + RAVO_SLOT_MAIN_SUFFIX),
      sideEvent_(RAVO_SLOT_EVENT_PREFIX + name_.path + RAVO_SLOT_SIDE_SUFFIX),
      minBufSize_(firstFrameBytes),
      bufferNumber_(bufferNumber),
      writeLine_(kThrottleMs, clock) {}

ShoomSlot::Result ShoomSlot::Update(const std::string& sid, const FrameMeta& meta, Planes planes,
                                    std::optional<ShareMemoryInfo>& removal) {
  const std::uint64_t incoming = FrameSize(meta);
  if (incoming > bufSize_) {
    const std::uint64_t wanted = std::max(incoming, minBufSize_);
    Log("[STREAM_FRAME] ShoomSlot::Update ReallocateMemory - sid: {}, cur buf size: {}, incoming buf size: {}, "
        "shouldAllocatedSizeForOneSlot: {} totalAllocatedSize: {}, bufferNumber: {}",
        sid, bufSize_, incoming, wanted, wanted * bufferNumber_, bufferNumber_);
    if (bufSize_ != 0) return Outgrown(sid, meta, removal);
    if (!MakeSegment(wanted)) return Result::NoSegment;
  }
  WriteBuffer(shm_->Data() + writeIndex_ * bufSize_, meta, planes);
  writeIndex_ = (writeIndex_ + 1) % bufferNumber_;
  SetEvents();
  ++frameCount_;
  if (writeLine_.IsTime()) {
    Log("[STREAM_FRAME] ShoomSlot::Update WriteVideoFrame to share memory framecount:{} sid:{}", frameCount_, sid);
  }
  written_ = true;
  return Result::Written;
}

bool ShoomSlot::MakeSegment(std::uint64_t bufferBytes) {
  const std::uint64_t total = bufferBytes * bufferNumber_;
  if (total > kMaxSegmentBytes) {  // a description gone wrong; no system call takes such a size
    LogCreateFailure(shoom::Shm::kMappingFailed, "the size exceeds 32 bits");
    return false;
  }
  shm_ = std::make_unique<shoom::Shm>(name_.path, static_cast<std::uint32_t>(total));
  const int code = shm_->Create(true);
  if (code != shoom::Shm::kOk) {
    LogCreateFailure(code, TESSARIN_COMMON::SystemErrorText(TESSARIN_COMMON::LastSystemError()));
    return false;
  }
  bufSize_ = bufferBytes;
  return true;
}

ShoomSlot::Result ShoomSlot::Outgrown(const std::string& sid, const FrameMeta& meta,
                                      std::optional<ShareMemoryInfo>& removal) const {
  StreamInfo stream;
  if (!StreamDataManager::GetInstance().GetStreamBySid(sid, stream)) {
    LogAt("Ravo", Level::Unexpected,
          "[STREAM_FRAME] ShoomSlot::Update stream has been remove but still got some video frames - sid: {}", sid);
    return Result::StreamGone;
  }
  ShareMemoryInfo record;
  record.sid = sid;
  record.uid = stream.uid;
  record.bufferSize = bufSize_;
  record.path = name_.path;
  record.isScreen = stream.isScreen;
  record.isMerge = stream.isMerge;
  record.frameFormat = FoldedFormat(meta.format);
  removal = std::move(record);
  Log("[STREAM_FRAME] ShoomSlot::Update ExpandingMemory");
  return Result::TooSmall;
}

// The order of the stores is what readers rely on; see ravo/frame_slot.h before touching it.
void ShoomSlot::WriteBuffer(std::uint8_t* buffer, const FrameMeta& meta, Planes planes) const {
  auto& header = *reinterpret_cast<ravo_frame_header*>(buffer);
  Put(header.reservedFlag, meta.reservedWord != 0 ? 1 : 0);
  Put(header.width, meta.width);
  Put(header.stride1, meta.stride1);
  Put(header.stride2, meta.stride2);
  Put(header.rotation, meta.rotation);
  Put(header.flip, meta.flip != 0 ? 1 : 0);
  Put(header.renderTimeMs, meta.renderTimeMs);
  Put(header.colorSpace, meta.colorSpace);
  Put(header.state, RAVO_SLOT_WRITING);
  // Release keeps earlier stores above; this keeps the compiler from lifting the planes over the state.
  std::atomic_signal_fence(std::memory_order_seq_cst);
  Put(header.height, meta.height);
  Put(header.stride0, meta.stride0);
  CopyPlanes(buffer + RAVO_SLOT_HEADER_BYTES, meta, planes);
  if (meta.format != RAVO_FRAME_NO_PIXELS) Put(header.format, meta.format);
  Put(header.counter, static_cast<std::uint32_t>(frameCount_));
  Put(header.state, RAVO_SLOT_COMPLETE);
}

void ShoomSlot::SetEvents() {
  const bool main = mainEvent_.Set();
  const bool side = sideEvent_.Set();
  static IntervalGate gate(kThrottleMs);
  if (!(main && side) && gate.IsTime()) {
    LogAt("Ravo", Level::Failure, "[STREAM_FRAME] ShoomSlot::Update SetEvent failed!");
  }
}

}  // namespace TESSARIN_LUMARC::slots
