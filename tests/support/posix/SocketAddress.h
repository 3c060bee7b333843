#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

namespace support {

inline sockaddr_un SocketAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

// These return what the system does.
inline int Bind(int socket, const sockaddr_un& address) {
  return bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}
inline int Connect(int socket, const sockaddr_un& address) {
  return connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

}  // namespace support
