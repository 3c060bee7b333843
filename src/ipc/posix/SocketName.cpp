#include "SocketName.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "common/posix/NameRegistry.h"

namespace TESSARIN_COMMON {
namespace {

int MakeAddress(const std::string& path, sockaddr_un& address) {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.find('\0') != std::string::npos) return ENOENT;
  if (path.size() >= sizeof address.sun_path) return ENAMETOOLONG;
  std::memcpy(address.sun_path, path.data(), path.size());
  return 0;
}

int MakeSocket(int type, Descriptor& out) {
  out.Reset(socket(AF_UNIX, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  return out ? 0 : errno;
}

int ConnectSocket(const Descriptor& socket, const sockaddr_un& address) {
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  return connect(socket.Get(), generic, sizeof address) == 0 ? 0 : errno;
}

// A bound name goes away with the process, should nobody remove it before.
int BindSocket(const Descriptor& socket, const sockaddr_un& address) {
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  const bool bound = NameRegistry::GetInstance().Add(NameRegistry::Kind::Socket, address.sun_path,
                                                     [&] { return bind(socket.Get(), generic, sizeof address) == 0; });
  return bound ? 0 : errno;
}

// Asks with a datagram socket: a live stream socket refuses the type, and hears nothing of the question. A stream
// connection as the question would be taken for a client.
bool IsStale(const sockaddr_un& address) {
  struct stat file {};
  if (lstat(address.sun_path, &file) != 0 || !S_ISSOCK(file.st_mode)) return false;
  Descriptor probe;
  return MakeSocket(SOCK_DGRAM, probe) == 0 && ConnectSocket(probe, address) == ECONNREFUSED;
}

// Two servers that find the same file stale would remove each other's new one; so they take turns. The lock is the
// folder's and leaves nothing behind. A stranger who holds on to it delays a start by a second and no more.
Descriptor LockFolderOf(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int tries = 0; tries < 100 && lock && flock(lock.Get(), LOCK_EX | LOCK_NB) != 0; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return lock;
}

int ReplaceStale(const Descriptor& socket, const sockaddr_un& address) {
  const Descriptor turn = LockFolderOf(address.sun_path);
  return IsStale(address) && unlink(address.sun_path) == 0 ? BindSocket(socket, address) : EADDRINUSE;
}

}  // namespace

int ListenAt(const std::string& path, Descriptor& listener) {
  sockaddr_un address;
  if (const int error = MakeAddress(path, address); error != 0) return error;
  Descriptor fresh;
  if (const int error = MakeSocket(SOCK_STREAM, fresh); error != 0) return error;
  // The file takes its mode from the socket; so there is no moment in which it is open to others.
  if (fchmod(fresh.Get(), 0600) != 0) return errno;
  int error = BindSocket(fresh, address);
  if (error == EADDRINUSE) error = ReplaceStale(fresh, address);
  if (error != 0) return error;
  constexpr int kBacklog = 0;  // stands for one
  if (listen(fresh.Get(), kBacklog) != 0) {
    error = errno;
    NameRegistry::GetInstance().Remove(NameRegistry::Kind::Socket, path);
    return error;
  }
  listener = std::move(fresh);
  return 0;
}

int ConnectTo(const std::string& path, Descriptor& link) {
  sockaddr_un address;
  if (const int error = MakeAddress(path, address); error != 0) return error;
  Descriptor fresh;
  if (const int error = MakeSocket(SOCK_STREAM, fresh); error != 0) return error;
  if (const int error = ConnectSocket(fresh, address); error != 0) return error;
  if (!PeerIsOwnUser(fresh.Get())) return EACCES;
  link = std::move(fresh);
  return 0;
}

bool PeerIsOwnUser(int link) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(link, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

}  // namespace TESSARIN_COMMON
