#include "../MessageLoop.h"

#include <unistd.h>

#include "common/Platform.h"

namespace TESSARIN_LUMARC {

const char* const kEngineFileSuffix = "/libtessarin-lumarc.so";

void MessageLoop::Attach() {
  mainThreadId_ = TESSARIN_COMMON::CurrentThreadId();
}

void MessageLoop::Run() {
  serverRunning_.wait(true);
  // The runner is about to call exit(0). A host whose main returned now would call it a second time, and the two
  // would run the process's exit functions side by side.
  for (;;) pause();
}

void MessageLoop::Quit() {
  serverRunning_ = false;
  serverRunning_.notify_all();
}

void SetDpiAwareness() {}

}  // namespace TESSARIN_LUMARC
