#include "NamedPipe.h"

#include <algorithm>
#include <utility>

#include "common/Platform.h"
#include "log/LogInstance.h"

namespace TESSARIN_COMMON {

namespace {
constexpr NamedPipe::Handle kNoHandle = -1;
}

NamedPipe::NamedPipe(std::string name, const LinkFailures& failures)
    : name_(std::move(name)), mode_(Mode::Named), failures_(failures), inherited_(kNoHandle) {}

NamedPipe::NamedPipe(Handle handle, const LinkFailures& failures)
    : mode_(Mode::Inherited), failures_(failures), inherited_(handle) {}

NamedPipe::~NamedPipe() {
  // A handle that no connection ever took is still this object's to close.
  if (inherited_ != kNoHandle) PipeStream::Create()->Adopt(inherited_);
}

bool NamedPipe::Send(const void* data, std::uint32_t size) {
  if (data == nullptr || size == 0) return false;
  return SendFrame({}, {static_cast<const char*>(data), size});
}

bool NamedPipe::SendFrame(std::span<const char> prefix, std::span<const char> body) {
  const auto stream = Stream();
  if (stream == nullptr || !stream->HasLink()) return false;
  const int error = stream->Send(prefix, body);
  if (error == 0) return true;
  if (error == PipeStream::kNoRoom) {
    TESSARIN_LOG::LogAt("Ravo", TESSARIN_LOG::Level::Unexpected,
                        "pipe send refused, length:{}, the peer leaves too much unread, bound:{}",
                        prefix.size() + body.size(), kMaxPendingBytes);
  } else {
    Report(failures_.send, error);
  }
  return false;
}

void NamedPipe::Flush() const {
  if (const auto stream = Stream()) stream->Flush();
}

bool NamedPipe::RecvData(void* buffer, std::uint32_t size) {
  return PostRead(buffer, size, PipeStream::Until::Full);
}

bool NamedPipe::PostRead(void* buffer, std::uint32_t size, PipeStream::Until until) {
  const auto stream = Stream();
  if (stream == nullptr || !stream->HasLink() || buffer == nullptr || size == 0) return false;
  const int error = stream->PostRead(buffer, size, until);
  if (error != 0) Report(failures_.recv, error);
  return error == 0;
}

std::int32_t NamedPipe::WaitRecvData() {
  const auto stream = Stream();
  const PipeStream::Read read = stream != nullptr ? stream->WaitRead() : PipeStream::WaitOnNothing();
  if (read.result == PipeStream::kWoken) Report(failures_.woken);
  if (read.result == PipeStream::kBroken) Report(failures_.wait, read.error);
  return read.result;
}

void NamedPipe::RecvRaw(IIpcDataNotify* notify) {
  if (notify == nullptr) return;
  rawBuffer_.fill(0);
  constexpr std::uint32_t kSize = sizeof rawBuffer_ - 1;
  while (PostRead(rawBuffer_.data(), kSize, PipeStream::Until::Any)) {
    // While the read is posted the buffer is the system's, so nothing is cleared between two waits.
    std::int32_t received = 0;
    while (received == 0) received = WaitRecvData();
    if (received < 0) return;
    notify->OnIpcData(rawBuffer_.data(), static_cast<std::uint32_t>(received));
    std::fill_n(rawBuffer_.begin(), received, '\0');
  }
}

void NamedPipe::Report(const PipeFailure& failure) const {
  if (IIpcErrorReporter* const reporter = reporter_) reporter->OnIpcError(failure.code, failure.text);
}

void NamedPipe::Report(const PipeFailure& failure, int systemError) const {
  Report(failure);
  if (IIpcErrorReporter* const reporter = reporter_) {
    reporter->OnIpcError(systemError, SystemErrorText(systemError).c_str());
  }
}

bool NamedPipe::CreatePort(PipeStream& stream) const {
  const int error = stream.CreatePort();
  if (error != 0) Report(kCreatePortFailed, error);
  return error == 0;
}

std::shared_ptr<PipeStream> NamedPipe::Stream() const {
  const std::lock_guard lock(mutex_);
  return stream_;
}

void NamedPipe::SetStream(std::shared_ptr<PipeStream> stream) {
  const std::lock_guard lock(mutex_);
  stream_.swap(stream);  // the old one goes after the unlock, where nobody else uses it
}

NamedPipe::Handle NamedPipe::TakeInherited() {
  const std::lock_guard lock(mutex_);
  return std::exchange(inherited_, kNoHandle);
}

}  // namespace TESSARIN_COMMON
