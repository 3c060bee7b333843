#pragma once

#include <exception>
#include <type_traits>

#include "Requests.h"
#include "common/JsonNode.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

// Reads a record, or a list of records, from a node's own value.
template <class T>
void ReadOwnValue(TESSARIN_COMMON::JsonNode& node, T& out) {
  if constexpr (TESSARIN_COMMON::Record<T>) {
    TESSARIN_COMMON::ReadRecord(node, out);
  } else {
    node.Get("", out);
  }
}

// A client may send a record as the content itself or as the first argument. The content is tried first; if that
// fails, the log gets a line, normal for calls with a second argument, and the first argument is read, over what was
// read up to the failure, which an update of the options then applies. What fails then is caught by nobody.
template <class T>
[[nodiscard]] T ReadRecordArgument(const IPCData& request) {
  T record{};
  try {
    TESSARIN_COMMON::JsonNode root(request.content);
    ReadOwnValue(root, record);
    return record;
  } catch (const std::exception& error) {
    TESSARIN_LOG::Log("parse obj error: {},{},{}", error.what(), request.message_key, request.taskId);
  }
  const ContentView first = request.parsed.Child(0);
  TESSARIN_COMMON::JsonNode node(first.ValueOrNull());
  ReadOwnValue(node, record);
  return record;
}

}  // namespace TESSARIN_LUMARC
