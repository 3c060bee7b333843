#include "../SlotView.h"

#include <windows.h>

#include <algorithm>

#include "common/OwningHandle.h"
#include "common/Platform.h"

namespace ravo::client {
namespace {

struct HandleTraits {
  using Type = HANDLE;
  static HANDLE None() { return nullptr; }
  static void Close(HANDLE handle) { CloseHandle(handle); }
};

struct ViewTraits {
  using Type = void*;
  static void* None() { return nullptr; }
  static void Close(void* view) { UnmapViewOfFile(view); }
};

std::string Failure(const char* call, const std::string& name) {
  return std::string(call) + '(' + name + "): " + TESSARIN_COMMON::SystemErrorText(TESSARIN_COMMON::LastSystemError());
}

}  // namespace

struct SlotView::Handles {
  TESSARIN_COMMON::OwningHandle<HandleTraits> event;
  TESSARIN_COMMON::OwningHandle<ViewTraits> view;  // keeps the mapping alive without its handle
};

SlotView::SlotView() : handles_(std::make_unique<Handles>()) {}

SlotView::~SlotView() = default;

std::unique_ptr<SlotView> SlotView::Open(const std::string& path, const std::string& eventName, std::string& error) {
  std::unique_ptr<SlotView> slot(new SlotView);
  const TESSARIN_COMMON::OwningHandle<HandleTraits> mapping(OpenFileMappingA(FILE_MAP_READ, FALSE, path.c_str()));
  if (!mapping) {
    error = Failure("OpenFileMappingA", path);
    return nullptr;
  }
  slot->handles_->view.Reset(MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 0));
  MEMORY_BASIC_INFORMATION region = {};
  if (!slot->handles_->view || VirtualQuery(slot->handles_->view.Get(), &region, sizeof region) == 0) {
    error = Failure("MapViewOfFile", path);
    return nullptr;
  }
  slot->handles_->event.Reset(OpenEventA(SYNCHRONIZE, FALSE, eventName.c_str()));
  if (!slot->handles_->event) {
    error = Failure("OpenEventA", eventName);
    return nullptr;
  }
  slot->data_ = static_cast<const std::uint8_t*>(slot->handles_->view.Get());
  slot->sizeBytes_ = region.RegionSize;
  return slot;
}

bool SlotView::Wait(std::chrono::milliseconds timeout) {
  const auto ms = std::clamp<std::int64_t>(timeout.count(), 0, INFINITE - 1);
  return WaitForSingleObject(handles_->event.Get(), static_cast<DWORD>(ms)) == WAIT_OBJECT_0;
}

}  // namespace ravo::client
