#pragma once

#include <memory>
#include <string>

namespace TESSARIN_LUMARC::slots {

// An auto-reset event that other processes of the same user open by its name, unset at first. Setting it again before
// anybody waited changes nothing. One thread at a time sets it. It goes away with its maker; waiters that have it open
// keep it.
class NamedEvent {
 public:
  // A failure shows when it is set.
  explicit NamedEvent(const std::string& name);
  ~NamedEvent();
  NamedEvent(const NamedEvent&) = delete;
  NamedEvent& operator=(const NamedEvent&) = delete;

  bool Set();

 private:
  struct Handle;
  const std::unique_ptr<Handle> handle_;
};

}  // namespace TESSARIN_LUMARC::slots
