// Round trips with REQ, flights with DEALER; ROUTER on the other side serves both.
#include <zmq.h>

#include <vector>

#include "EchoPeer.h"

namespace bench {

namespace {

class Client final : public EchoClient {
 public:
  explicit Client(const std::string& path) : request_(Open(path, ZMQ_REQ)), dealer_(Open(path, ZMQ_DEALER)) {}
  ~Client() override {
    zmq_close(request_);
    zmq_close(dealer_);
    zmq_ctx_term(context_);
  }

  void RoundTrip(const std::string& payload) override {
    Send(request_, payload, 0);
    Receive(request_, payload.size());
  }

  void Flight(const std::string& payload, int count) override {
    int sent = 0;
    for (int received = 0; received < count; ++received) {
      for (; sent < count && sent < received + kInFlight; ++sent) Send(dealer_, payload, 0);
      Receive(dealer_, payload.size());
    }
  }

 private:
  void* Open(const std::string& path, int type) {
    void* const socket = zmq_socket(context_, type);
    Require(zmq_connect(socket, IpcUrl(path).c_str()) == 0, "zmq_connect");
    return socket;
  }
  static void Send(void* socket, const std::string& payload, int flags) {
    Require(zmq_send(socket, payload.data(), payload.size(), flags) >= 0, "zmq_send");
  }
  void Receive(void* socket, std::size_t size) {
    Require(zmq_recv(socket, buffer_.data(), buffer_.size(), 0) == static_cast<int>(size), "zmq_recv");
  }

  void* const context_ = zmq_ctx_new();
  void* const request_;
  void* const dealer_;
  std::vector<char> buffer_ = std::vector<char>(1 << 16);
};

}  // namespace

void ServeZeroMq(const std::string& path) {
  void* const socket = zmq_socket(zmq_ctx_new(), ZMQ_ROUTER);
  Require(zmq_bind(socket, IpcUrl(path).c_str()) == 0, "zmq_bind");
  for (;;) {
    zmq_msg_t part;
    zmq_msg_init(&part);
    if (zmq_msg_recv(&part, socket, 0) < 0) return;
    const int more = zmq_msg_more(&part) != 0 ? ZMQ_SNDMORE : 0;
    if (zmq_msg_send(&part, socket, more) < 0) return;
  }
}

std::unique_ptr<EchoClient> ConnectZeroMq(const std::string& path) {
  return std::make_unique<Client>(path);
}

}  // namespace bench
