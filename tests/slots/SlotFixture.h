#pragma once

#include <gtest/gtest.h>
#include <ravo/frame_slot.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "slots/Shm.h"
#include "slots/StreamDataManager.h"
#include "slots/VideoFrameSlots.h"

namespace slots_test {

using TESSARIN_LUMARC::slots::FrameMeta;
using TESSARIN_LUMARC::slots::ShareMemoryInfo;
using TESSARIN_LUMARC::slots::StreamDataManager;
using TESSARIN_LUMARC::slots::StreamInfo;
using TESSARIN_LUMARC::slots::VideoFrameSlots;

// A frame of one value throughout, and the description that goes with it. The planes share their bytes.
struct TestFrame {
  TestFrame(std::uint32_t width, std::uint32_t height, std::uint8_t value, std::uint32_t padding = 0) {
    meta.width = width;
    meta.height = height;
    meta.stride0 = width + padding;
    meta.stride1 = meta.stride2 = width / 2 + padding;
    Fill(value);
  }
  TestFrame(TestFrame&&) = default;  // the bytes stay where they are

  void Fill(std::uint8_t value) {
    bytes.assign(std::size_t{meta.height} * meta.stride0, value);
    planes.assign(3, bytes.data());
  }

  FrameMeta meta;
  std::vector<std::uint8_t> bytes;
  std::vector<const std::uint8_t*> planes;
};

inline void AddStream(const std::string& uid, const std::string& sid, bool isScreen = false) {
  StreamInfo stream;
  stream.uid = uid;
  stream.sid = sid;
  stream.isScreen = isScreen;
  StreamDataManager::GetInstance().UpdateStream(stream);
}

// The record with which a client acknowledges the removal of a slot.
inline ShareMemoryInfo RecordOf(const std::string& sid) {
  ShareMemoryInfo record;
  record.sid = sid;
  return record;
}

// Slots of a server "test", with the stream "a" of the user "ann", and what they announced.
class SlotFixture : public testing::Test {
 protected:
  SlotFixture() {
    StreamDataManager::GetInstance().ClearAllStreams();
    AddStream("ann", "a");
    slots = std::make_unique<VideoFrameSlots>("test", [this](std::int64_t op, const auto& records) {
      for (const auto& record : records) {
        announced.push_back(std::to_string(op) + ' ' + record.sid + ' ' + std::to_string(record.width) + 'x' +
                            std::to_string(record.height));
        last = record;
      }
      if (onAnnounce) onAnnounce();
    });
  }

  void Send(const TestFrame& frame, const std::string& sid = "a") {
    slots->Tick();
    slots->UpdateSlot(sid, frame.meta, frame.planes);
  }

  std::string PathOf(const std::string& sid = "a") const { return slots->Snapshot().at(sid).slot->Path(); }

  // The bytes of a slot as another process maps them.
  std::vector<std::uint8_t> BytesOf(const std::string& sid = "a") const {
    const auto slot = slots->Snapshot().at(sid).slot;
    const auto size = static_cast<std::uint32_t>(slot->BufferSize());
    shoom::Shm view(slot->Path(), size);
    EXPECT_EQ(view.Create(false), 0);
    return {view.Data(), view.Data() + size};
  }

  std::function<void()> onAnnounce;
  std::vector<std::string> announced;  // "<operation> <sid> <width>x<height>"
  ShareMemoryInfo last;                // the record announced last
  std::unique_ptr<VideoFrameSlots> slots;
};

}  // namespace slots_test
