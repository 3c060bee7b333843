#include "../SlotOwner.h"

namespace TESSARIN_LUMARC::slots {

// A mapping or an event is gone with the last handle to it, and the system closes those of a process that ends.
void ClaimOwner(const std::string&) {}
void SweepLeftovers() {}

}  // namespace TESSARIN_LUMARC::slots
