#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Measure.h"

namespace bench {

// What a figure is to stay under or above.
struct Limit {
  bool atMost;
  double value;
};
constexpr Limit AtMost(double value) {
  return {true, value};
}
constexpr Limit AtLeast(double value) {
  return {false, value};
}

// One measured side of one case. A limit is one on the ratio where there is a ratio, else on the median.
struct Row {
  std::string testCase;
  std::string side;
  bool installed = true;
  double p50 = 0;
  double p99 = 0;  // of throughputs the one hundredth that is worst, too
  std::optional<double> ratio;
  std::optional<Limit> limit;

  [[nodiscard]] bool Reached() const;
};

// The table of one subject. Belongs to one thread.
class Table {
 public:
  enum class Better { Lower, Higher };

  Table(std::string subject, std::string title, std::string unit, Better better = Better::Lower);

  // The figures of one side by itself. The row may be changed until the next one.
  Row& Add(const std::string& testCase, const std::string& side, const Samples& samples);
  // Ours and another side, and the ratio, that another program has measured.
  struct Figures {
    double p50;
    double p99;
  };
  void AddPair(const std::string& testCase, Figures ours, const std::string& side, Figures theirs, double ratio,
               Limit limit);
  // Measures a case. The first side is ours; each other one gets the ratio of ours to it, and its limit.
  void Compare(const std::string& testCase, const std::vector<Side>& sides,
               const std::vector<std::optional<Limit>>& limits, int rounds);

  // Prints the table, and leaves it as <subject>.json in the folder.
  void Finish(const std::string& folder) const;

 private:
  void Print() const;
  void WriteJson(const std::string& path) const;

  const std::string subject_;
  const std::string title_;
  const std::string unit_;
  const Better better_;
  std::vector<Row> rows_;
};

}  // namespace bench
