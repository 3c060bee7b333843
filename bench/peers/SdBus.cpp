// Peer to peer, without a broker: the payload is a byte array of a method call and of its reply.
#include <sys/socket.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "../Link.h"
#include "EchoPeer.h"

namespace bench {

namespace {

int Echo(sd_bus_message* call, void*, sd_bus_error*) {
  const void* data = nullptr;
  std::size_t size = 0;
  sd_bus_message* reply = nullptr;
  int result = sd_bus_message_read_array(call, 'y', &data, &size);
  if (result >= 0) result = sd_bus_message_new_method_return(call, &reply);
  if (result >= 0) result = sd_bus_message_append_array(reply, 'y', data, size);
  if (result >= 0) result = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return result < 0 ? result : 1;
}

class Client final : public EchoClient {
 public:
  explicit Client(const std::string& path) {
    Require(sd_bus_new(&bus_) >= 0, "sd_bus_new");
    Require(sd_bus_set_address(bus_, ("unix:path=" + path).c_str()) >= 0, "sd_bus_set_address");
    int result = -1;
    for (int i = 0; i < 1000 && (result = sd_bus_start(bus_)) < 0; ++i) usleep(1000);
    Require(result >= 0, "sd_bus_start");
  }
  ~Client() override { sd_bus_close_unref(bus_); }

  void RoundTrip(const std::string& payload) override {
    sd_bus_message* const call = NewCall(payload);
    sd_bus_message* reply = nullptr;
    Require(sd_bus_call(bus_, call, 0, nullptr, &reply) >= 0, "sd_bus_call");
    sd_bus_message_unref(reply);
    sd_bus_message_unref(call);
  }

  void Flight(const std::string& payload, int count) override {
    answered_ = 0;
    for (int sent = 0; answered_ < count;) {
      for (; sent < count && sent < answered_ + kInFlight; ++sent) {
        sd_bus_message* const call = NewCall(payload);
        Require(sd_bus_call_async(bus_, nullptr, call, OnReply, this, 0) >= 0, "sd_bus_call_async");
        sd_bus_message_unref(call);
      }
      const int did = sd_bus_process(bus_, nullptr);
      Require(did >= 0, "sd_bus_process");
      if (did == 0) sd_bus_wait(bus_, UINT64_MAX);
    }
  }

 private:
  static int OnReply(sd_bus_message*, void* client, sd_bus_error*) {
    ++static_cast<Client*>(client)->answered_;
    return 0;
  }
  sd_bus_message* NewCall(const std::string& payload) {
    sd_bus_message* call = nullptr;
    Require(sd_bus_message_new_method_call(bus_, &call, nullptr, "/bench", "bench.Echo", "Echo") >= 0,
            "sd_bus_message_new_method_call");
    Require(sd_bus_message_append_array(call, 'y', payload.data(), payload.size()) >= 0, "sd_bus_message_append_array");
    return call;
  }

  sd_bus* bus_ = nullptr;
  int answered_ = 0;
};

}  // namespace

void ServeSdBus(const std::string& path) {
  const int peer = AcceptOne(path, SOCK_NONBLOCK | SOCK_CLOEXEC);
  sd_bus* bus = nullptr;
  sd_id128_t id{};
  Require(sd_bus_new(&bus) >= 0 && sd_id128_randomize(&id) >= 0, "sd_bus_new");
  Require(sd_bus_set_fd(bus, peer, peer) >= 0, "sd_bus_set_fd");
  Require(sd_bus_set_server(bus, 1, id) >= 0, "sd_bus_set_server");
  Require(sd_bus_start(bus) >= 0, "sd_bus_start");
  Require(sd_bus_add_filter(bus, nullptr, Echo, nullptr) >= 0, "sd_bus_add_filter");
  for (;;) {
    const int did = sd_bus_process(bus, nullptr);
    if (did < 0) return;
    if (did == 0) sd_bus_wait(bus, UINT64_MAX);
  }
}

std::unique_ptr<EchoClient> ConnectSdBus(const std::string& path) {
  return std::make_unique<Client>(path);
}

}  // namespace bench
