#include "../StackSampler.h"

#include <algorithm>
#include <string>

#include "DwarfEngine.h"
#include "StackCapture.h"
#include "log/RustLogger.h"

namespace QX_MONITOR {

namespace {

class CapturedWalk final : public FrameSource {
 public:
  explicit CapturedWalk(std::vector<WalkedFrame> frames) : frames_(std::move(frames)) {}

  bool Next(WalkedFrame& frame) override {
    if (next_ == frames_.size()) return false;
    frame = frames_[next_++];
    return true;
  }

 private:
  const std::vector<WalkedFrame> frames_;
  std::size_t next_ = 0;
};

}  // namespace

// The context is all that a walk needs; the thread itself runs on.
std::vector<StackFrame> Walk(const ThreadHandle&, const ThreadContext& context, std::uint64_t maxFrames,
                             const StopModules& stopModules) {
  CapturedWalk walk(DwarfEngine::GetInstance().Unwind(context, maxFrames));
  return CollectFrames(walk, maxFrames, stopModules);
}

std::vector<std::string> SampleThread(const ThreadHandle& thread, std::uint64_t maxFrames,
                                      const StopModules& stopModules) {
  ThreadContext context;
  if (!CaptureThread(static_cast<std::uint32_t>(thread.Get()), context)) return {};
  return FrameTexts(thread, context, maxFrames, stopModules);
}

bool InitialiseSymbols() {
  const int error = DwarfEngine::GetInstance().Open();
  if (error != 0) TESSARIN_LOG::RustLogger::GetInstance().Error("SymInitialize error: " + std::to_string(error));
  return error == 0;
}

bool CleanupSymbols() {
  return DwarfEngine::GetInstance().Close();
}

std::string ModuleAt(std::uint64_t codeAddress) {
  const std::string path = DwarfEngine::GetInstance().ModulePath(codeAddress);
  return path.empty() ? kUnknownModule : FileNameOfPath(path);
}

void ResolveSymbol(std::uint64_t codeAddress, StackFrame& frame) {
  const DwarfEngine::Symbol symbol = DwarfEngine::GetInstance().SymbolAt(codeAddress);
  frame.function = symbol.function.empty() ? kUnknownFunction : symbol.function.substr(0, kMaxFunctionName);
  frame.file = symbol.file;
  frame.line = symbol.line;
}

std::string AddressText(std::uint64_t address) {
  static const int opened = DwarfEngine::GetInstance().Open();
  static_cast<void>(opened);
  const std::string function = DwarfEngine::GetInstance().SymbolAt(address).function;
  return function.empty() ? "" : function + "(" + std::to_string(address) + ")";
}

}  // namespace QX_MONITOR
