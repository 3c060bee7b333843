#pragma once

#include <string>

// Names in shared memory outlive a process that is killed, on Linux. So each name carries its owner, the middle part of
// a slot's path, and a living owner can be told from a dead one. On Windows the objects die with the process, and both
// calls do nothing.
namespace TESSARIN_LUMARC::slots {

// Marks this process as the owner, for the rest of its life, and removes what an earlier process with the same owner
// part left behind. To be called before the first name is made; further calls do nothing. Any thread.
void ClaimOwner(const std::string& owner);

// Removes the segments, events and marks of owners that are no more. Only names of our own user that have exactly the
// form of a slot's. Any thread.
void SweepLeftovers();

}  // namespace TESSARIN_LUMARC::slots
