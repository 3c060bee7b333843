// What a link costs at least: the bytes go back as they come.
#include <sys/socket.h>

#include <vector>

#include "../Link.h"
#include "EchoPeer.h"

namespace bench {

void ServeBareEcho(const std::string& path) {
  const int peer = AcceptOne(path);
  std::vector<char> buffer(1 << 16);
  for (;;) {
    const ssize_t got = recv(peer, buffer.data(), buffer.size(), 0);
    if (got <= 0) return;
    if (send(peer, buffer.data(), static_cast<std::size_t>(got), MSG_NOSIGNAL) != got) return;
  }
}

std::unique_ptr<EchoClient> ConnectBareEcho(const std::string& path) {
  return std::make_unique<Link>(path, std::string(), Link::Wait::InRecv);
}

}  // namespace bench
