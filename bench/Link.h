#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "peers/EchoPeer.h"

namespace bench {

// Listens under that path and waits for a client; its end of the connection. `flags`: as of accept4.
[[nodiscard]] int AcceptOne(const std::string& path, int flags = 0);

// A client of the server that does nothing but send and receive messages, and wait for them. Belongs to one thread.
class Link final : public EchoClient {
 public:
  // In poll, as an event loop does, or in recv, which saves a system call. But the kernel also wakes the one who sleeps
  // in recv whenever the other end takes bytes, in case they want to send, and where that end has more to do before it
  // answers, the core goes to them and back for nothing.
  enum class Wait { InPoll, InRecv };

  // Tries until somebody listens. Of what comes in, the messages with the word `answer` answer a trip or a flight, by
  // default all: a server also has events to tell, and a trip that ended with one would leave all later ones to be
  // answered ahead of their time.
  explicit Link(const std::string& path, std::string answer = {}, Wait wait = Wait::InPoll);
  ~Link() override;
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  void Send(std::string_view frames);
  // The body of the next message. Good until the next call.
  std::string_view Receive();
  // The same, past all messages that do not hold the word.
  std::string_view ReceiveWith(std::string_view word);
  // Whether Receive would not wait.
  [[nodiscard]] bool HasWhole() const;

  void RoundTrip(const std::string& frame) override;
  void Flight(const std::string& frame, int count) override;

 private:
  void Fill();

  int socket_;
  const std::string answer_;
  const Wait wait_;
  std::vector<char> buffer_ = std::vector<char>(1 << 20);
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

inline constexpr char kResponse[] = "\"CALL_RESPONSE\"";  // a word of the server's answers

// A request as it stands on the pipe; `content` is a JSON array. Its body has at least so many bytes.
[[nodiscard]] std::string RequestFrame(const std::string& key, const std::string& content, std::size_t bodyBytes = 0);

}  // namespace bench
