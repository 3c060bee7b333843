#include "Measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <utility>

namespace bench {

double Quantile(Samples samples, double part) {
  if (samples.empty()) return 0;
  const auto at = static_cast<std::size_t>(std::lround(part * static_cast<double>(samples.size() - 1)));
  std::nth_element(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(at), samples.end());
  return samples[at];
}

double Ratio(const Samples& ours, const Samples& theirs, int rounds) {
  const auto medianOf = [rounds](const Samples& all, int round) {
    const auto each = static_cast<std::ptrdiff_t>(all.size()) / rounds;
    const auto begin = all.begin() + round * each;
    return Quantile(Samples(begin, begin + each), 0.5);
  };
  Samples ratios;
  for (int round = 0; round < rounds; ++round) ratios.push_back(medianOf(ours, round) / medianOf(theirs, round));
  return Quantile(std::move(ratios), 0.5);
}

std::vector<Samples> Interleave(const std::vector<Side>& sides, int rounds) {
  std::vector<Samples> samples(sides.size());
  for (int round = 0; round <= rounds; ++round) {
    for (std::size_t i = 0; i < sides.size(); ++i) {
      if (sides[i].round) sides[i].round(samples[i]);
      if (round == 0) samples[i].clear();
    }
  }
  return samples;
}

TempFolder::TempFolder() {
  std::random_device random;
  path_ = std::filesystem::temp_directory_path() / ("ravo_bench_" + std::to_string(random()));
  std::filesystem::create_directory(path_);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace bench
