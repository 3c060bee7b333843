#pragma once

#include <string>

#include "common/posix/Descriptor.h"

// Sockets under a path of the file system. All return 0 or the system's error.
namespace TESSARIN_COMMON {

// Listens under the path, for the own user alone. The file of a socket that nobody has open is replaced; a live
// socket, and a file of another kind, are left alone and give EADDRINUSE. One client at most waits to be accepted.
[[nodiscard]] int ListenAt(const std::string& path, Descriptor& listener);

// Never blocks. ENOENT, ECONNREFUSED and EAGAIN mean that no server waits there now; EACCES that it is not ours, but
// another user's, to whom a request must not be told.
[[nodiscard]] int ConnectTo(const std::string& path, Descriptor& link);

// True if the process at the other end runs under this process's user id.
[[nodiscard]] bool PeerIsOwnUser(int link);

}  // namespace TESSARIN_COMMON
