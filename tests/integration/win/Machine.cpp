#include "../Machine.h"

#include <gmock/gmock.h>
#include <windows.h>

namespace integration {
namespace {

DWORD ProcessOf(const ServerProcess& server) {
  const std::string words = "Ravo Process Id:";
  EXPECT_TRUE(server.WaitForLog(words));
  const std::string line = server.LogLines(words).at(0);
  return static_cast<DWORD>(std::stoul(line.substr(line.find(words) + words.size())));
}

// What the system does: a message to the server's own window, past its hidden style and other servers' windows.
void Broadcast(const ServerProcess& server, WPARAM event) {
  const DWORD wanted = ProcessOf(server);
  for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, L"MyPowerMessageWindow", nullptr)) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != wanted) continue;
    EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, event, 0), TRUE);
    return;
  }
  ADD_FAILURE() << "the server has no message window";
}

}  // namespace

struct Machine::System {};
const char* const Machine::kListens = "createPowerMessageWindow success";

Machine::Machine() = default;
Machine::~Machine() = default;

void Machine::Suspend(const ServerProcess& server) {
  Broadcast(server, PBT_APMSUSPEND);
}

void Machine::Resume(const ServerProcess& server) {
  Broadcast(server, PBT_APMRESUMEAUTOMATIC);
}

}  // namespace integration
