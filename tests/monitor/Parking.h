#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include "common/Platform.h"
#include "task/Thread.h"

// Where a thread of a test stands while its stack is looked at.
class Parking {
 public:
  Parking();
  ~Parking();
  Parking(const Parking&) = delete;
  Parking& operator=(const Parking&) = delete;

  // Stays in a call of the system, directly below this function, until Leave.
  void ParkInKnownPlace();
  void Leave();

 private:
  std::intptr_t wait_;
  std::intptr_t wake_;
};

// The file that frames in that place tell; empty where the system's debug help tells none.
extern const char* const kParkingFile;

// A named thread that stands in ParkInKnownPlace, or is on its way to it, for the life of the object.
class ParkedThread {
 public:
  explicit ParkedThread(const std::string& name)
      : thread_([this, name] {
          TESSARIN_TASK::NameCurrentThread(name);
          id_ = TESSARIN_COMMON::CurrentThreadId();
          parking_.ParkInKnownPlace();
        }) {
    while (id_ == 0) std::this_thread::yield();
  }
  ~ParkedThread() {
    parking_.Leave();
    thread_.join();
  }

  [[nodiscard]] std::uint32_t Id() const { return id_; }

 private:
  Parking parking_;
  std::atomic<std::uint32_t> id_{0};
  std::thread thread_;
};
