#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace TESSARIN_COMMON {

// Bytes that may wait for a slow peer. A send that would go past the bound is refused whole.
inline constexpr std::size_t kMaxPendingBytes = std::size_t{64} << 20;

inline constexpr std::chrono::milliseconds kReadWait{100};

// One connection of a transport, as the system has it: the link to the peer, the one posted read, what is on its way
// to the peer, and the port that wakes the reader. NamedPipeServer and NamedPipeClient own the order of the calls, the
// codes and the texts; what stands here is one system call each, nearly.
//
// Any thread sends, drops or closes; one thread waits and reads. The memory behind reads and writes in flight belongs
// to the stream and goes only when the system is done with it.
//
// Calls return 0, or the system's error, or kNoRoom.
class PipeStream {
 public:
  using Handle = std::intptr_t;  // of a pipe on Windows, a connected socket's descriptor elsewhere

  static constexpr int kNoRoom = -1;  // Send: kMaxPendingBytes would be passed
  static constexpr std::int32_t kWoken = -1;
  static constexpr std::int32_t kBroken = -2;

  struct Read {
    std::int32_t result;  // as IIpcDataRecv::WaitRecvData
    int error;            // the system's, with kBroken
  };
  // A posted read of a frame's part ends when all of it is there or the peer is gone; a raw one with the first bytes.
  // A system whose reads know no such choice takes both alike.
  enum class Until { Full, Any };

  static std::shared_ptr<PipeStream> Create();
  virtual ~PipeStream() = default;

  virtual int CreatePort() = 0;
  // Makes the name known to clients. The name has no instance yet, or 0 is not returned.
  virtual int Serve(const std::string& name) = 0;
  // Asks for a server that waits under the name, without blocking for longer than a millisecond.
  virtual int FindServer(const std::string& name) = 0;
  virtual int Connect(const std::string& name) = 0;
  // Takes over a handle that exists already, and closes it one day.
  virtual void Adopt(Handle handle) = 0;
  // Joins link and port. The key tells completions apart for a debugger.
  virtual int Bind(const void* key) = 0;
  // Blocks until a client is there, or DropPeer comes.
  virtual int WaitPeer() = 0;

  // A link exists: one to a peer, or one that waits for a peer.
  [[nodiscard]] virtual bool HasLink() const = 0;
  // The process at the server's end of the link; 0 if the system does not tell.
  [[nodiscard]] virtual std::uint32_t ServerProcessId() const = 0;
  // Wakes the reader and ends the connection; the link stays.
  virtual int DropPeer() = 0;
  // Wakes the reader and closes the link.
  virtual void CloseLink() = 0;

  // Hands both parts over as one write, or none of them. Never blocks for the peer.
  virtual int Send(std::span<const char> head, std::span<const char> body) = 0;
  // Sends what Send has kept back to send it with what follows.
  virtual void Flush() = 0;
  // A read that is posted already stays as it is, and the call succeeds.
  virtual int PostRead(void* buffer, std::uint32_t size, Until until) = 0;
  // Below 0, the read is no longer posted and its buffer is the caller's again.
  virtual Read WaitRead() = 0;
  // What a wait without any stream gives.
  [[nodiscard]] static Read WaitOnNothing();
};

}  // namespace TESSARIN_COMMON
