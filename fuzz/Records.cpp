// The records that clients send as arguments. The first byte picks the reader, the rest is the content of a request.
#include <exception>
#include <iterator>
#include <type_traits>

#include "Fuzzer.h"
#include "manager/RecordArguments.h"
#include "manager/ServerState.h"
#include "manager/records/MeetingRecords.h"
#include "manager/records/ScreenRecords.h"
#include "manager/records/StreamRecords.h"

namespace {

using namespace TESSARIN_LUMARC;
using TESSARIN_COMMON::JsonText;

template <class T>
void Read(const IPCData& request) {
  T record{};
  try {
    record = ReadRecordArgument<T>(request);
  } catch (const std::exception&) {
    return;  // says what is wrong with the text
  }
  const std::string text = JsonText(record);
  TESSARIN_COMMON::JsonNode root(text);
  T again{};
  ReadOwnValue(root, again);
  constexpr bool kExact = !std::is_same_v<T, TESSARIN_COMMON::ServerOptionUpdate>;  // it has doubles
  fuzz::Expect(!kExact || JsonText(again) == text, "a record that was written reads as it was");
}

constexpr void (*kReaders[])(const IPCData& request) = {Read<TESSARIN_COMMON::ServerOptionUpdate>,
                                                        Read<std::vector<ProcessRecord>>,
                                                        Read<std::vector<Channel>>,
                                                        Read<std::vector<OutputMode>>,
                                                        Read<SubscribeClient>,
                                                        Read<std::vector<slots::ShareMemoryInfo>>,
                                                        Read<IgnoreWindowParam>,
                                                        Read<ThumbnailSize>,
                                                        Read<ResolutionLimit>,
                                                        Read<ScreenCaptureConfig>,
                                                        Read<VideoCaptureConfig>};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  IPCData request;
  request.content = fuzz::Text(data + 1, size - 1);
  try {
    request.parsed.Parse(request.content);
  } catch (const std::exception&) {
    return 0;
  }
  kReaders[data[0] % std::size(kReaders)](request);
  return 0;
}
