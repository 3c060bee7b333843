#pragma once

namespace sim {

// Names the calling thread for debuggers; the system may cut a long name.
void NameThread(const char* name);

}  // namespace sim
