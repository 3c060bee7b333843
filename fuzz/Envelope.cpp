// The body of a frame: the envelope, the name of its method, and its arguments by place.
#include <exception>

#include "Fuzzer.h"
#include "ipc/IPCData.h"

namespace {

using TESSARIN_COMMON::ContentView;
using TESSARIN_COMMON::IPCData;

void ReadArguments(const ContentView& content) {
  for (std::size_t i = 0; i <= content.Size(); ++i) {
    static_cast<void>(content.String(i));
    static_cast<void>(content.Boolean(i));
    static_cast<void>(content.Double(i));
    static_cast<void>(content.Integer(i));
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  IPCData request;
  IPCData reply;
  try {
    TESSARIN_COMMON::ParseIpcData(fuzz::Text(data, size), request);
    const std::string text = Serialize(request);
    TESSARIN_COMMON::ParseIpcData(text, reply);
    fuzz::Expect(Serialize(reply) == text, "an envelope that was written reads as it was");
    request.message_key = TESSARIN_COMMON::MessageKeyToMethodName(request.message_key);
    static_cast<void>(TESSARIN_COMMON::EventNameToMessageKey(request.message_key));
    request.parsed.Parse(request.content);
    ReadArguments(request.parsed);
  } catch (const std::exception&) {
    // says what is wrong with the text
  }
  return 0;
}
