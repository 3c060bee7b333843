#include "Table.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/utsname.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "common/JsonWriter.h"

namespace bench {
namespace {

constexpr const char* kOurs = "ravo";

std::string ProcessorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

double Load() {
  double average = 0;
  return getloadavg(&average, 1) == 1 ? average : -1;
}

void AddMachine(TESSARIN_COMMON::JsonWriter& json) {
  utsname system{};
  uname(&system);
  json.StartObject("machine");
  json.Add("kernel", fmt::format("{} {}", system.sysname, system.release));
  json.Add("processor", ProcessorName());
  json.Add("cores", std::thread::hardware_concurrency());
  json.Add("load", Load());
  json.Add("date", fmt::format("{:%FT%TZ}", fmt::gmtime(std::time(nullptr))));
  json.EndObject();
}

std::string LimitText(const Row& row) {
  if (!row.limit) return "";
  return fmt::format("{} {:<8g} {}", row.limit->atMost ? "<=" : ">=", row.limit->value,
                     row.Reached() ? "reached" : "MISSED");
}

}  // namespace

bool Row::Reached() const {
  const double figure = ratio.value_or(p50);
  return !limit || (limit->atMost ? figure <= limit->value : figure >= limit->value);
}

Table::Table(std::string subject, std::string title, std::string unit, Better better)
    : subject_(std::move(subject)), title_(std::move(title)), unit_(std::move(unit)), better_(better) {}

Row& Table::Add(const std::string& testCase, const std::string& side, const Samples& samples) {
  const double worst = better_ == Better::Lower ? 0.99 : 0.01;
  return rows_.emplace_back(Row{.testCase = testCase,
                                .side = side,
                                .installed = !samples.empty(),
                                .p50 = Quantile(samples, 0.5),
                                .p99 = Quantile(samples, worst),
                                .ratio = {},
                                .limit = {}});
}

void Table::AddPair(const std::string& testCase, Figures ours, const std::string& side, Figures theirs, double ratio,
                    Limit limit) {
  rows_.push_back({testCase, kOurs, true, ours.p50, ours.p99, {}, {}});
  rows_.push_back({testCase, side, true, theirs.p50, theirs.p99, ratio, limit});
}

void Table::Compare(const std::string& testCase, const std::vector<Side>& sides,
                    const std::vector<std::optional<Limit>>& limits, int rounds) {
  const std::vector<Samples> samples = Interleave(sides, rounds);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    Row& row = Add(testCase, i == 0 ? kOurs : sides[i].name, samples[i]);
    if (!row.installed) continue;
    row.limit = limits[i];
    if (i > 0) row.ratio = Ratio(samples[0], samples[i], rounds);
  }
}

void Table::Finish(const std::string& folder) const {
  Print();
  WriteJson(folder + "/" + subject_ + ".json");
}

void Table::Print() const {
  fmt::print("\n{}: {}\n{:<16} {:<24} {:>11} {:>11} {:>8}  to reach   (load {:.2f})\n", subject_, title_, unit_, "",
             "p50", "p99", "ratio", Load());
  const Row* last = nullptr;
  for (const Row& row : rows_) {
    const bool isNew = last == nullptr || last->testCase != row.testCase;
    fmt::print("{:<16} {:<24} ", isNew ? row.testCase : "", row.side);
    if (row.installed) {
      fmt::print("{:>11.2f} {:>11.2f} {:>8}  {}\n", row.p50, row.p99,
                 row.ratio ? fmt::format("{:.2f}", *row.ratio) : "", LimitText(row));
    } else {
      fmt::print("{:>11}\n", "not installed");
    }
    last = &row;
  }
}

void Table::WriteJson(const std::string& path) const {
  TESSARIN_COMMON::JsonWriter json;
  json.StartObject();
  json.Add("subject", subject_);
  json.Add("title", title_);
  json.Add("unit", unit_);
  AddMachine(json);
  json.StartArray("rows");
  for (const Row& row : rows_) {
    json.StartObject();
    json.Add("case", row.testCase);
    json.Add("side", row.side);
    json.Add("installed", row.installed);
    if (row.installed) {
      json.Add("p50", row.p50);
      json.Add("p99", row.p99);
    }
    if (row.ratio) json.Add("ratio", *row.ratio);
    if (row.limit) {
      json.Add(row.limit->atMost ? "atMost" : "atLeast", row.limit->value);
      json.Add("reached", row.Reached());
    }
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  std::ofstream file(path);
  if (!(file << json.Text() << '\n')) throw std::runtime_error("cannot write " + path);
}

}  // namespace bench
