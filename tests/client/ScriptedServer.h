#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "ipc/IPCData.h"
#include "ipc/IPCServer.h"
#include "support/PipeName.h"

namespace client_test {

struct Request {
  std::string key;
  std::string content;
  std::int64_t taskId = 0;
};

// A server that answers as the test says. The script runs on the server's own thread.
class ScriptedServer : private TESSARIN_COMMON::IIPCDelegate {
 public:
  using Script = std::function<void(ScriptedServer&, const Request&)>;

  // Without a script requests are only kept.
  explicit ScriptedServer(Script script = [](ScriptedServer&, const Request&) {}) : script_(std::move(script)) {
    server_.SetDelegate(this);
    server_.Start();
  }

  [[nodiscard]] const std::string& Name() const { return name_; }
  void Stop() { server_.Stop(); }

  void Answer(const Request& request, const std::string& content,
              const char* type = TESSARIN_COMMON::kMessageCallResponse) {
    TESSARIN_COMMON::IPCData reply;
    reply.message_key = TESSARIN_COMMON::MessageKeyToMethodName(request.key);
    reply.message_type = type;
    reply.taskId = request.taskId;
    reply.content = content;
    Send(reply);
  }
  void SendEvent(const std::string& name, const std::string& content) {
    Send(TESSARIN_COMMON::MakeEvent(name, content));
  }

  // The requests so far, "<key> <content>", once there are that many; fewer after a bound.
  std::vector<std::string> WaitRequests(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(30), [&] { return requests_.size() >= count; });
    return requests_;
  }

 private:
  void OnConnected() override {
    const std::lock_guard lock(mutex_);
    connected_ = true;
    changed_.notify_all();
  }
  void OnDisconnect() override {}
  void OnErrorReport(std::int32_t, const char*) override {}
  void OnDataReceived(const char* data, std::uint32_t length) override {
    TESSARIN_COMMON::IPCData message;
    TESSARIN_COMMON::ParseIpcData({data, length}, message);
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(message.message_key + " " + message.content);
    }
    changed_.notify_all();
    script_(*this, {message.message_key, message.content, message.taskId});
  }
  // A client may take itself for connected before this side does.
  void Send(const TESSARIN_COMMON::IPCData& data) {
    {
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, std::chrono::seconds(30), [this] { return connected_; });
    }
    const std::string text = TESSARIN_COMMON::Serialize(data);
    server_.Send(text.data(), static_cast<std::uint32_t>(text.size()));
  }

  const std::string name_ = support::UniquePipeName();
  const Script script_;
  std::mutex mutex_;  // guards connected_ and requests_
  std::condition_variable changed_;
  bool connected_ = false;
  std::vector<std::string> requests_;
  TESSARIN_COMMON::IPCServer server_{name_};
};

}  // namespace client_test
