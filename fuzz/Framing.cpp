// What comes over the link becomes frames. The first byte says how many bytes a read brings at most: less than a frame
// wants is a short read, which ends the session.
#include <algorithm>
#include <cstring>

#include "Fuzzer.h"
#include "ipc/IpcRecvHander.h"

namespace {

class Link final : public TESSARIN_COMMON::IIpcDataRecv, public TESSARIN_COMMON::IIpcDataNotify {
 public:
  Link(std::string_view bytes, std::size_t mostBytes) : left_(bytes), mostBytes_(mostBytes) {}

  bool RecvData(void* buffer, std::uint32_t size) override {
    const std::size_t count = std::min({std::size_t{size}, left_.size(), mostBytes_});
    if (count == 0) return false;
    std::memcpy(buffer, left_.data(), count);
    if (prefixNext_ && count == size) Shorten(static_cast<std::uint8_t*>(buffer));
    prefixNext_ = !prefixNext_;
    received_ = static_cast<std::int32_t>(count);
    frame_ = left_.substr(0, count);
    left_.remove_prefix(count);
    return true;
  }
  std::int32_t WaitRecvData() override { return received_; }

  void OnIpcData(const char* data, std::uint32_t length) override {
    fuzz::Expect(std::string_view(data, length) == frame_, "a body arrives as it was sent");
    fuzz::Expect(data[length] == '\0', "a NUL stands behind it");
  }

 private:
  // Below 128 KB: the sanitizer takes a refusal of memory for a fault, and much memory takes it long.
  static void Shorten(std::uint8_t* length) {
    length[2] &= 1;
    length[3] = 0;
  }

  std::string_view left_;
  std::string_view frame_;
  const std::size_t mostBytes_;
  std::int32_t received_ = 0;
  bool prefixNext_ = true;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  Link link(fuzz::Text(data + 1, size - 1), std::size_t{data[0]} + 4);
  TESSARIN_COMMON::IpcRecvHander handler;
  handler.SetDataRecv(&link);
  handler.HandleRecv(&link);
  return 0;
}
