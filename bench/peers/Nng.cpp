// Requests of protocol req0, a context for each that is under way; the server sends back what comes, header and all.
#include <nng/nng.h>
#include <nng/protocol/reqrep0/rep.h>
#include <nng/protocol/reqrep0/req.h>

#include <array>

#include "EchoPeer.h"

namespace bench {

namespace {

class Client final : public EchoClient {
 public:
  explicit Client(const std::string& path) {
    Require(nng_req0_open(&socket_) == 0, "nng_req0_open");
    Require(nng_dial(socket_, IpcUrl(path).c_str(), nullptr, 0) == 0, "nng_dial");
    for (Slot& slot : slots_) {
      Require(nng_ctx_open(&slot.context, socket_) == 0, "nng_ctx_open");
      Require(nng_aio_alloc(&slot.aio, nullptr, nullptr) == 0, "nng_aio_alloc");
    }
  }
  ~Client() override {
    for (Slot& slot : slots_) nng_aio_free(slot.aio);
    nng_close(socket_);
  }

  void RoundTrip(const std::string& payload) override {
    nng_msg* message = NewMessage(payload);
    Require(nng_sendmsg(socket_, message, 0) == 0, "nng_sendmsg");
    Require(nng_recvmsg(socket_, &message, 0) == 0 && nng_msg_len(message) == payload.size(), "nng_recvmsg");
    nng_msg_free(message);
  }

  void Flight(const std::string& payload, int count) override {
    for (int i = 0; i < count + kInFlight; ++i) {
      Slot& slot = slots_[static_cast<std::size_t>(i % kInFlight)];
      if (i >= kInFlight) TakeReply(slot);
      if (i < count) Ask(slot, payload);
    }
  }

 private:
  struct Slot {
    nng_ctx context{};
    nng_aio* aio = nullptr;
  };

  static nng_msg* NewMessage(const std::string& payload) {
    nng_msg* message = nullptr;
    Require(nng_msg_alloc(&message, 0) == 0, "nng_msg_alloc");
    nng_msg_append(message, payload.data(), payload.size());
    return message;
  }
  static void Ask(Slot& slot, const std::string& payload) {
    nng_aio_set_msg(slot.aio, NewMessage(payload));
    nng_ctx_send(slot.context, slot.aio);
    nng_aio_wait(slot.aio);
    Require(nng_aio_result(slot.aio) == 0, "nng_ctx_send");
    nng_ctx_recv(slot.context, slot.aio);
  }
  static void TakeReply(Slot& slot) {
    nng_aio_wait(slot.aio);
    Require(nng_aio_result(slot.aio) == 0, "nng_ctx_recv");
    nng_msg_free(nng_aio_get_msg(slot.aio));
  }

  nng_socket socket_{};
  std::array<Slot, kInFlight> slots_;
};

}  // namespace

void ServeNng(const std::string& path) {
  nng_socket socket{};
  Require(nng_rep0_open_raw(&socket) == 0, "nng_rep0_open_raw");
  Require(nng_listen(socket, IpcUrl(path).c_str(), nullptr, 0) == 0, "nng_listen");
  for (;;) {
    nng_msg* message = nullptr;
    if (nng_recvmsg(socket, &message, 0) != 0 || nng_sendmsg(socket, message, 0) != 0) return;
  }
}

std::unique_ptr<EchoClient> ConnectNng(const std::string& path) {
  return std::make_unique<Client>(path);
}

}  // namespace bench
