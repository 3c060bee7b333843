#include "../Parking.h"

#include <poll.h>
#include <unistd.h>

#include <array>

const char* const kParkingFile = "Parking.cpp";

Parking::Parking() {
  std::array<int, 2> ends{};
  static_cast<void>(pipe(ends.data()) == 0);
  wait_ = ends[0];
  wake_ = ends[1];
}

Parking::~Parking() {
  close(static_cast<int>(wait_));
  close(static_cast<int>(wake_));
}

__attribute__((noinline)) void Parking::ParkInKnownPlace() {
  pollfd end{.fd = static_cast<int>(wait_), .events = POLLIN, .revents = 0};
  while (poll(&end, 1, -1) < 1) continue;  // each sample ends the call early
}

void Parking::Leave() {
  static_cast<void>(write(static_cast<int>(wake_), "", 1) == 1);
}
