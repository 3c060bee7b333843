#include <gtest/gtest.h>
#include <ravo/frame_slot.h>

#include <memory>
#include <string>

#include "common/Platform.h"
#include "reader/FrameReader.h"
#include "slots/NamedEvent.h"
#include "slots/Shm.h"

namespace {

// What stands under the name may be anybody's. Here a segment has the size that it was made with, and no whole page.
TEST(FrameReader, OpensNoSegmentWithoutRoomForAHeader) {
  const std::string path = "1_" + std::to_string(TESSARIN_COMMON::CurrentProcessId()) + "_1";
  const TESSARIN_LUMARC::slots::NamedEvent event(RAVO_SLOT_EVENT_PREFIX + path + RAVO_SLOT_MAIN_SUFFIX);
  const auto opens = [&](std::uint32_t sizeBytes) {
    shoom::Shm segment(path, sizeBytes);
    EXPECT_EQ(segment.Create(true), shoom::Shm::kOk);
    std::string error;
    return ravo::client::FrameReader::Open(path, error) != nullptr;
  };
  EXPECT_FALSE(opens(RAVO_SLOT_HEADER_BYTES - 1));
  EXPECT_TRUE(opens(RAVO_SLOT_HEADER_BYTES));
}

}  // namespace
