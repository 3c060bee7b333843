#include "Process.h"

#include <array>
#include <thread>

#include "ProcessCalls.h"
#include "WaitUntil.h"

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

std::optional<int> Process::Wait() {
  if (!exitCode_) exitCode_ = calls::Wait(process_, kBound);
  return exitCode_ && out_.WaitForEnd() && err_.WaitForEnd() ? exitCode_ : std::nullopt;
}

void Process::Kill() {
  if (!exitCode_) calls::Kill(process_);
}

void Process::Interrupt() {
  if (!exitCode_) calls::Interrupt(process_);
}

void Process::Stream::ReadFrom(std::intptr_t pipe) {
  std::thread([state = state_, pipe] {
    std::array<char, 4096> buffer;
    std::size_t size = 0;
    do {
      size = calls::Read(pipe, buffer.data(), buffer.size());
      const std::lock_guard lock(state->mutex);
      state->text.append(buffer.data(), size);
      state->ended = size == 0;
      state->changed.notify_all();
    } while (size > 0);
    calls::ClosePipe(pipe);
  }).detach();
}

std::string Process::Stream::Text() const {
  const std::lock_guard lock(state_->mutex);
  return state_->text;
}

bool Process::Stream::WaitFor(const std::string& text) const {
  std::unique_lock lock(state_->mutex);
  const auto found = [&] { return state_->text.find(text) != std::string::npos; };
  state_->changed.wait_for(lock, kBound, [&] { return state_->ended || found(); });
  return found();
}

bool Process::Stream::WaitForEnd() const {
  std::unique_lock lock(state_->mutex);
  return state_->changed.wait_for(lock, kBound, [&] { return state_->ended; });
}

std::string BesideTest(const std::string& name) {
  const bool hasEnding = name.find('.') != std::string::npos;
  return calls::OwnFolder() + "/" + name + (hasEnding ? "" : calls::kProgramEnding);
}

}  // namespace support
