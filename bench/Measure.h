#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

// What the benchmarks share. A figure is the ratio of two medians of one run whose rounds were interleaved, so that
// what disturbs the machine disturbs both sides.
namespace bench {

using Clock = std::chrono::steady_clock;

template <class Work>
double NanosecondsOf(Work work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

[[nodiscard]] double Median(std::vector<double> values);

// One row of a table: ours, theirs, the ratio, and what it has to stay under (or over).
void PrintHead(const std::string& subject, const std::string& ours, const std::string& theirs);
void PrintRow(const std::string& name, double ours, double theirs, const std::string& unit, double limit,
              bool lowerIsBetter = true);

// Keeps the calling thread, and what it starts, on one core.
void PinToOneCore();

// A folder that goes away with the object, and the folder of the program.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  [[nodiscard]] std::string Path(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};
[[nodiscard]] std::string ProgramFolder();

// The subjects. Each prints its table.
void FrameSubject();
void RequestSubject();
void TaskSubject();
void IdleSubject();

}  // namespace bench
