#include "SocketStream.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "SocketName.h"
#include "common/BriefLock.h"
#include "common/posix/NameRegistry.h"

namespace TESSARIN_COMMON {

std::shared_ptr<PipeStream> PipeStream::Create() {
  return std::make_shared<SocketStream>();
}

PipeStream::Read PipeStream::WaitOnNothing() {
  return {kBroken, EBADF};
}

SocketStream::~SocketStream() {
  StopListening();
}

int SocketStream::CreatePort() {
  port_.Reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  return port_ ? 0 : errno;
}

int SocketStream::Serve(const std::string& name) {
  name_ = name;
  const std::lock_guard lock(mutex_);
  const int error = ListenAt(name, listener_);
  NoteLink();
  return error;
}

int SocketStream::FindServer(const std::string& name) {
  const int error = ConnectTo(name, link_);
  NoteLink();
  const bool nobody = error == ENOENT || error == ECONNREFUSED || error == EAGAIN;
  return nobody ? error : 0;  // Connect meets any other error again, and it is reported as its own
}

int SocketStream::Connect(const std::string& name) {
  const int error = link_ ? 0 : ConnectTo(name, link_);
  NoteLink();
  return error;
}

void SocketStream::Adopt(Handle handle) {
  link_.Reset(static_cast<int>(handle));
  NoteLink();
}

int SocketStream::Bind(const void*) {
  if (!link_) return listener_ ? 0 : EBADF;
  int type = 0;
  socklen_t size = sizeof type;
  if (getsockopt(link_.Get(), SOL_SOCKET, SO_TYPE, &type, &size) != 0) return errno;
  if (type != SOCK_STREAM) return EPROTOTYPE;
  return fcntl(link_.Get(), F_SETFD, FD_CLOEXEC) == 0 ? 0 : errno;
}

int SocketStream::WaitPeer() {
  for (;;) {
    if (const int error = WaitListener(); error != 0) return error;
    const int error = Accept();
    if (error != EAGAIN) return error;
    const std::lock_guard lock(mutex_);
    const int listenError = woken_ ? ECANCELED : ListenAt(name_, listener_);
    NoteLink();
    if (listenError != 0) return listenError;
  }
}

int SocketStream::WaitListener() {
  for (;;) {
    if (woken_) return ECANCELED;
    pollfd waits[] = {{listener_.Get(), POLLIN, 0}, {port_.Get(), POLLIN, 0}};
    if (poll(waits, std::size(waits), -1) < 0 && errno != EINTR) return errno;
    if (waits[0].revents != 0) return 0;
  }
}

int SocketStream::Accept() {
  const std::lock_guard lock(mutex_);
  // The name goes first: once this client is taken, no other one may find it.
  NameRegistry::GetInstance().Remove(NameRegistry::Kind::Socket, name_);
  Descriptor client(accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
  const int error = client ? 0 : errno;
  listener_.Reset();
  if (error == EINTR || error == ECONNABORTED || (client && !PeerIsOwnUser(client.Get()))) return EAGAIN;
  if (client) link_ = std::move(client);
  NoteLink();
  return error;
}

void SocketStream::StopListening() {
  if (!listener_) return;
  NameRegistry::GetInstance().Remove(NameRegistry::Kind::Socket, name_);
  listener_.Reset();
}

void SocketStream::NoteLink() {
  hasLink_ = !closed_ && (link_ || listener_);
}

bool SocketStream::HasLink() const {
  return hasLink_;
}

std::uint32_t SocketStream::ServerProcessId() const {
  const std::lock_guard lock(mutex_);
  ucred peer{};
  socklen_t size = sizeof peer;
  const bool known = link_ && getsockopt(link_.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
  return known ? static_cast<std::uint32_t>(peer.pid) : 0;
}

int SocketStream::DropPeer() {
  Wake();
  const std::lock_guard lock(mutex_);
  FlushLocked();
  queue_.Clear();
  hasPending_ = false;
  // A peer that has gone already is as good as dropped.
  return !link_ || shutdown(link_.Get(), SHUT_RDWR) == 0 || errno == ENOTCONN ? 0 : errno;
}

// The descriptor stays open until nobody can be in a call with it.
void SocketStream::CloseLink() {
  DropPeer();
  const std::lock_guard lock(mutex_);
  closed_ = true;
  StopListening();
  NoteLink();
}

void SocketStream::Wake() {
  woken_ = true;
  eventfd_write(port_.Get(), 1);
}

int SocketStream::Send(std::span<const char> head, std::span<const char> body) {
  const BriefLock lock(mutex_);
  if (!link_ || closed_) return ENOTCONN;
  if (LeaveToReader(head.size() + body.size()) && Queue(head, body)) return 0;
  if (body.size() > kMaxPendingBytes - std::min(kMaxPendingBytes, head.size() + queue_.Size())) return kNoRoom;
  std::size_t sent = 0;
  const bool first = queue_.Empty();
  if (first) {
    iovec parts[] = {{const_cast<char*>(head.data()), head.size()}, {const_cast<char*>(body.data()), body.size()}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = std::size(parts);
    const ssize_t taken = sendmsg(link_.Get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (taken < 0 && errno != EAGAIN && errno != EINTR) return errno;
    sent = taken < 0 ? 0 : static_cast<std::size_t>(taken);
    if (sent == head.size() + body.size()) return 0;
  }
  if (!Queue(head.subspan(std::min(sent, head.size())), body.subspan(std::max(sent, head.size()) - head.size()))) {
    if (sent > 0) GiveUpPeer();
    return ENOMEM;
  }
  if (first) eventfd_write(port_.Get(), 1);  // the reader waits for room from now on
  return 0;
}

bool SocketStream::LeaveToReader(std::size_t size) {
  constexpr std::size_t kMostBytes = std::size_t{32} << 10;  // more is worth a system call of its own
  if (!gathers_) return false;
  if (queue_.Size() + size <= kMostBytes) return true;
  if (queue_.Size() <= kMostBytes) FlushLocked();  // else it waits for the peer
  return false;
}

bool SocketStream::Queue(std::span<const char> head, std::span<const char> body) try {
  queue_.Append(head, body);
  hasPending_ = true;
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

// A message that went out in part cannot be completed: the peer would take the next one for its rest. So the link is
// shut down, which the next send and the reader find for themselves.
void SocketStream::GiveUpPeer() {
  queue_.Clear();
  shutdown(link_.Get(), SHUT_RDWR);
}

void SocketStream::Flush() {
  if (gathers_) FlushPending();  // else what is queued waits for the peer
}

void SocketStream::FlushPending() {
  const BriefLock lock(mutex_);
  FlushLocked();
}

void SocketStream::FlushLocked() {
  while (!queue_.Empty()) {
    const auto front = queue_.Front();
    const ssize_t taken = send(link_.Get(), front.data(), front.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (taken < 0 && (errno == EAGAIN || errno == EINTR)) return;  // the reader's next wait comes back to it
    if (taken < 0) {
      GiveUpPeer();
    } else {
      queue_.Pop(static_cast<std::size_t>(taken));
    }
  }
  hasPending_ = false;
}

int SocketStream::PostRead(void* buffer, std::uint32_t size, Until until) {
  if (target_ != nullptr) return 0;
  if (!link_) return ENOTCONN;
  if (gone_ != 0 && aheadBegin_ == aheadEnd_) return gone_;
  target_ = static_cast<char*>(buffer);
  wanted_ = size;
  filled_ = 0;
  until_ = until;
  return 0;
}

PipeStream::Read SocketStream::WaitRead() {
  if (hasPending_) FlushPending();
  TakeAhead();
  Deadline deadline{};
  for (;;) {
    if (woken_) return Finish(kWoken);
    if (IsReadDone()) return Finish(static_cast<std::int32_t>(filled_));
    if (target_ != nullptr && gone_ != 0) return Finish(kBroken, gone_);
    if (target_ != nullptr && mayHaveMore_) {
      Receive();
      continue;
    }
    if (deadline == Deadline{}) {
      deadline = std::chrono::steady_clock::now() + kReadWait;
      if (target_ != nullptr && !idle_ && ReceiveSoon()) continue;
    }
    if (!Poll(deadline)) {
      idle_ = true;
      return {0, 0};
    }
  }
}

void SocketStream::TakeAhead() {
  if (target_ == nullptr) return;
  const std::size_t count = std::min<std::size_t>(wanted_ - filled_, aheadEnd_ - aheadBegin_);
  std::memcpy(target_ + filled_, ahead_.data() + aheadBegin_, count);
  filled_ += static_cast<std::uint32_t>(count);
  aheadBegin_ += count;
  if (count > 0) ++readsAhead_;
}

bool SocketStream::IsReadDone() const {
  if (target_ == nullptr) return false;
  return filled_ == wanted_ || (filled_ > 0 && (until_ == Until::Any || gone_ != 0));
}

// Fills the posted read, and then the room for what comes after it. Only called when nothing is left there.
void SocketStream::Receive() {
  const std::size_t rest = wanted_ - filled_;
  iovec parts[] = {{target_ + filled_, rest}, {ahead_.data(), ahead_.size()}};
  msghdr message{};
  message.msg_iov = parts;
  message.msg_iovlen = std::size(parts);
  const ssize_t count = recvmsg(link_.Get(), &message, MSG_DONTWAIT);
  if (count <= 0) {
    mayHaveMore_ = false;
    if (count == 0) gone_ = EPIPE;
    if (count < 0 && errno != EAGAIN && errno != EINTR) gone_ = errno;
    return;
  }
  idle_ = false;
  const auto received = static_cast<std::size_t>(count);
  const std::size_t own = std::min(received, rest);
  filled_ += static_cast<std::uint32_t>(own);
  aheadBegin_ = 0;
  aheadEnd_ = received - own;
  readsAhead_ = 0;
  mayHaveMore_ = received == rest + ahead_.size();
}

// Whoever sends meanwhile runs while this thread yields. After several frames it leaves the answers here: one system
// call for all of them, and one wake-up of the peer, who would else take each answer by itself. They go as soon as this
// thread gets a core, whatever the sender does then.
bool SocketStream::ReceiveSoon() {
  gathers_ = std::exchange(readsAhead_, 0) > 1;  // the body of a single frame is one
  const bool found = lookAhead_([this, before = filled_] {
    if (hasPending_) FlushPending();
    Receive();
    return std::size_t{filled_ > before || gone_ != 0};
  });
  if (gathers_) {
    const BriefLock lock(mutex_);
    gathers_ = false;
    FlushLocked();
  }
  return found;
}

bool SocketStream::Poll(Deadline deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
  if (left.count() <= 0) return false;
  const bool pending = hasPending_;
  const bool reads = target_ != nullptr;
  const auto events = static_cast<short>((reads ? POLLIN : 0) | (pending ? POLLOUT : 0));
  pollfd waits[] = {{events != 0 ? link_.Get() : -1, events, 0}, {port_.Get(), POLLIN, 0}};
  if (poll(waits, std::size(waits), static_cast<int>(left.count())) <= 0) return true;  // the deadline decides
  eventfd_t ignored = 0;
  if (waits[1].revents != 0) eventfd_read(port_.Get(), &ignored);
  if (pending && (waits[0].revents & (POLLOUT | POLLERR | POLLHUP)) != 0) FlushPending();
  if ((waits[0].revents & ~POLLOUT) != 0) mayHaveMore_ = true;
  return true;
}

PipeStream::Read SocketStream::Finish(std::int32_t result, int error) {
  target_ = nullptr;
  return {result, error};
}

}  // namespace TESSARIN_COMMON
