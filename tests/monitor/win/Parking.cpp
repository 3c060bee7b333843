#include "../Parking.h"

#include <windows.h>

const char* const kParkingFile = "";  // Wine finds functions only

Parking::Parking()
    : wait_(reinterpret_cast<std::intptr_t>(CreateEventA(nullptr, TRUE, FALSE, nullptr))), wake_(wait_) {}

Parking::~Parking() {
  CloseHandle(reinterpret_cast<HANDLE>(wait_));
}

__attribute__((noinline)) void Parking::ParkInKnownPlace() {
  while (WaitForSingleObject(reinterpret_cast<HANDLE>(wait_), INFINITE) != WAIT_OBJECT_0) continue;
}

void Parking::Leave() {
  SetEvent(reinterpret_cast<HANDLE>(wake_));
}
