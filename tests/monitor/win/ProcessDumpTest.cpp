#include "monitor/ProcessDump.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <dbghelp.h>

#include "../Parking.h"
#include "support/TempFolder.h"

namespace {

TEST(ProcessDump, ListsAllThreads) {
  const support::TempFolder folder;
  const ParkedThread thread("parked");
  ASSERT_TRUE(QX_MONITOR::WriteProcessDump(folder.Text() + "/server.dmp"));
  std::string dump = folder.Read("server.dmp");
  PMINIDUMP_DIRECTORY entry = nullptr;
  PVOID stream = nullptr;
  ULONG size = 0;
  ASSERT_TRUE(MiniDumpReadDumpStream(dump.data(), ThreadListStream, &entry, &stream, &size));
  const auto& list = *static_cast<const MINIDUMP_THREAD_LIST*>(stream);
  std::vector<std::uint32_t> ids;
  for (ULONG i = 0; i < list.NumberOfThreads; ++i) ids.push_back(list.Threads[i].ThreadId);
  EXPECT_THAT(ids, testing::IsSupersetOf({thread.Id(), TESSARIN_COMMON::CurrentThreadId()}));
}

}  // namespace
