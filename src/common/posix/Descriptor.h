#pragma once

#include <unistd.h>

#include "../OwningHandle.h"

namespace TESSARIN_COMMON {

struct DescriptorTraits {
  using Type = int;
  static constexpr int None() { return -1; }
  static void Close(int descriptor) { close(descriptor); }
};
using Descriptor = OwningHandle<DescriptorTraits>;

}  // namespace TESSARIN_COMMON
