#include "../Terminal.h"

#include <unistd.h>

#include <cstdio>

namespace ravo::ctl {

bool OutputIsTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

void ClearTerminal() {
  std::fputs("\x1b[H\x1b[J", stdout);
}

}  // namespace ravo::ctl
