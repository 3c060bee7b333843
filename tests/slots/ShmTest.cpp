#include "slots/Shm.h"

#include <gtest/gtest.h>

namespace {

using shoom::Shm;

TEST(Shm, IsSeenByReadersUntilItsMakerClosesAndNoFurtherThanItReaches) {
  EXPECT_EQ(Shm("ravo/\\shm", 100).Create(true), 100) << "a name that cannot be";
  Shm maker("ravo_shm_test", 100);
  ASSERT_EQ(maker.Create(true), 0);
  maker.Data()[99] = 7;
  {
    Shm reader("ravo_shm_test", 100);
    ASSERT_EQ(reader.Create(false), 0);
    EXPECT_EQ(reader.Data()[99], 7);
  }
  EXPECT_EQ(Shm("ravo_shm_test", 1 << 20).Create(false), 110);
  maker.Close();
  EXPECT_EQ(maker.Data(), nullptr);
  EXPECT_EQ(Shm("ravo_shm_test", 100).Create(false), 120);
}

}  // namespace
