#include "../Shm.h"

#include <windows.h>

#include <utility>

#include "common/OwningHandle.h"

namespace shoom {
namespace {

struct MappingTraits {
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};

struct ViewTraits {
  using Type = void*;
  static Type None() { return nullptr; }
  static void Close(Type view) { UnmapViewOfFile(view); }
};

}  // namespace

struct Shm::Mapping {
  TESSARIN_COMMON::OwningHandle<MappingTraits> handle;
  TESSARIN_COMMON::OwningHandle<ViewTraits> view;  // closed before the handle
};

Shm::Shm(std::string path, std::uint32_t sizeBytes) : path_(std::move(path)), sizeBytes_(sizeBytes) {}

Shm::~Shm() {
  Close();
}

int Shm::Create(bool make) {
  auto mapping = std::make_unique<Mapping>();
  mapping->handle.Reset(
      make ? CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeBytes_, path_.c_str())
           : OpenFileMappingA(FILE_MAP_READ, FALSE, path_.c_str()));
  if (!mapping->handle) return make ? kMappingFailed : kOpenFailed;
  const DWORD access = make ? FILE_MAP_ALL_ACCESS : FILE_MAP_READ;
  mapping->view.Reset(MapViewOfFile(mapping->handle.Get(), access, 0, 0, sizeBytes_));
  if (!mapping->view) {
    const DWORD error = GetLastError();
    mapping.reset();
    SetLastError(error);
    return kViewFailed;
  }
  data_ = static_cast<std::uint8_t*>(mapping->view.Get());
  mapping_ = std::move(mapping);
  return kOk;
}

void Shm::Close() {
  data_ = nullptr;
  mapping_.reset();
}

}  // namespace shoom
