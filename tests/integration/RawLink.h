#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ipc/NamedPipeClient.h"

namespace integration {

// A connection without the care of a client: whole messages, halves, or silence. Belongs to one thread.
class RawLink {
 public:
  explicit RawLink(const std::string& pipe);

  [[nodiscard]] bool Connected() const { return connected_; }
  [[nodiscard]] std::uint32_t ServerProcessId() const { return link_.ServerProcessId(); }
  bool Send(std::string_view bytes);
  // The body of the next message; nothing when the server has closed the connection. What was sent and did not fit goes
  // out meanwhile.
  std::optional<std::string> Receive();
  // The same, past all events.
  std::optional<std::string> ReceiveReply();
  // Reads on until the server closes the connection; false after a bound.
  bool WaitClosed();
  void Close() { link_.Disconnect(); }

  // The length of a message, then its bytes.
  static std::string Framed(std::string_view body);
  // The body of a request, with these members of its header in front.
  static std::string Request(const std::string& key, const std::string& content, std::int64_t taskId,
                             const std::string& members = "");

 private:
  bool ReadExactly(char* buffer, std::size_t size);

  TESSARIN_COMMON::NamedPipeClient link_;
  bool connected_;
};

}  // namespace integration
