#include "NamedPipeServer.h"

#include <new>
#include <utility>

namespace TESSARIN_COMMON {

NamedPipeServer::NamedPipeServer(std::string name) : NamedPipe(std::move(name), kServerLinkFailures) {}

NamedPipeServer::NamedPipeServer(Handle handle) : NamedPipe(handle, kServerLinkFailures) {}

bool NamedPipeServer::Open() try {
  auto stream = PipeStream::Create();
  if (!CreatePort(*stream)) return false;
  if (mode_ == Mode::Inherited) {
    stream->Adopt(TakeInherited());
  } else if (stream->Serve(name_) != 0) {
    return false;  // the one failure without a report
  }
  if (const int error = stream->Bind(this); error != 0) {
    stream.reset();
    Report(kServerBindFailed, error);
    return false;
  }
  SetStream(std::move(stream));
  return true;
} catch (const std::bad_alloc&) {
  Report(kCreatePortFailed);
  return false;
}

bool NamedPipeServer::WaitConnect() {
  const auto stream = Stream();
  if (stream == nullptr || !stream->HasLink()) return false;
  if (mode_ == Mode::Inherited) return true;
  const int error = stream->WaitPeer();
  if (error != 0) Report(kServerConnectFailed, error);
  return error == 0;
}

bool NamedPipeServer::Disconnect() {
  const auto stream = Stream();
  if (stream == nullptr || !stream->HasLink()) return true;
  const int error = stream->DropPeer();
  if (error != 0) Report(kServerDisconnectFailed, error);
  return error == 0;
}

bool NamedPipeServer::Close() {
  // At once, although a sender on another thread may hold the stream for a moment longer.
  if (const auto stream = Stream()) stream->CloseLink();
  SetStream(nullptr);
  return true;
}

}  // namespace TESSARIN_COMMON
