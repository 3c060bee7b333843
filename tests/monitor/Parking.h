#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "common/Platform.h"
#include "support/Semaphore.h"
#include "task/Thread.h"
#include "task/ThreadPlatform.h"

// A thread that has done its work, and stands in ParkInKnownPlace or is on its way to it for the life of the object, to
// be looked at.
class ParkedThread {
 public:
  // An empty name leaves the thread without one. Returns when the work is done.
  explicit ParkedThread(
      const std::string& name, const std::function<void()>& work = [] {})
      : thread_([this, name, work] {
          TESSARIN_TASK::NameCurrentThread(name);
          id_ = TESSARIN_COMMON::CurrentThreadId();
          work();
          done_.release();
          ParkInKnownPlace();
        }) {
    done_.acquire();
  }
  ~ParkedThread() {
    leave_.Set();
    thread_.join();
  }

  [[nodiscard]] std::uint32_t Id() const { return id_; }

 private:
  // With something to do behind the wait, so that its frame stays below.
  __attribute__((noinline)) void ParkInKnownPlace() {
    leave_.Wait();
    id_ = 0;
  }

  std::uint32_t id_ = 0;
  support::Semaphore done_;
  TESSARIN_TASK::AutoResetEvent leave_;
  std::thread thread_;  // last, as it uses the others
};
