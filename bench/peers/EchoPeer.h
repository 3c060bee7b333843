#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

// Those that a request and its reply are compared with: each carries the same bytes to a process of its own and back,
// over a Unix socket.
namespace bench {

// How libraries with addresses of their own write a socket's path.
inline std::string IpcUrl(const std::string& path) {
  return "ipc://" + path;
}

constexpr int kInFlight = 32;

class EchoClient {
 public:
  virtual ~EchoClient() = default;
  // Sends the payload and waits for all of it.
  virtual void RoundTrip(const std::string& payload) = 0;
  // The same so many times, kInFlight of them under way as long as there are so many left.
  virtual void Flight(const std::string& payload, int count) = 0;
};

struct EchoPeer {
  const char* name;
  void (*serve)(const std::string& path);  // stays; null, like connect, where the library is not installed
  std::unique_ptr<EchoClient> (*connect)(const std::string& path);
};

// The files of libraries that are not installed are left out of the program: weak names are null then.
void ServeBareEcho(const std::string& path);
std::unique_ptr<EchoClient> ConnectBareEcho(const std::string& path);
[[gnu::weak]] void ServeGrpc(const std::string& path);
[[gnu::weak]] std::unique_ptr<EchoClient> ConnectGrpc(const std::string& path);
[[gnu::weak]] void ServeZeroMq(const std::string& path);
[[gnu::weak]] std::unique_ptr<EchoClient> ConnectZeroMq(const std::string& path);
[[gnu::weak]] void ServeNng(const std::string& path);
[[gnu::weak]] std::unique_ptr<EchoClient> ConnectNng(const std::string& path);
[[gnu::weak]] void ServeSdBus(const std::string& path);
[[gnu::weak]] std::unique_ptr<EchoClient> ConnectSdBus(const std::string& path);

inline const std::array<EchoPeer, 5>& EchoPeers() {
  static const std::array<EchoPeer, 5> peers{{{"bare echo", ServeBareEcho, ConnectBareEcho},
                                              {"gRPC", ServeGrpc, ConnectGrpc},
                                              {"ZeroMQ", ServeZeroMq, ConnectZeroMq},
                                              {"nng", ServeNng, ConnectNng},
                                              {"sd-bus", ServeSdBus, ConnectSdBus}}};
  return peers;
}

// What a peer's library answers when it fails is of no interest: the run ends.
void Require(bool good, const char* call);

}  // namespace bench
