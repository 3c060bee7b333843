#include "Session.h"

#include <algorithm>
#include <future>
#include <stdexcept>

#include "MethodKey.h"
#include "common/JsonNode.h"
#include "ipc/IPCData.h"

namespace ravo::client {
namespace {

using TESSARIN_COMMON::IPCData;

void RequireJson(std::string_view arguments) {
  try {
    const TESSARIN_COMMON::JsonNode parsed(arguments);
  } catch (const std::runtime_error& failure) {
    throw std::invalid_argument(std::string("the arguments are no JSON: ") + failure.what());
  }
}

std::string CallText(std::string_view method, std::string_view arguments, std::int64_t call) {
  IPCData data;
  data.content_type = TESSARIN_COMMON::kContentJson;
  data.message_type = TESSARIN_COMMON::kMessageCall;
  data.message_key = MethodKey(method);
  data.taskId = call;
  data.content = arguments;
  return TESSARIN_COMMON::Serialize(data);
}

}  // namespace

Session::Session(std::string pipeName) : endpoint_(std::move(pipeName), TESSARIN_COMMON::IpcEndpoint::kFramed) {
  endpoint_.SetDelegate(this);
}

Session::~Session() {
  Close();
}

void Session::AddListener(Listener listener) {
  listeners_.push_back(std::move(listener));
}

void Session::SetOnClosed(std::function<void()> onClosed) {
  onClosed_ = std::move(onClosed);
}

bool Session::Connect(std::chrono::seconds timeout) {
  {
    const std::lock_guard lock(mutex_);
    if (open_ || ended_) return false;
    open_ = true;  // before the first event can come
  }
  if (endpoint_.Start(static_cast<std::uint32_t>(timeout.count()))) return true;
  const std::lock_guard lock(mutex_);
  open_ = false;
  return false;
}

void Session::Close() {
  {
    const std::lock_guard lock(mutex_);
    if (!open_ && !ended_) return;
  }
  endpoint_.Stop();
}

std::int64_t Session::CallAsync(std::string_view method, std::string_view arguments, Callback callback) {
  RequireJson(arguments);
  std::int64_t call = 0;
  bool open = false;
  {
    const std::lock_guard lock(mutex_);
    call = ++lastCall_;
    open = open_;
    waiting_.emplace(call, std::move(callback));
  }
  if (!open) {
    Answer(call, {});
    return call;
  }
  const std::string text = CallText(method, arguments, call);
  if (!endpoint_.Send(text.data(), static_cast<std::uint32_t>(text.size()))) Answer(call, {});
  return call;
}

void Session::Forget(std::int64_t call) {
  (void)TakeCallback(call);
}

Reply Session::Call(std::string_view method, std::string_view arguments, Milliseconds timeout) {
  const auto promise = std::make_shared<std::promise<Reply>>();
  auto future = promise->get_future();
  const auto call = CallAsync(method, arguments, [promise](const Reply& reply) { promise->set_value(reply); });
  if (future.wait_for(timeout) == std::future_status::ready) return future.get();
  Forget(call);
  return {Reply::Outcome::TimedOut, std::string(method), ""};
}

std::optional<Event> Session::WaitEvent(std::string_view key, Milliseconds timeout) {
  std::unique_lock lock(mutex_);
  auto found = events_.end();
  changed_.wait_for(lock, timeout, [&] {
    found = std::find_if(events_.begin(), events_.end(), [&](const Event& e) { return key.empty() || e.key == key; });
    return found != events_.end() || ended_;
  });
  if (found == events_.end()) return std::nullopt;
  Event event = std::move(*found);
  events_.erase(found);
  return event;
}

bool Session::WaitClosed(Milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return ended_; });
}

void Session::OnDisconnect() {
  std::map<std::int64_t, Callback> unanswered;
  {
    const std::lock_guard lock(mutex_);
    if (ended_) return;
    open_ = false;
    ended_ = true;
    unanswered.swap(waiting_);
  }
  changed_.notify_all();
  for (const auto& [call, callback] : unanswered) callback({});
  if (onClosed_) onClosed_();
}

void Session::OnDataReceived(const char* data, std::uint32_t length) {
  IPCData message;
  try {
    TESSARIN_COMMON::ParseIpcData({data, length}, message);
  } catch (const std::runtime_error&) {
    return;  // not what a server sends; whoever waits for a reply has a time-out
  }
  if (message.message_type == TESSARIN_COMMON::kMessageEvent) {
    Publish({std::move(message.message_key), std::move(message.content)});
  } else if (message.message_type == TESSARIN_COMMON::kMessageCallResponse) {
    Answer(message.taskId, {Reply::Outcome::Ok, message.message_key, message.content});
  } else if (message.message_type == TESSARIN_COMMON::kMessageCallResponseError) {
    Answer(message.taskId, {Reply::Outcome::Error, message.message_key, message.content});
  }
}

void Session::Answer(std::int64_t call, const Reply& reply) {
  if (const Callback callback = TakeCallback(call)) callback(reply);
}

void Session::Publish(Event event) {
  for (const auto& listener : listeners_) listener(event);
  {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
    if (events_.size() > kMaxEvents) events_.pop_front();
  }
  changed_.notify_all();
}

Session::Callback Session::TakeCallback(std::int64_t call) {
  const std::lock_guard lock(mutex_);
  const auto found = waiting_.find(call);
  if (found == waiting_.end()) return nullptr;
  Callback callback = std::move(found->second);
  waiting_.erase(found);
  return callback;
}

}  // namespace ravo::client
