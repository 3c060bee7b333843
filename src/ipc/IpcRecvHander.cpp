#include "IpcRecvHander.h"

#include <algorithm>
#include <new>

namespace TESSARIN_COMMON {

namespace {
constexpr std::uint32_t kPrefixBytes = 4;
constexpr std::size_t kSmallBody = 64 * 1024;  // kept between frames

std::uint32_t LengthOf(const unsigned char (&prefix)[kPrefixBytes]) {
  std::uint32_t length = 0;
  for (std::uint32_t i = kPrefixBytes; i-- > 0;) length = length << 8 | prefix[i];
  return length;
}
}  // namespace

void IpcRecvHander::HandleRecv(IIpcDataNotify* notify) {
  if (notify == nullptr || source_ == nullptr) return;
  Body body;
  for (;;) {
    unsigned char prefix[kPrefixBytes] = {};
    if (!ReadExactly(prefix, kPrefixBytes)) return;
    const std::uint32_t length = LengthOf(prefix);
    char* const data = body.Reserve(length);
    if (data == nullptr || !ReadExactly(data, length)) return;
    data[length] = '\0';
    notify->OnIpcData(data, length);
    body.DropLarge();
  }
}

bool IpcRecvHander::ReadExactly(void* buffer, std::uint32_t size) const {
  if (!source_->RecvData(buffer, size)) return false;
  std::int32_t received = 0;
  while (received == 0) received = source_->WaitRecvData();
  return received > 0 && static_cast<std::uint32_t>(received) == size;
}

char* IpcRecvHander::Body::Reserve(std::uint32_t length) {
  const std::size_t needed = std::size_t{length} + 1;
  if (needed == 0) return nullptr;  // the largest length, where a size has 32 bits
  if (needed > capacity_) {
    capacity_ = std::max(needed, kSmallBody);
    block_.reset();
    block_.reset(new (std::nothrow) char[capacity_]);
    if (block_ == nullptr) capacity_ = 0;
  }
  return block_.get();
}

void IpcRecvHander::Body::DropLarge() {
  if (capacity_ <= kSmallBody) return;
  block_.reset();
  capacity_ = 0;
}

}  // namespace TESSARIN_COMMON
