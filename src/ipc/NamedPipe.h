#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "IpcInterfaces.h"
#include "PipeFailures.h"
#include "PipeStream.h"

namespace TESSARIN_COMMON {

// What both ends of a local byte stream share. The stream knows no messages. One thread reads; any thread sends, and
// may end the connection. Nothing is thrown: failures come back as false or below 0, and go to the reporter twice,
// with the transport's code and text and with the system's.
class NamedPipe : public IIpcDataRecv {
 public:
  using Handle = PipeStream::Handle;
  enum class Mode : int { Named = 1, Inherited = 2 };

  ~NamedPipe() override;
  NamedPipe(const NamedPipe&) = delete;
  NamedPipe& operator=(const NamedPipe&) = delete;

  // Hands the bytes over as one write and returns: true means accepted, not delivered. Bytes of concurrent sends never
  // mix. What a slow peer leaves unread is kept, up to kMaxPendingBytes; past that the send is refused, with a line in
  // the log. False with no report if nothing is open or there is nothing to send.
  bool Send(const void* data, std::uint32_t size);
  // The same with a prefix in front, in one write and without a copy of the data beforehand.
  bool SendFrame(std::span<const char> prefix, std::span<const char> body);
  // Sends what the stream kept back to send it with what follows; for one who is about to end the process.
  void Flush() const;

  bool RecvData(void* buffer, std::uint32_t size) override;
  std::int32_t WaitRecvData() override;
  // Reads whatever comes, without framing, until the connection is over.
  void RecvRaw(IIpcDataNotify* notify);

  // Not owned; null for nobody.
  void SetErrorReporter(IIpcErrorReporter* reporter) { reporter_ = reporter; }

 protected:
  NamedPipe(std::string name, const LinkFailures& failures);
  NamedPipe(Handle handle, const LinkFailures& failures);

  void Report(const PipeFailure& failure) const;
  void Report(const PipeFailure& failure, int systemError) const;
  // False, with a report, if the system has no port to give.
  [[nodiscard]] bool CreatePort(PipeStream& stream) const;
  [[nodiscard]] std::shared_ptr<PipeStream> Stream() const;
  void SetStream(std::shared_ptr<PipeStream> stream);
  // The handle that the object was made around, once; it is closed with the stream that takes it.
  [[nodiscard]] Handle TakeInherited();

  const std::string name_;
  const Mode mode_;

 private:
  bool PostRead(void* buffer, std::uint32_t size, PipeStream::Until until);

  const LinkFailures& failures_;
  std::atomic<IIpcErrorReporter*> reporter_{nullptr};
  std::array<char, 65536> rawBuffer_;

  mutable std::mutex mutex_;  // guards what follows
  Handle inherited_;
  std::shared_ptr<PipeStream> stream_;  // null when closed; users hold it as long as their call runs
};

}  // namespace TESSARIN_COMMON
