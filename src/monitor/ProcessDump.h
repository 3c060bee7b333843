#pragma once

#include <string>

namespace QX_MONITOR {

// Writes the state of this process and of all its threads to a file, which is replaced, and lets the process go on.
// The threads stand still meanwhile. False if the file cannot be made or written. Callers take turns.
//
// Windows: a minidump with the stacks of all threads. Linux: a core of the whole memory for gdb, written by a child
// process of a moment, which needs the right to trace its parent; a process that a debugger holds has no dump.
// script/gdb-thread-names.py gives the threads of such a core their names.
bool WriteProcessDump(const std::string& path);

}  // namespace QX_MONITOR
