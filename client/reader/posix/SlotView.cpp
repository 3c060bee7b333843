#include "../SlotView.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "common/OwningHandle.h"
#include "common/Platform.h"

namespace ravo::client {
namespace {

struct DescriptorTraits {
  using Type = int;
  static int None() { return -1; }
  static void Close(int descriptor) { close(descriptor); }
};

struct Region {
  void* address = nullptr;
  std::size_t sizeBytes = 0;
  bool operator==(const Region&) const = default;
};

struct RegionTraits {
  using Type = Region;
  static Region None() { return {}; }
  static void Close(const Region& region) { munmap(region.address, region.sizeBytes); }
};

struct SemaphoreTraits {
  using Type = sem_t*;
  static sem_t* None() { return SEM_FAILED; }
  static void Close(sem_t* semaphore) { sem_close(semaphore); }
};

using OwnedRegion = TESSARIN_COMMON::OwningHandle<RegionTraits>;

// What another user has put under the name of a segment that is gone is none of ours.
OwnedRegion MapWhole(int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || status.st_size <= 0) return {};
  if (status.st_uid != geteuid()) {
    errno = EACCES;
    return {};
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  void* address = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
  return address != MAP_FAILED ? OwnedRegion({address, size}) : OwnedRegion();
}

std::string Failure(const char* call, const std::string& name) {
  return std::string(call) + '(' + name + "): " + TESSARIN_COMMON::SystemErrorText(errno);
}

}  // namespace

struct SlotView::Handles {
  OwnedRegion region;
  TESSARIN_COMMON::OwningHandle<SemaphoreTraits> semaphore;
};

SlotView::SlotView() : handles_(std::make_unique<Handles>()) {}

SlotView::~SlotView() = default;

std::unique_ptr<SlotView> SlotView::Open(const std::string& path, const std::string& eventName, std::string& error) {
  std::unique_ptr<SlotView> view(new SlotView);
  const std::string segment = '/' + path;
  const TESSARIN_COMMON::OwningHandle<DescriptorTraits> descriptor(shm_open(segment.c_str(), O_RDONLY, 0));
  if (!descriptor) {
    error = Failure("shm_open", segment);
    return nullptr;
  }
  view->handles_->region = MapWhole(descriptor.Get());
  if (!view->handles_->region) {
    error = Failure("mmap", segment);
    return nullptr;
  }
  const std::string semaphore = '/' + eventName;
  view->handles_->semaphore.Reset(sem_open(semaphore.c_str(), 0));
  if (!view->handles_->semaphore) {
    error = Failure("sem_open", semaphore);
    return nullptr;
  }
  view->data_ = static_cast<const std::uint8_t*>(view->handles_->region.Get().address);
  view->sizeBytes_ = view->handles_->region.Get().sizeBytes;
  return view;
}

bool SlotView::Wait(std::chrono::milliseconds timeout) {
  timespec until = {};
  clock_gettime(CLOCK_MONOTONIC, &until);
  const auto ns = until.tv_nsec + std::chrono::nanoseconds(timeout % std::chrono::seconds(1)).count();
  until.tv_sec += static_cast<time_t>(timeout / std::chrono::seconds(1) + ns / 1'000'000'000);
  until.tv_nsec = static_cast<long>(ns % 1'000'000'000);
  int result = -1;
  do result = sem_clockwait(handles_->semaphore.Get(), CLOCK_MONOTONIC, &until);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace ravo::client
