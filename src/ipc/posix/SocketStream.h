#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>

#include "../PipeStream.h"
#include "SendQueue.h"
#include "common/posix/Descriptor.h"
#include "task/LookAhead.h"

namespace TESSARIN_COMMON {

// A connection over a stream socket. The port is an event descriptor that wakes the reader. The reader reads ahead, so
// that the prefix and the body of a small frame cost one system call. It also sends what the socket did not take from a
// sender, and, when several frames have come at once, what senders leave to it meanwhile.
class SocketStream final : public PipeStream {
 public:
  SocketStream() = default;
  ~SocketStream() override;

  int CreatePort() override;
  int Serve(const std::string& name) override;
  // Connects at once where it can: there is no way to ask a live server without doing so.
  int FindServer(const std::string& name) override;
  int Connect(const std::string& name) override;
  void Adopt(Handle handle) override;
  int Bind(const void* key) override;
  int WaitPeer() override;

  [[nodiscard]] bool HasLink() const override;
  [[nodiscard]] std::uint32_t ServerProcessId() const override;
  int DropPeer() override;
  void CloseLink() override;

  int Send(std::span<const char> head, std::span<const char> body) override;
  void Flush() override;
  int PostRead(void* buffer, std::uint32_t size, Until until) override;
  Read WaitRead() override;

 private:
  using Deadline = std::chrono::steady_clock::time_point;

  // Waits for a client at the listener; ECANCELED once the stream was woken.
  int WaitListener();
  // Takes the waiting client and stops to listen. EAGAIN if it is none of ours.
  int Accept();
  void StopListening();  // with the lock

  // The reader's.
  void TakeAhead();
  [[nodiscard]] bool IsReadDone() const;
  void Receive();
  bool ReceiveSoon();                          // gives those who may send a chance to do so
  [[nodiscard]] bool Poll(Deadline deadline);  // false when the time is over
  Read Finish(std::int32_t result, int error = 0);

  void NoteLink();  // with the lock, or before the stream is shared
  void Wake();
  // With the lock: whether so many bytes can go out with what the reader is about to send. If not, what it is about to
  // send goes out now.
  [[nodiscard]] bool LeaveToReader(std::size_t size);
  // With the lock: false without memory.
  [[nodiscard]] bool Queue(std::span<const char> head, std::span<const char> body);
  void FlushPending();
  void FlushLocked();
  void GiveUpPeer();

  Descriptor port_;
  std::string name_;  // served
  std::atomic<bool> woken_{false};
  std::atomic<bool> hasPending_{false};  // queue_ is not empty
  std::atomic<bool> hasLink_{false};     // so that the reader does not wait for a sender to ask for it
  std::atomic<bool> gathers_{false};     // the reader is about to send what is queued; it ends that with the lock

  mutable std::mutex mutex_;  // guards what follows, except that the reader, who sets link_, reads it without
  Descriptor listener_;
  Descriptor link_;
  bool closed_ = false;
  SendQueue queue_;

  // The reader's: the posted read, then what came beyond it.
  char* target_ = nullptr;  // null when nothing is posted
  std::uint32_t wanted_ = 0;
  std::uint32_t filled_ = 0;
  Until until_ = Until::Full;
  std::size_t aheadBegin_ = 0;
  std::size_t aheadEnd_ = 0;
  int readsAhead_ = 0;        // reads that the last reception served, beyond the one it was for
  bool mayHaveMore_ = false;  // the socket was not seen empty; asking it costs less than waiting for it
  bool idle_ = false;         // the last wait was in vain, so nothing is to be expected soon
  TESSARIN_TASK::LookAhead lookAhead_;
  int gone_ = 0;  // why nothing more will come
  std::array<char, std::size_t{64} << 10> ahead_;
};

}  // namespace TESSARIN_COMMON
