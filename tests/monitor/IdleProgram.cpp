// A process to be looked at: says its id and waits to be killed.
#include <chrono>
#include <iostream>
#include <thread>

#include "common/Platform.h"

int main() {
  std::cout << TESSARIN_COMMON::CurrentProcessId() << std::endl;
  std::this_thread::sleep_for(std::chrono::hours(1));
}
