// docs/protocol.md against the tables in the code and against the contract, both ways.
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <set>

#include "Contract.h"
#include "ServerProcess.h"
#include "ipc/IPCData.h"
#include "manager/MeetingManager.h"
#include "manager/RavoManager.h"
#include "manager/ScreenManager.h"
#include "manager/ServerState.h"
#include "manager/SubscribeManager.h"
#include "manager/Tables.h"
#include "manager/records/MeetingRecords.h"
#include "manager/records/ScreenRecords.h"
#include "manager/records/StreamRecords.h"
#include "monitor/MeetingMonitor.h"

namespace integration {
namespace {

using namespace TESSARIN_LUMARC;

// The rows below all table heads that begin with this cell, cell by cell.
std::vector<std::vector<std::string>> RowsOf(const std::string& head) {
  std::ifstream file(DOCS_FOLDER "/protocol.md");
  std::vector<std::vector<std::string>> rows;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("| " + head + " |")) inside = true;
    if (!line.starts_with('|')) inside = false;
    if (inside && line.starts_with("| `")) rows.push_back(Split(line.substr(2, line.size() - 4), " | "));
  }
  EXPECT_FALSE(rows.empty()) << head;
  return rows;
}

// The words between backticks.
std::vector<std::string> Names(const std::string& cell) {
  std::vector<std::string> names;
  const auto pieces = Split(" " + cell, "`");
  for (std::size_t i = 1; i < pieces.size(); i += 2) names.push_back(pieces[i]);
  return names;
}

std::string LettersOf(const std::string& cell) {
  if (cell == "none") return "";
  if (cell == "not read") return "x";
  if (cell.starts_with("the content is ")) return "r";
  static const std::map<std::string, char> letters{{"string", 's'}, {"int", 'i'},    {"bool", 'b'},
                                                   {"float", 'f'},  {"object", 'r'}, {"not read", 'x'}};
  std::string text;
  for (const auto& argument : Split(cell, ", ")) {
    const auto colon = argument.find(": ");
    if (colon == std::string::npos) continue;  // a remark
    const auto letter = letters.find(argument.substr(colon + 2));
    text += letter == letters.end() ? 'r' : letter->second;
  }
  return text;
}

std::string ReplyOf(const std::string& cell) {
  const std::string first = Split(Split(cell, ",")[0], ";")[0];
  if (first == "**never**") return "never";
  if (first.starts_with("always ")) return '=' + first.substr(7);
  return Replaced(first, "`", "");
}

template <class... Lists>
std::set<std::string> MethodsOf(const Lists&... lists) {
  std::set<std::string> methods;
  const auto add = [&](const auto& rows) {
    for (const auto& row : rows) EXPECT_TRUE(methods.insert(row.method).second) << row.method;
  };
  (add(lists), ...);
  return methods;
}

TEST(Docs, NameEveryMethodWithItsArgumentsReplyAndEntries) {
  std::map<std::string, const std::vector<std::string>> documented;
  for (const auto& row : RowsOf("Method")) {
    if (row.size() != 4) continue;  // the chains
    EXPECT_TRUE(documented.emplace(Names(row[0])[0], row).second) << row[0];
  }
  std::set<std::string> promised;
  for (const auto& method : AllMethods()) {
    SCOPED_TRACE(method.name);
    EXPECT_TRUE(promised.insert(method.name).second);
    const auto row = documented.find(method.name);
    ASSERT_NE(row, documented.end());
    EXPECT_EQ(LettersOf(row->second[1]), method.arguments);
    EXPECT_EQ(ReplyOf(row->second[2]), method.reply);
    EXPECT_EQ(Names(row->second[3]), method.entries);
  }
  EXPECT_EQ(documented.size(), promised.size());
  EXPECT_EQ(
      MethodsOf(RavoManager::OwnRequests(), MeetingRequestRows(), MeetingManager::OwnRequests(), ScreenRequestRows(),
                ScreenManager::OwnRequests(), DeviceRequestRows(), SubscribeManager::OwnRequests()),
      promised);
}

TEST(Docs, NameEveryEventWithItsKeyAndTheCallbackBehindIt) {
  using Pair = std::pair<std::string, std::string>;  // the callback and the event
  std::set<Pair> documented;
  for (const auto& row : RowsOf("Event")) {
    ASSERT_EQ(row.size(), 4u) << row[0];
    const std::string event = Names(row[0])[0];
    const bool isSession = event == "connect" || event == "INIT";
    EXPECT_EQ(Names(row[1])[0], isSession ? event : TESSARIN_COMMON::EventNameToMessageKey(event));
    for (const auto& source : Names(row[3])) documented.emplace(source, event);
  }
  for (const char* method : {"JoinMeeting", "LeaveMeeting", "StartPreview", "StopPreview"}) {
    std::erase_if(documented, [&](const Pair& pair) { return pair.first == method; });
  }
  std::set<Pair> registered;
  std::set<std::string> entries;
  std::size_t registrations = 0;
  for (const auto rows : {DeviceEventRows(), MeetingEventRows(), ScreenEventRows(), StreamEventRows()}) {
    registrations += rows.size();
    for (const auto& row : rows) {
      entries.insert(row.registration);
      for (const auto& event : Split(row.event, ", ")) registered.emplace(row.registration, event);
    }
  }
  EXPECT_EQ(documented, registered);
  EXPECT_EQ(registrations, 78u);
  EXPECT_EQ(entries.size(), 76u);
}

template <class T>
struct TypeName {
  static std::string Get() {
    if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::uint8_t>) return "bool";
    if constexpr (std::is_same_v<T, double>) return "double";
    if constexpr (std::is_same_v<T, std::int32_t>) return "int32";
    if constexpr (std::is_same_v<T, std::int64_t>) return "int64";
    if constexpr (std::is_same_v<T, std::uint32_t>) return "uint32";
    if constexpr (std::is_same_v<T, std::uint64_t>) return "uint64";
    if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, const char*> || std::is_array_v<T>) {
      return "string";
    }
    return "record";
  }
};
template <class T>
struct TypeName<std::vector<T>> {
  static std::string Get() { return '[' + TypeName<T>::Get() + ']'; }
};

// "name type, name type" in their order.
template <class Record>
std::string MembersOf() {
  std::string members;
  TESSARIN_COMMON::ForEachField<Record>([&](const auto& field) {
    using Member = std::remove_cvref_t<decltype(std::declval<Record&>().*(field.member))>;
    members += (members.empty() ? "" : ", ") + std::string(field.name) + ' ' + TypeName<Member>::Get();
  });
  return members;
}

// The same of the documents: `uid` string, `devices` [`DeviceInfo`].
std::string MembersOf(const std::string& cell) {
  std::string members;
  for (const auto& member : Split(cell, ", ")) {
    const auto names = Names(member);
    std::string type = member.substr(names[0].size() + 3);
    if (names.size() > 1) type = Replaced(type, '`' + names[1] + '`', "record");
    members += (members.empty() ? "" : ", ") + names[0] + ' ' + type;
  }
  return members;
}

TEST(Docs, ListTheMembersOfEveryRecordInTheirOrder) {
  std::map<std::string, std::string> documented;
  for (const auto& row : RowsOf("Record")) documented.emplace(Names(row[0])[0], MembersOf(row[1]));
#define RECORD(type) \
  { #type, MembersOf < type>() }
  using QX_MONITOR::TrackItem;
  using slots::ShareMemoryInfo;
  using slots::StreamStateRecord;
  const std::map<std::string, std::string> written{RECORD(ServerInformation),   RECORD(ServerState),
                                                   RECORD(StreamStateRecord),   RECORD(DeviceGroup),
                                                   RECORD(SubscribeStatus),     RECORD(SubscribeItem),
                                                   RECORD(ProcessRecord),       RECORD(StreamResolution),
                                                   RECORD(SubscribeInfo),       RECORD(SubscribeClient),
                                                   RECORD(ShareMemoryInfo),     RECORD(VideoFrameInfo),
                                                   RECORD(RemoteStreamKey),     RECORD(Channel),
                                                   RECORD(OutputMode),          RECORD(LocalQuality),
                                                   RECORD(RemoteQuality),       RECORD(VolumeInfo),
                                                   RECORD(LocalVolumeInfo),     RECORD(SysStats),
                                                   RECORD(BandwidthEstimation), RECORD(DevicePerformance),
                                                   RECORD(TrackItem),           RECORD(DeviceInfo),
                                                   RECORD(IgnoreWindowParam),   RECORD(WindowHandle),
                                                   RECORD(ThumbnailSize),       RECORD(ResolutionLimit),
                                                   RECORD(ScreenCaptureConfig), RECORD(VideoCaptureConfig),
                                                   RECORD(ScreenRect),          RECORD(DesktopInfo),
                                                   RECORD(WindowRecord),        RECORD(ThumbnailRecord)};
#undef RECORD
  EXPECT_EQ(documented, written);
}

}  // namespace
}  // namespace integration
