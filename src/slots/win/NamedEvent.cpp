#include "../NamedEvent.h"

#include <windows.h>

#include "common/OwningHandle.h"

namespace TESSARIN_LUMARC::slots {
namespace {

struct HandleTraits {
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};

}  // namespace

struct NamedEvent::Handle {
  TESSARIN_COMMON::OwningHandle<HandleTraits> event;
};

NamedEvent::NamedEvent(const std::string& name) : handle_(std::make_unique<Handle>()) {
  handle_->event.Reset(CreateEventA(nullptr, FALSE, FALSE, name.c_str()));
}

NamedEvent::~NamedEvent() = default;

bool NamedEvent::Set() {
  return handle_->event && SetEvent(handle_->event.Get()) != FALSE;
}

}  // namespace TESSARIN_LUMARC::slots
