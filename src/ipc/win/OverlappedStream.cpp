#include "OverlappedStream.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace TESSARIN_COMMON {

namespace {
constexpr DWORD kPipeBufferBytes = 0x10000;
constexpr DWORD kDrainWaitMs = 5000;

int LastError() {
  return static_cast<int>(GetLastError());
}

HANDLE OrNull(HANDLE handle) {
  return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}
}  // namespace

// Followed in memory by the bytes.
struct OverlappedStream::Write {
  OVERLAPPED overlapped;  // first: completions are told by its address
  std::size_t size;

  [[nodiscard]] char* Bytes() { return reinterpret_cast<char*>(this + 1); }
};

std::shared_ptr<PipeStream> PipeStream::Create() {
  return std::make_shared<OverlappedStream>();
}

PipeStream::Read PipeStream::WaitOnNothing() {
  return {kBroken, ERROR_INVALID_HANDLE};
}

OverlappedStream::~OverlappedStream() {
  CloseLink();
  SettleRead();
  DrainWrites();
}

int OverlappedStream::CreatePort() {
  port_.Reset(CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 0));
  if (!port_) return LastError();
  readDone_.Reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  return readDone_ ? 0 : LastError();
}

int OverlappedStream::Serve(const std::string& name) {
  pipe_.Reset(OrNull(CreateNamedPipeA(name.c_str(), FILE_FLAG_OVERLAPPED | PIPE_ACCESS_DUPLEX,
                                      PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT, PIPE_UNLIMITED_INSTANCES,
                                      kPipeBufferBytes, kPipeBufferBytes, INFINITE, security_)));
  return pipe_ ? 0 : LastError();
}

int OverlappedStream::FindServer(const std::string& name) {
  constexpr DWORD kWaitMs = 1;
  return WaitNamedPipeA(name.c_str(), kWaitMs) ? 0 : LastError();
}

int OverlappedStream::Connect(const std::string& name) {
  pipe_.Reset(OrNull(CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, security_, OPEN_EXISTING,
                                 FILE_FLAG_OVERLAPPED, nullptr)));
  return pipe_ ? 0 : LastError();
}

void OverlappedStream::Adopt(Handle handle) {
  pipe_.Reset(OrNull(reinterpret_cast<HANDLE>(handle)));
}

int OverlappedStream::Bind(const void* key) {
  const HANDLE bound = CreateIoCompletionPort(pipe_.Get(), port_.Get(), reinterpret_cast<ULONG_PTR>(key), 0);
  return bound != nullptr ? 0 : LastError();
}

int OverlappedStream::WaitPeer() {
  const KernelHandle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  if (!event) return LastError();
  {
    const std::lock_guard lock(mutex_);
    connect_ = {};
    connect_.hEvent = event.Get();
    // An overlapped connect never succeeds at once; if it says so, it counts as failed.
    const int error = ConnectNamedPipe(pipe_.Get(), &connect_) ? ERROR_PIPE_NOT_CONNECTED : LastError();
    // A client that came before this wait counts, and so does one that has left again: what it wrote can be read.
    if (error == ERROR_PIPE_CONNECTED || error == ERROR_NO_DATA) return 0;
    if (error != ERROR_IO_PENDING) return error;
    connecting_ = true;
    if (woken_) CancelIoEx(pipe_.Get(), &connect_);  // DropPeer came too early to find this connect
  }
  DWORD unused = 0;
  const int error = GetOverlappedResult(pipe_.Get(), &connect_, &unused, TRUE) ? 0 : LastError();
  const std::lock_guard lock(mutex_);
  connecting_ = false;
  return error;
}

bool OverlappedStream::HasLink() const {
  const std::lock_guard lock(mutex_);
  return static_cast<bool>(pipe_);
}

std::uint32_t OverlappedStream::ServerProcessId() const {
  const std::lock_guard lock(mutex_);
  ULONG id = 0;
  return pipe_ && GetNamedPipeServerProcessId(pipe_.Get(), &id) ? id : 0;
}

int OverlappedStream::DropPeer() {
  const std::lock_guard lock(mutex_);
  woken_ = true;
  PostQueuedCompletionStatus(port_.Get(), 0, 0, nullptr);
  const int error = DisconnectNamedPipe(pipe_.Get()) ? 0 : LastError();
  // Some systems refuse to disconnect a pipe that still listens, and leave its waiter waiting.
  if (connecting_) CancelIoEx(pipe_.Get(), &connect_);
  return error;
}

void OverlappedStream::CloseLink() {
  const std::lock_guard lock(mutex_);
  if (!pipe_) return;
  if (port_) PostQueuedCompletionStatus(port_.Get(), 0, 0, nullptr);
  CancelIoEx(pipe_.Get(), nullptr);
  pipe_.Reset();
}

int OverlappedStream::Send(std::span<const char> head, std::span<const char> body) {
  const std::lock_guard lock(mutex_);
  if (!pipe_) return ERROR_INVALID_HANDLE;
  if (body.size() > kMaxPendingBytes - std::min(kMaxPendingBytes, head.size() + pendingBytes_)) return kNoRoom;
  const std::size_t size = head.size() + body.size();
  void* const memory = ::operator new(sizeof(Write) + size, std::nothrow);
  if (memory == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  auto* const write = new (memory) Write{{}, size};
  std::copy(body.begin(), body.end(), std::copy(head.begin(), head.end(), write->Bytes()));
  pendingBytes_ += size;
  ++writes_;
  const BOOL done = WriteFile(pipe_.Get(), write->Bytes(), static_cast<DWORD>(size), nullptr, &write->overlapped);
  const int error = done ? 0 : LastError();
  if (error == 0 || error == ERROR_IO_PENDING) return 0;
  FreeWrite(write);
  return error;
}

int OverlappedStream::PostRead(void* buffer, std::uint32_t size, Until) {
  const std::lock_guard lock(mutex_);
  if (readPosted_) return 0;
  buffer_ = buffer;
  size_ = size;
  return PostReadLocked();
}

int OverlappedStream::PostReadLocked() {
  ResetEvent(readDone_.Get());
  read_ = {};
  read_.hEvent = readDone_.Get();
  const int error = ReadFile(pipe_.Get(), buffer_, size_, nullptr, &read_) ? 0 : LastError();
  readPosted_ = error == 0 || error == ERROR_IO_PENDING;
  return readPosted_ ? 0 : error;
}

PipeStream::Read OverlappedStream::WaitRead() {
  DWORD bytes = 0;
  ULONG_PTR key = 0;
  OVERLAPPED* done = nullptr;
  const auto waitMs = static_cast<DWORD>(kReadWait.count());
  const BOOL taken = GetQueuedCompletionStatus(port_.Get(), &bytes, &key, &done, waitMs);
  DWORD error = taken ? ERROR_SUCCESS : GetLastError();
  if (done == nullptr && error == WAIT_TIMEOUT) return {0, 0};
  if (error == ERROR_MORE_DATA) error = ERROR_SUCCESS;
  const Read read = TakeCompletion(done, bytes, error);
  if (read.result < 0) SettleRead();
  return read;
}

PipeStream::Read OverlappedStream::TakeCompletion(OVERLAPPED* done, DWORD bytes, DWORD error) {
  const std::lock_guard lock(mutex_);
  const bool isRead = done == &read_;
  if (isRead) {
    readPosted_ = false;
  } else if (done != nullptr && done != &connect_) {
    FreeWrite(reinterpret_cast<Write*>(done));
  }
  if (error != ERROR_SUCCESS) return {kBroken, static_cast<int>(error)};
  if (done == nullptr) return {kWoken, 0};
  if (!isRead) return {0, 0};
  if (bytes > 0) return {static_cast<std::int32_t>(bytes), 0};
  // The peer wrote nothing at all; the reader still waits for something.
  const int postError = PostReadLocked();
  return postError == 0 ? Read{0, 0} : Read{kBroken, postError};
}

void OverlappedStream::SettleRead() {
  if (!readPosted_) return;
  {
    const std::lock_guard lock(mutex_);
    if (pipe_) CancelIoEx(pipe_.Get(), &read_);
  }
  WaitForSingleObject(readDone_.Get(), INFINITE);
  readPosted_ = false;  // its completion lies in the port, which is not asked for reads again
}

void OverlappedStream::FreeWrite(Write* write) {
  pendingBytes_ -= write->size;
  --writes_;
  ::operator delete(write);
}

// The pipe is closed, so every write has ended or is about to. One that the system does not let go of within the
// bound is left to it.
void OverlappedStream::DrainWrites() {
  while (writes_ > 0) {
    DWORD bytes = 0;
    ULONG_PTR key = 0;
    OVERLAPPED* done = nullptr;
    const BOOL taken = GetQueuedCompletionStatus(port_.Get(), &bytes, &key, &done, kDrainWaitMs);
    if (!taken && done == nullptr) return;
    if (done != nullptr && done != &read_ && done != &connect_) FreeWrite(reinterpret_cast<Write*>(done));
  }
}

}  // namespace TESSARIN_COMMON
