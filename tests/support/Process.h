#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace support {

// A child program, its output kept as text. Belongs to the test's thread; two threads of its own read the pipes, and
// outlive it where a program that the child has started still holds their other ends.
class Process {
 public:
  // Starts the program with exactly these arguments, UTF-8. Fails with a std::runtime_error.
  Process(const std::string& program, const std::vector<std::string>& arguments);
  // Kills what still runs.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Waits for the end and for the rest of the output. The exit code, 128 and the signal's number after a signal;
  // nothing when the bound has passed for one of them.
  std::optional<int> Wait();
  void Kill();
  // What Ctrl-C does to a program.
  void Interrupt();

  // All that came so far.
  [[nodiscard]] std::string Out() const { return out_.Text(); }
  [[nodiscard]] std::string Err() const { return err_.Text(); }
  // True once the output holds the text; false when it has ended without, or after the bound.
  [[nodiscard]] bool WaitForOut(const std::string& text) { return out_.WaitFor(text); }
  [[nodiscard]] bool WaitForErr(const std::string& text) { return err_.WaitFor(text); }

 private:
  class Stream {
   public:
    void ReadFrom(std::intptr_t pipe);
    [[nodiscard]] std::string Text() const;
    bool WaitFor(const std::string& text) const;
    bool WaitForEnd() const;

   private:
    struct State {
      std::mutex mutex;  // guards text and ended
      std::condition_variable changed;
      std::string text;
      bool ended = false;
    };
    const std::shared_ptr<State> state_ = std::make_shared<State>();  // the reader's too
  };

  std::intptr_t process_;
  std::optional<int> exitCode_;
  Stream out_;
  Stream err_;
};

// The path of a program or library that the build put beside the test, for instance "ravo-host"; on Windows with
// ".exe" added where the name has no ending.
[[nodiscard]] std::string BesideTest(const std::string& name);

}  // namespace support
