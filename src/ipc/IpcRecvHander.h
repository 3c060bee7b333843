#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "IpcInterfaces.h"

namespace TESSARIN_COMMON {

// Reads frames: a length of 4 bytes, little-endian, and that many bytes. A frame that is empty, short, or too long for
// the memory at hand, the receiver's copy included, ends the session; there is no way back into step after it. Too long
// a one leaves a line in the log.
class IpcRecvHander final : public IIpcRecvHandler {
 public:
  void SetDataRecv(IIpcDataRecv* source) override { source_ = source; }
  void HandleRecv(IIpcDataNotify* notify) override;

 private:
  // Memory for a body and the NUL behind it, kept from frame to frame unless it is large. It is not zeroed, so that
  // a large length costs no memory before its bytes arrive.
  class Body {
   public:
    char* Reserve(std::uint32_t length);
    [[nodiscard]] const char* Data() const { return block_.get(); }
    void DropLarge();

   private:
    std::unique_ptr<char[]> block_;
    std::size_t capacity_ = 0;
  };

  bool ReadFrame(Body& body, std::uint32_t& length) const;
  [[nodiscard]] bool ReadExactly(void* buffer, std::uint32_t size) const;

  IIpcDataRecv* source_ = nullptr;  // not owned
};

}  // namespace TESSARIN_COMMON
