#include "IpcRecvHander.h"

#include <algorithm>
#include <new>

#include "log/LogInstance.h"

namespace TESSARIN_COMMON {

namespace {
constexpr std::uint32_t kPrefixBytes = 4;
constexpr std::size_t kSmallBody = std::size_t{64} << 10;  // kept between frames

std::uint32_t LengthOf(const unsigned char (&prefix)[kPrefixBytes]) {
  std::uint32_t length = 0;
  for (std::uint32_t i = kPrefixBytes; i-- > 0;) length = length << 8 | prefix[i];
  return length;
}
}  // namespace

void IpcRecvHander::HandleRecv(IIpcDataNotify* notify) {
  if (notify == nullptr || source_ == nullptr) return;
  Body body;
  std::uint32_t length = 0;
  try {
    while (ReadFrame(body, length)) {
      notify->OnIpcData(body.Data(), length);
      body.DropLarge();
    }
  } catch (const std::bad_alloc&) {
    TESSARIN_LOG::LogAt("Ravo", TESSARIN_LOG::Level::Failure,
                        "a message of {} bytes does not fit into the memory, the session ends", length);
  }
}

// False at the end of the session.
bool IpcRecvHander::ReadFrame(Body& body, std::uint32_t& length) const {
  unsigned char prefix[kPrefixBytes] = {};
  if (!ReadExactly(prefix, kPrefixBytes)) return false;
  length = LengthOf(prefix);
  char* const data = body.Reserve(length);
  if (!ReadExactly(data, length)) return false;
  data[length] = '\0';
  return true;
}

bool IpcRecvHander::ReadExactly(void* buffer, std::uint32_t size) const {
  if (!source_->RecvData(buffer, size)) return false;
  std::int32_t received = 0;
  while (received == 0) received = source_->WaitRecvData();
  return received > 0 && static_cast<std::uint32_t>(received) == size;
}

char* IpcRecvHander::Body::Reserve(std::uint32_t length) {
  const std::size_t needed = std::size_t{length} + 1;
  if (needed == 0) throw std::bad_alloc();  // the largest length, where a size has 32 bits
  if (needed > capacity_) {
    capacity_ = 0;
    block_.reset();
    block_.reset(new char[std::max(needed, kSmallBody)]);
    capacity_ = std::max(needed, kSmallBody);
  }
  return block_.get();
}

void IpcRecvHander::Body::DropLarge() {
  if (capacity_ <= kSmallBody) return;
  block_.reset();
  capacity_ = 0;
}

}  // namespace TESSARIN_COMMON
