#include "Process.h"

#include <array>

#include "ProcessCalls.h"

namespace support {

Process::Process(const std::string& program, const std::vector<std::string>& arguments) {
  const calls::Child child = calls::Spawn(program, arguments);
  process_ = child.process;
  out_.ReadFrom(child.out);
  err_.ReadFrom(child.err);
}

Process::~Process() {
  if (!exitCode_) {
    Kill();
    (void)Wait();
  }
  calls::CloseProcess(process_);
}

std::optional<int> Process::Wait(Bound bound) {
  if (!exitCode_) {
    exitCode_ = calls::Wait(process_, bound);
    if (!exitCode_) return std::nullopt;
    out_.Join();
    err_.Join();
  }
  return exitCode_;
}

void Process::Kill() {
  if (!exitCode_) calls::Kill(process_);
}

void Process::Interrupt() {
  if (!exitCode_) calls::Interrupt(process_);
}

void Process::Stream::ReadFrom(std::intptr_t pipe) {
  reader_ = std::thread([this, pipe] {
    std::array<char, 4096> buffer;
    while (const std::size_t size = calls::Read(pipe, buffer.data(), buffer.size())) {
      {
        const std::lock_guard lock(mutex_);
        text_.append(buffer.data(), size);
      }
      changed_.notify_all();
    }
    calls::ClosePipe(pipe);
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
  });
}

void Process::Stream::Join() {
  if (reader_.joinable()) reader_.join();
}

std::string Process::Stream::Text() const {
  const std::lock_guard lock(mutex_);
  return text_;
}

bool Process::Stream::WaitFor(const std::string& text, Bound bound) {
  std::unique_lock lock(mutex_);
  const auto found = [&] { return text_.find(text) != std::string::npos; };
  changed_.wait_for(lock, bound, [&] { return ended_ || found(); });
  return found();
}

std::string BesideTest(const std::string& name) {
  const bool hasEnding = name.find('.') != std::string::npos;
  return calls::OwnFolder() + "/" + name + (hasEnding ? "" : calls::kProgramEnding);
}

}  // namespace support
