#include "RawLink.h"

#include <thread>

#include "ServerProcess.h"

namespace integration {
namespace {

constexpr std::size_t kPrefixBytes = 4;

// Looks for a server each millisecond: a start is to cost a test no half seconds.
bool ConnectSoon(TESSARIN_COMMON::NamedPipeClient& link) {
  link.SetSleep([](auto) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
  return link.Connect(15'000);
}

}  // namespace

RawLink::RawLink(const std::string& pipe) : link_(pipe), connected_(ConnectSoon(link_)) {}

bool RawLink::Send(std::string_view bytes) {
  return link_.Send(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

std::optional<std::string> RawLink::Receive() {
  std::string prefix(kPrefixBytes, '\0');
  if (!ReadExactly(prefix.data(), prefix.size())) return std::nullopt;
  std::uint32_t length = 0;
  for (std::size_t i = kPrefixBytes; i-- > 0;) length = length << 8 | static_cast<unsigned char>(prefix[i]);
  std::string body(length, '\0');
  if (!ReadExactly(body.data(), body.size())) return std::nullopt;
  return body;
}

std::optional<std::string> RawLink::ReceiveReply() {
  auto body = Receive();
  while (body && body->find(R"("message_type":"EVENT")") != std::string::npos) body = Receive();
  return body;
}

bool RawLink::WaitClosed() {
  const auto end = std::chrono::steady_clock::now() + kBound;
  while (Receive()) {
    if (std::chrono::steady_clock::now() > end) return false;
  }
  return std::chrono::steady_clock::now() < end;
}

std::string RawLink::Framed(std::string_view body) {
  std::string frame;
  for (std::size_t i = 0; i < kPrefixBytes; ++i) frame += static_cast<char>(body.size() >> (8 * i) & 0xff);
  return frame.append(body);
}

std::string RawLink::Request(const std::string& key, const std::string& content, std::int64_t taskId,
                             const std::string& members) {
  return R"({"method_name":{)" + members + R"("message_type":"CALL","message_key":)" + Quoted(key) + R"(,"taskId":)" +
         std::to_string(taskId) + R"(},"content":)" + Quoted(content) + "}";
}

bool RawLink::ReadExactly(char* buffer, std::size_t size) {
  const auto end = std::chrono::steady_clock::now() + kBound;
  while (size > 0) {
    if (!link_.RecvData(buffer, static_cast<std::uint32_t>(size))) return false;
    std::int32_t count = 0;
    while (count == 0) {
      if (std::chrono::steady_clock::now() > end) return false;
      count = link_.WaitRecvData();
    }
    if (count < 0) return false;
    buffer += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace integration
