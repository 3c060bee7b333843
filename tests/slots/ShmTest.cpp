#include "slots/Shm.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(Shm, IsSeenByReadersUntilItsMakerCloses) {
  shoom::Shm missing("ravo_shm_test", 100);
  EXPECT_EQ(missing.Create(false), 120);

  shoom::Shm maker("ravo_shm_test", 100);
  ASSERT_EQ(maker.Create(true), 0);
  EXPECT_EQ(maker.Data()[99], 0);
  std::memset(maker.Data(), 7, 100);
  {
    shoom::Shm reader("ravo_shm_test", 100);
    ASSERT_EQ(reader.Create(false), 0);
    EXPECT_EQ(reader.Data()[99], 7);
  }
  maker.Close();
  EXPECT_EQ(maker.Data(), nullptr);
  EXPECT_EQ(shoom::Shm("ravo_shm_test", 100).Create(false), 120);
}

TEST(Shm, RefusesToMapMoreThanThereIs) {
  shoom::Shm maker("ravo_shm_test", 100);
  ASSERT_EQ(maker.Create(true), 0);
  EXPECT_EQ(shoom::Shm("ravo_shm_test", 1 << 20).Create(false), 110);
}

TEST(Shm, SaysSoWhenTheSegmentCannotBeMade) {
  EXPECT_EQ(shoom::Shm("ravo/\\shm", 100).Create(true), 100);
}

}  // namespace
