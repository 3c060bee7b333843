#include "../ProcessDump.h"

#include <windows.h>

#include <dbghelp.h>

namespace QX_MONITOR {

bool WriteProcessDump(const std::string& path) {
  const HANDLE file =
      CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const BOOL written =
      MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), file, MiniDumpNormal, nullptr, nullptr, nullptr);
  CloseHandle(file);
  return written != FALSE;
}

}  // namespace QX_MONITOR
