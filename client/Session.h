#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ipc/IPCClient.h"

namespace ravo::client {

struct Reply {
  enum class Outcome {
    Ok,
    Error,     // the server answered that it cannot; `content` says why
    TimedOut,  // the answer, if it still comes, is dropped
    Closed,    // there is no session, or it ended before the answer came
  };

  Outcome outcome = Outcome::Closed;
  std::string key;      // the method's name as the server spells it
  std::string content;  // JSON text; of an error a plain text

  [[nodiscard]] bool Ok() const { return outcome == Outcome::Ok; }
};

struct Event {
  std::string key;      // upper snake case, but "connect" and "INIT"
  std::string content;  // JSON text, in general an array
};

// One session with a server, from Connect to its end. The server serves one client at a time and ends when that one
// leaves. Any thread calls and waits. Listeners and call-backs run on the session's own thread, with no lock held;
// they must return quickly and may call with CallAsync, but not wait: nothing is received meanwhile.
class Session : private TESSARIN_COMMON::IIPCDelegate {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using Callback = std::function<void(const Reply&)>;
  using Listener = std::function<void(const Event&)>;

  explicit Session(std::string pipeName);
  // Closes the session. Not on the session's own thread.
  ~Session() override;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Both before Connect. A listener hears every event; each event is also kept for WaitEvent.
  void AddListener(Listener listener);
  // Called once, when the session has ended from either side.
  void SetOnClosed(std::function<void()> onClosed);

  // Tries to reach the server for about that time, at least once; false if nobody is there. Once in a session's life.
  bool Connect(std::chrono::seconds timeout);
  void Close();

  // Calls a method, in snake or Pascal case, with a JSON array of arguments. Replies come in any order and find their
  // call by its number. Text that is no JSON would end the server: it is refused with a std::invalid_argument. The
  // call-back is called exactly once unless the call is forgotten, and on the caller's thread if nothing can be sent.
  std::int64_t CallAsync(std::string_view method, std::string_view arguments, Callback callback);
  void Forget(std::int64_t call);
  Reply Call(std::string_view method, std::string_view arguments, Milliseconds timeout);

  // Takes the oldest event that was not taken yet: of that key, or of any if the key is empty. Nothing after the
  // time-out or when the session has ended and none is left. The last kMaxEvents are kept.
  std::optional<Event> WaitEvent(std::string_view key, Milliseconds timeout);
  bool WaitClosed(Milliseconds timeout);
  // The server's process; 0 if there is no connection, or the system does not tell.
  [[nodiscard]] std::uint32_t ServerProcessId() const { return endpoint_.ServerProcessId(); }

  static constexpr std::size_t kMaxEvents = 10000;

 private:
  void OnConnected() override {}
  void OnDisconnect() override;
  void OnDataReceived(const char* data, std::uint32_t length) override;
  void OnErrorReport(std::int32_t, const char*) override {}

  void Answer(std::int64_t call, const Reply& reply);
  void Publish(Event event);
  [[nodiscard]] Callback TakeCallback(std::int64_t call);

  std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  bool open_ = false;
  bool ended_ = false;
  std::int64_t lastCall_ = 0;
  std::map<std::int64_t, Callback> waiting_;
  std::deque<Event> events_;

  std::vector<Listener> listeners_;  // fixed before Connect, as is onClosed_
  std::function<void()> onClosed_;
  TESSARIN_COMMON::IPCClient endpoint_;
};

}  // namespace ravo::client
