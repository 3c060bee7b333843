#pragma once

#include <cstdint>

// The seams between an endpoint's parts, from the transport up to the owner.
namespace TESSARIN_COMMON {

// The reading half of a transport. One thread reads.
class IIpcDataRecv {
 public:
  // Posts one read and returns. The buffer is the transport's until a wait ends with a result that is not 0. False if
  // nothing was posted.
  virtual bool RecvData(void* buffer, std::uint32_t size) = 0;
  // Waits up to 100 ms. Above 0, the posted read is complete with that many bytes; 0, nothing yet, and the read stays
  // posted; below 0, the connection is over.
  virtual std::int32_t WaitRecvData() = 0;
  virtual ~IIpcDataRecv() = default;
};

// Takes what was received, on the reading thread. The data lives until the call returns.
class IIpcDataNotify {
 public:
  virtual void OnIpcData(const char* data, std::uint32_t length) = 0;

 protected:
  ~IIpcDataNotify() = default;
};

// Hears of a transport's failures, on the thread that met them.
class IIpcErrorReporter {
 public:
  virtual ~IIpcErrorReporter() = default;
  virtual void OnIpcError(std::int32_t code, const char* text) = 0;
};

// Reads a whole session from a transport, in whatever form the messages have.
class IIpcRecvHandler {
 public:
  virtual ~IIpcRecvHandler() = default;
  virtual void SetDataRecv(IIpcDataRecv* source) = 0;
  // Blocks until the connection is over.
  virtual void HandleRecv(IIpcDataNotify* notify) = 0;
};

// The owner of an endpoint. Called on the endpoint's thread; it must return quickly, since no message is read
// meanwhile.
class IIPCDelegate {
 public:
  virtual ~IIPCDelegate() = default;
  virtual void OnConnected() = 0;
  virtual void OnDisconnect() = 0;
  // One message. A NUL stands behind the data, which lives until the call returns.
  virtual void OnDataReceived(const char* data, std::uint32_t length) = 0;
  virtual void OnErrorReport(std::int32_t code, const char* text) = 0;
};

}  // namespace TESSARIN_COMMON
