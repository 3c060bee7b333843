#pragma once

#include "Faults.h"

namespace faults {

// Counts one call; true if it is the one that has to fail.
bool IsToFail(Call call);

}  // namespace faults
