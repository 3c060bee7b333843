#include "StackSampler.h"

#include "common/Platform.h"

namespace QX_MONITOR {

std::string FileNameOfPath(const std::string& path) {
  return path.substr(path.find_last_of("\\/") + 1);  // without a separator the place is npos, and 0 comes of it
}

std::vector<StackFrame> CollectFrames(FrameSource& source, std::uint64_t maxFrames, const StopModules& stopModules) {
  std::vector<StackFrame> frames;
  WalkedFrame walked{};
  for (std::uint64_t count = 0; count != maxFrames && source.Next(walked); ++count) {
    StackFrame frame{.address = walked.address, .module = ModuleAt(walked.codeAddress)};
    if (stopModules.contains(frame.module)) break;
    ResolveSymbol(walked.codeAddress, frame);
    if (count > 0) frames.push_back(std::move(frame));
  }
  return frames;
}

std::vector<std::string> FrameTexts(const ThreadHandle& thread, const ThreadContext& context, std::uint64_t maxFrames,
                                    const StopModules& stopModules) {
  std::vector<std::string> texts;
  for (const StackFrame& frame : Walk(thread, context, maxFrames, stopModules)) {
    texts.push_back(frame.module + "---" + frame.file + "---" + frame.function);
  }
  return texts;
}

std::vector<std::string> SampleThreadById(std::uint64_t threadId, std::uint64_t maxFrames,
                                          const StopModules& stopModules) {
  const auto id = static_cast<std::uint32_t>(threadId);
  if (id == TESSARIN_COMMON::CurrentThreadId()) return {};
  return SampleThread(OpenThreadById(id, ThreadAccess::Full), maxFrames, stopModules);
}

}  // namespace QX_MONITOR
