#include "../Terminal.h"

#include <windows.h>

#include <cstdio>

namespace ravo::ctl {

bool OutputIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

// Older consoles do not know control sequences.
void ClearTerminal() {
  std::fflush(stdout);
  const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (!GetConsoleScreenBufferInfo(console, &info)) return;
  const DWORD cells = static_cast<DWORD>(info.dwSize.X) * static_cast<DWORD>(info.dwSize.Y);
  DWORD written = 0;
  FillConsoleOutputCharacterA(console, ' ', cells, {0, 0}, &written);
  SetConsoleCursorPosition(console, {0, 0});
}

}  // namespace ravo::ctl
