#include "NamedPipeClient.h"

#include <new>
#include <thread>
#include <utility>

namespace TESSARIN_COMMON {

namespace {
constexpr std::chrono::milliseconds kRetrySleep{500};

void SleepFor(std::chrono::milliseconds time) {
  std::this_thread::sleep_for(time);
}
}  // namespace

NamedPipeClient::NamedPipeClient(std::string name)
    : NamedPipe(std::move(name), kClientLinkFailures), sleep_(SleepFor) {}

NamedPipeClient::NamedPipeClient(Handle handle) : NamedPipe(handle, kClientLinkFailures), sleep_(SleepFor) {}

bool NamedPipeClient::Connect(std::uint32_t timeoutSeconds) try {
  auto stream = PipeStream::Create();
  if (mode_ == Mode::Inherited) {
    stream->Adopt(TakeInherited());
  } else if (!OpenNamed(*stream, timeoutSeconds)) {
    return false;
  }
  if (!CreatePort(*stream)) return false;
  if (const int error = stream->Bind(this); error != 0) {
    stream.reset();
    Report(kClientBindFailed, error);
    return false;
  }
  SetStream(std::move(stream));
  return true;
} catch (const std::bad_alloc&) {
  Report(kCreatePortFailed);
  return false;
}

bool NamedPipeClient::OpenNamed(PipeStream& stream, std::uint32_t timeoutSeconds) {
  if (name_.empty()) {
    Report(kClientNameEmpty);
    return false;
  }
  if (const auto current = Stream(); current != nullptr && current->HasLink()) {
    Report(kClientConnectedAlready);
    return false;
  }
  int error = 0;
  for (std::uint64_t tries = 2ull * timeoutSeconds + 1; tries > 0; --tries) {
    error = stream.FindServer(name_);
    if (error == 0) break;
    sleep_(kRetrySleep);
  }
  if (error != 0) {
    Report(kClientWaitTimeout, error);
    return false;
  }
  error = stream.Connect(name_);
  if (error != 0) Report(kClientOpenFailed, error);
  return error == 0;
}

std::uint32_t NamedPipeClient::ServerProcessId() const {
  const auto stream = Stream();
  return stream != nullptr ? stream->ServerProcessId() : 0;
}

bool NamedPipeClient::Disconnect() {
  const auto stream = Stream();
  if (stream == nullptr || !stream->HasLink()) {
    Report(kClientNotConnected);
    return false;
  }
  stream->CloseLink();  // the stream stays, so that a reader between two calls finds its wake-up
  return true;
}

}  // namespace TESSARIN_COMMON
