#include "monitor/ProcessDump.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <dbghelp.h>

#include <cstring>

#include "../Parking.h"
#include "support/TempFolder.h"

namespace {

template <class T>
T At(const std::string& file, std::size_t offset) {
  T record{};
  if (offset + sizeof record <= file.size()) std::memcpy(&record, file.data() + offset, sizeof record);
  return record;
}

std::vector<std::uint32_t> ThreadsIn(const std::string& dump) {
  std::vector<std::uint32_t> ids;
  const auto header = At<MINIDUMP_HEADER>(dump, 0);
  for (std::size_t i = 0; i < header.NumberOfStreams; ++i) {
    const auto entry = At<MINIDUMP_DIRECTORY>(dump, header.StreamDirectoryRva + i * sizeof(MINIDUMP_DIRECTORY));
    if (entry.StreamType != ThreadListStream) continue;
    const auto count = At<ULONG32>(dump, entry.Location.Rva);
    for (std::size_t thread = 0; thread < count; ++thread) {
      const std::size_t offset = entry.Location.Rva + sizeof(ULONG32) + thread * sizeof(MINIDUMP_THREAD);
      ids.push_back(At<MINIDUMP_THREAD>(dump, offset).ThreadId);
    }
  }
  return ids;
}

TEST(ProcessDump, ListsAllThreads) {
  const support::TempFolder folder;
  const ParkedThread thread("parked");
  ASSERT_TRUE(QX_MONITOR::WriteProcessDump(folder.Text() + "/server.dmp"));
  const std::string dump = folder.Read("server.dmp");
  EXPECT_EQ(dump.substr(0, 4), "MDMP");
  EXPECT_THAT(ThreadsIn(dump), testing::IsSupersetOf({thread.Id(), TESSARIN_COMMON::CurrentThreadId()}));
}

}  // namespace
