#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "RawLink.h"
#include "ServerProcess.h"

// Long runs that press one promise each. A run does its work so often as it is told and gives a line of figures; a
// promise that is broken is a std::runtime_error.
namespace torture {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

#ifdef TORTURE_EMULATED
inline constexpr bool kEmulated = true;
#else
inline constexpr bool kEmulated = false;
#endif

// Then times and memory are not the server's own, and are printed only.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

// Fails with the text of what was promised.
void Require(bool kept, const std::string& promise);

// Durations of one kind.
class Times {
 public:
  void Add(Clock::duration time) { ms_.push_back(std::chrono::duration<double, std::milli>(time).count()); }
  // The median, p99 and the longest, in ms; a single one as it is.
  [[nodiscard]] std::string Text() const;
  // Holds p99 against the limit, and in a short run, which has too few for that and a busy machine, the median; none
  // may take ten seconds.
  void RequireWithin(Milliseconds limit, const std::string& promise) const;

  static void ShortRuns() { isShort_ = true; }

 private:
  [[nodiscard]] double At(double part) const;

  static inline bool isShort_ = false;
  std::vector<double> ms_;
};

// A server process with the simulated engine; its log and journal lie in a folder of its own.
class Server {
 public:
  // `params`: members of the engine's parameter text.
  explicit Server(const std::string& params = "", std::string pipe = support::UniquePipeName());

  [[nodiscard]] const std::string& Pipe() const { return pipe_; }
  [[nodiscard]] support::Process& Host() { return host_; }
  // Waits for the end, which has to be a good one, and for nothing to be left. `slotPath`: of any slot it had.
  void RequireGoodEnd(const std::string& slotPath = "");

 private:
  const support::TempFolder folder_;
  const std::string pipe_;
  support::Process host_;
};

// A room with participants, each with one encoding: a parameter for Server.
[[nodiscard]] std::string Room(std::size_t participants, const std::string& encoding);
// Participants are user0, user1 and so on.
[[nodiscard]] std::string Sid(std::size_t participant);

// What a client asks for, and does not wait for.
bool Ask(integration::RawLink& link, const std::string& key, const std::string& content = "[]");
// The next body that holds the word; empty when the server has gone.
std::string Await(integration::RawLink& link, const std::string& word);
// Joins the room and watches so many streams; the path of the first slot, empty when the server has gone.
std::string Watch(integration::RawLink& link, std::size_t participants);

// Resident memory of a process, in MiB; 0 if there is none.
[[nodiscard]] double ResidentMiB(std::uint32_t process);

// The runs.
std::string StartAndStop(std::size_t rounds);
std::string KillServer(std::size_t rounds);
std::string KillClient(std::size_t rounds);
std::string DeafClient(std::size_t seconds);
std::string Soak(std::size_t seconds);
std::string BothWrite(std::size_t rounds);
std::string SilentLeavers(std::size_t rounds);
std::string StallingReader(std::size_t frames);
std::string SizeChanges(std::size_t changes);

}  // namespace torture
