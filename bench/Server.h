#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "Measure.h"

namespace bench {

// The folder of the program, of the libraries and of ravo-host.
[[nodiscard]] std::string ProgramFolder();

// Where all threads of this process run from now on, and what they start. Both sides of a comparison share one core:
// what is compared is their work, and not where the system happens to put them.
enum class Cores { One, All };
void UseCores(Cores cores);

// A child process; it is gone when the object is. Belongs to one thread.
class Child {
 public:
  // Runs the work in a copy of this process, which must have no other thread.
  explicit Child(const std::function<void()>& work);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  [[nodiscard]] pid_t Id() const { return id_; }
  // Waits until it has ended by itself.
  void WaitEnd();
  // User and system time that it has used.
  [[nodiscard]] double CpuNanoseconds() const;

 private:
  pid_t id_;
};

// ravo-host with the simulated engine; its log lies in a folder of its own. `params` are members of the engine's
// parameter text.
class Server {
 public:
  explicit Server(const std::string& params = "");

  [[nodiscard]] std::string Pipe() const { return folder_.Path("pipe"); }
  [[nodiscard]] Child& Process() { return process_; }

 private:
  const TempFolder folder_;
  Child process_;
};

}  // namespace bench
