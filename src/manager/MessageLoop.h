#pragma once

#include <atomic>
#include <cstdint>

namespace TESSARIN_LUMARC {

// Blocks the host's thread while the server runs. On Windows it is the thread's message loop, which also serves the
// windows that the thread may own.
class MessageLoop {
 public:
  // Called on the host's thread before Run.
  void Attach();
  // Serves the thread until Quit, and then keeps it: a host whose main returned now would call exit beside EndProcess,
  // and the two would run the process's exit functions side by side.
  [[noreturn]] void Run();
  // Any thread, also before Run. Ends the serving.
  void Quit();

 private:
  // The condition of the loop. The message, or the wake-up, that Quit sends makes the loop look at it again.
  std::atomic<bool> serverRunning_{true};
  std::atomic<std::uint32_t> mainThreadId_{0};  // for the message; elsewhere for debuggers
};

// exit(0), safe while all other threads still run.
[[noreturn]] void EndProcess();

// Tells the system that the process draws in real pixels. Nothing where the system has no such notion.
void SetDpiAwareness();

// What stands between the engine's folder and its file.
extern const char* const kEngineFileSuffix;

}  // namespace TESSARIN_LUMARC
