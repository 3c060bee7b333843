#include "../MessageLoop.h"

#include <unistd.h>

#include <cstdlib>

#include "common/Platform.h"

namespace TESSARIN_LUMARC {

const char* const kEngineFileSuffix = "/libtessarin-lumarc.so";

void MessageLoop::Attach() {
  mainThreadId_ = TESSARIN_COMMON::CurrentThreadId();
}

void MessageLoop::Run() {
  serverRunning_.wait(true);
  for (;;) pause();
}

void MessageLoop::Quit() {
  serverRunning_ = false;
  serverRunning_.notify_all();
}

void EndProcess() {
  std::exit(0);
}

void SetDpiAwareness() {}

}  // namespace TESSARIN_LUMARC
