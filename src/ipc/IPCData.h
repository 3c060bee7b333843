#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ContentView.h"

namespace TESSARIN_COMMON {

// Kinds of content.
inline constexpr const char* kContentProto = "PROTO";  // a binary payload; nothing sends one
inline constexpr const char* kContentJson = "JSON";

// Kinds of messages. The slot kinds belong to the vocabulary of the clients; the server neither sends nor tests them.
inline constexpr const char* kMessageCall = "CALL";
inline constexpr const char* kMessageCallResponse = "CALL_RESPONSE";
inline constexpr const char* kMessageCallResponseError = "CALL_RESPONSE_ERROR";
inline constexpr const char* kMessageEvent = "EVENT";
inline constexpr const char* kMessageSlotTrigger = "SLOT_TRIGGER";
inline constexpr const char* kMessageSlotResponse = "SLOT_RESPONSE";
inline constexpr const char* kMessageSlotPlugin = "SLOT_PLUGIN";

// The envelope of every message: a request, its reply (the same envelope sent back), or an event. Belongs to one
// thread at a time.
struct IPCData {
  std::string module_name;  // echoed
  std::string content_type;
  std::string message_type;
  std::string message_key;  // method or event; Pascal case once a request was received
  std::string context_id;   // echoed
  std::int64_t taskId = 0;  // the client's number of the call, echoed; 0 in events
  std::string content;      // JSON text: the arguments, or the result
  ContentView parsed;       // of `content`; not on the wire
};

// The text on the wire: {"method_name":{...},"content":"..."} without white space, every member written.
[[nodiscard]] std::string Serialize(const IPCData& data);

// Reads the members that are there, in the order of the record, and leaves the others alone. Fails with the texts of
// the JSON layer: a parse failure, "not object", "IsString()", "data_.f.flags & kInt64Flag"; what was read before the
// failure stays. Does not parse `content`.
void ParseIpcData(std::string_view text, IPCData& data);

// The key of a request as the name of its handler: get_current_volume gives GetCurrentVolume. Nothing is lowered.
[[nodiscard]] std::string MessageKeyToMethodName(std::string_view key);
// The name of an event as its key: OnDetectError gives ON_DETECT_ERROR.
[[nodiscard]] std::string EventNameToMessageKey(std::string_view name);

// An event as it goes out. The name is converted; content is the text of the argument array.
[[nodiscard]] IPCData MakeEvent(std::string_view eventName, std::string content);
// An event whose key goes out as it stands: "connect" and "INIT".
[[nodiscard]] IPCData MakeSessionEvent(std::string_view key, std::string content);

}  // namespace TESSARIN_COMMON
