#pragma once

#include <unistd.h>

#include "common/OwningHandle.h"

namespace TESSARIN_LUMARC::slots {

struct DescriptorTraits {
  using Type = int;
  static constexpr int None() { return -1; }
  static void Close(int descriptor) { close(descriptor); }
};
using Descriptor = TESSARIN_COMMON::OwningHandle<DescriptorTraits>;

}  // namespace TESSARIN_LUMARC::slots
