#include "Link.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "common/JsonWriter.h"

namespace bench {

namespace {

constexpr std::size_t kPrefixBytes = sizeof(std::uint32_t);

sockaddr_un AddressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  return address;
}

std::uint32_t LengthAt(const char* prefix) {
  std::uint32_t length = 0;
  std::memcpy(&length, prefix, sizeof length);
  return length;
}

}  // namespace

void Require(bool good, const char* call) {
  if (!good) throw std::system_error(errno, std::generic_category(), call);
}

int AcceptOne(const std::string& path, int flags) {
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = AddressOf(path);
  Require(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "bind");
  Require(listen(listener, 1) == 0, "listen");
  const int peer = accept4(listener, nullptr, nullptr, flags);
  close(listener);
  return peer;
}

Link::Link(const std::string& path, std::string answer, Wait wait)
    : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), answer_(std::move(answer)), wait_(wait) {
  const sockaddr_un address = AddressOf(path);
  constexpr int kTries = 100'000;
  int result = -1;
  for (int i = 0; i < kTries && result != 0; ++i) {
    result = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (result != 0) usleep(200);
  }
  Require(result == 0, "connect");
}

Link::~Link() {
  close(socket_);
}

void Link::Send(std::string_view frames) {
  while (!frames.empty()) {
    const ssize_t sent = send(socket_, frames.data(), frames.size(), MSG_NOSIGNAL);
    Require(sent > 0, "send");
    frames.remove_prefix(static_cast<std::size_t>(sent));
  }
}

bool Link::HasWhole() const {
  const std::size_t have = end_ - begin_;
  return have >= kPrefixBytes && have >= kPrefixBytes + LengthAt(buffer_.data() + begin_);
}

std::string_view Link::Receive() {
  while (!HasWhole()) Fill();
  const std::string_view body(buffer_.data() + begin_ + kPrefixBytes, LengthAt(buffer_.data() + begin_));
  begin_ += kPrefixBytes + body.size();
  return body;
}

std::string_view Link::ReceiveWith(std::string_view word) {
  std::string_view body = Receive();
  while (body.find(word) == std::string_view::npos) body = Receive();
  return body;
}

void Link::RoundTrip(const std::string& frame) {
  Send(frame);
  ReceiveWith(answer_);
}

void Link::Flight(const std::string& frame, int count) {
  int sent = 0;
  for (int received = 0; received < count; ++received) {
    for (; sent < count && sent < received + kInFlight; ++sent) Send(frame);
    ReceiveWith(answer_);
  }
}

void Link::Fill() {
  if (begin_ == end_) {
    begin_ = end_ = 0;
  } else if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  pollfd readable{socket_, POLLIN, 0};
  if (wait_ == Wait::InPoll) Require(poll(&readable, 1, -1) > 0, "poll");
  const ssize_t got = recv(socket_, buffer_.data() + end_, buffer_.size() - end_, 0);
  Require(got > 0, "recv");
  end_ += static_cast<std::size_t>(got);
}

std::string RequestFrame(const std::string& key, const std::string& content, std::size_t bodyBytes) {
  const std::string head = R"({"method_name":{"module_name":"","content_type":"JSON","message_type":"CALL",)"
                           R"("message_key":")" +
                           key + R"(","context_id":")";
  const std::string tail = R"(","taskId":1},"content":)" + TESSARIN_COMMON::JsonText(content) + "}";
  const std::size_t least = head.size() + tail.size();
  const std::string body = head + std::string(bodyBytes > least ? bodyBytes - least : 0, 'x') + tail;
  const auto length = static_cast<std::uint32_t>(body.size());
  return std::string(reinterpret_cast<const char*>(&length), sizeof length) + body;
}

}  // namespace bench
