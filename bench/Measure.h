#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// What the benchmarks share.
namespace bench {

using Clock = std::chrono::steady_clock;
using Samples = std::vector<double>;

template <class Work>
double NanosecondsOf(Work work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

// The sample below which such a part of them lies: 0.5 is the median. 0 of no samples.
[[nodiscard]] double Quantile(Samples samples, double part);

// One side of a comparison: a round of its work adds its samples. No work: what it needs is not installed.
struct Side {
  std::string name;
  std::function<void(Samples&)> round;
};

// Runs the sides in turns, A, B, C, A, B, C: what disturbs the machine disturbs all of them. The first round warms up
// and is not counted.
[[nodiscard]] std::vector<Samples> Interleave(const std::vector<Side>& sides, int rounds);

// Our cost by theirs: the median of what it is in each round, since what disturbs the machine lasts longer than a
// round. Each round has added as many samples as any other of its side.
[[nodiscard]] double Ratio(const Samples& ours, const Samples& theirs, int rounds);

// A folder that goes away with the object.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  [[nodiscard]] std::string Path(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace bench
