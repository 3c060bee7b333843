#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>

#include "../PipeStream.h"
#include "common/OwningHandle.h"

namespace TESSARIN_COMMON {

struct KernelHandleTraits {
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};
using KernelHandle = OwningHandle<KernelHandleTraits>;

// A connection over a named pipe with overlapped I/O and a completion port. Each write is a block of its own that
// lives until its completion was taken from the port; the reader takes them.
class OverlappedStream final : public PipeStream {
 public:
  OverlappedStream() = default;
  ~OverlappedStream() override;

  int CreatePort() override;
  int Serve(const std::string& name) override;
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
  void Flush() override {}  // nothing is kept back
  int PostRead(void* buffer, std::uint32_t size, Until until) override;
  Read WaitRead() override;

 private:
  struct Write;

  Read TakeCompletion(OVERLAPPED* done, DWORD bytes, DWORD error);
  int PostReadLocked();
  // Cancels the posted read and waits until the system has let go of its buffer.
  void SettleRead();
  void FreeWrite(Write* write);
  void DrainWrites();

  KernelHandle port_;
  OVERLAPPED connect_{};  // its completion lies in the port until the reader drops it
  bool connecting_ = false;
  std::atomic<bool> woken_{false};

  mutable std::mutex mutex_;  // guards the pipe against its closing, and what is in flight
  KernelHandle pipe_;
  std::size_t pendingBytes_ = 0;
  std::size_t writes_ = 0;
  SECURITY_ATTRIBUTES* const security_ = nullptr;  // the place to pass them; nobody does

  // The reader's.
  OVERLAPPED read_{};
  KernelHandle readDone_;
  bool readPosted_ = false;
  void* buffer_ = nullptr;
  DWORD size_ = 0;
};

}  // namespace TESSARIN_COMMON
