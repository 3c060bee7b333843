// Connects to a server, sends half a message, says so and waits to be killed.
#include <chrono>
#include <cstdio>
#include <thread>

#include "ipc/NamedPipeClient.h"
#include "support/LogCapture.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const support::LogCapture log;
  TESSARIN_COMMON::NamedPipeClient link(argv[1]);
  link.SetSleep([](auto) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
  if (!link.Connect(15'000)) return 1;
  constexpr char kHalf[] = {100, 0, 0, 0, '{', '"'};
  if (!link.Send(kHalf, sizeof kHalf)) return 1;
  std::puts("sent");
  std::fflush(stdout);
  char byte = 0;
  if (!link.RecvData(&byte, sizeof byte)) return 1;
  while (link.WaitRecvData() >= 0) {
    if (!link.RecvData(&byte, sizeof byte)) return 1;
  }
  return 0;
}
