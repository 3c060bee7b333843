#include "client/Protocol.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "client/MethodKey.h"
#include "ctl/Output.h"
#include "ctl/Table.h"
#include "ipc/IPCData.h"

namespace {

using ravo::client::Events;
using ravo::client::MethodInfo;
using ravo::client::Methods;

std::string Shown(const char* name) {
  const auto found = std::ranges::find(Methods(), name, &MethodInfo::name);
  if (found == Methods().end()) return "";
  return found->group + ": " + found->name + "(" + found->arguments + ") " + found->reply;
}

TEST(Protocol, EveryMethodOfTheDescriptionStandsOnce) {
  EXPECT_EQ(Methods().size(), 163u);
  std::set<std::string> names;
  for (const auto& method : Methods()) names.insert(method.name);
  EXPECT_EQ(names.size(), Methods().size());
  EXPECT_EQ(Shown("SetCurrentVolume"), "Devices: SetCurrentVolume(deviceType: int, volume: int) int");
  EXPECT_EQ(Shown("SetSystemVolume"), "Devices: SetSystemVolume(not read) never");
  EXPECT_EQ(Shown("ScGetDesktopList"), "Screen sharing: ScGetDesktopList(none) [DesktopInfo]");
  EXPECT_EQ(Shown("UpdateServerOption"), "Server: UpdateServerOption(the content is an object, see options.md) null");
}

TEST(Protocol, KeysOfEventsAreThoseThatComeFromTheirNames) {
  EXPECT_GE(Events().size(), 76u);
  for (const auto& event : Events()) {
    const bool asItIs = event.name == "connect" || event.name == "INIT";
    EXPECT_EQ(event.key, asItIs ? event.name : TESSARIN_COMMON::EventNameToMessageKey(event.name));
  }
}

TEST(ReadableEvent, NamesTheArgumentsWhereTheirNumberIsThatOfTheDescription) {
  const struct {
    const char* key;
    const char* content;
    const char* text;
  } cases[] = {
      {"USER_JOIN", "[\n\t\"ann\",\t0\n]", "USER_JOIN  uid: \"ann\", value: 0"},
      {"RTC_SDK_INIT", "[]", "RTC_SDK_INIT"},
      {"USER_JOIN", "[\"ann\"]", "USER_JOIN  \"ann\""},
      {"UNHEARD_OF", "[1, {\"a\": [2]}]", "UNHEARD_OF  1, {\"a\":[2]}"},
      {"USER_JOIN", "no json", "USER_JOIN  no json"},
  };
  for (const auto& [key, content, text] : cases) EXPECT_EQ(ravo::ctl::ReadableEvent({key, content}), text);
  const std::string large = ravo::ctl::ReadableEvent({"X", "[\"" + std::string(5000, 'a') + "\"]"});
  EXPECT_LT(large.size(), 500u);
  EXPECT_THAT(large, testing::EndsWith("... (5002 bytes)"));
}

TEST(Table, ColumnsAreAsWideAsTheirWidestCharacters) {
  ravo::ctl::Table table({"NAME", " SIZE", "LAST"});
  table.Add({"Mikrofon für", "7", "x"});
  table.Add({"b", "1000", ""});
  EXPECT_EQ(table.Text(), "NAME          SIZE  LAST\nMikrofon für     7  x\nb             1000\n");
}

}  // namespace
