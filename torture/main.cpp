// ravo_torture [--short] [NAME[=COUNT]...]: see docs/torture.md.
#include <ravo/log_abi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "Torture.h"

namespace {

struct Run {
  const char* name;
  std::string (*run)(std::size_t count);
  std::size_t full;
  std::size_t brief;
  std::size_t emulatedFull;  // starting a process under the emulator takes long
  std::size_t emulatedBrief;
};

constexpr Run kRuns[] = {
    {"start-stop", torture::StartAndStop, 1000, 20, 100, 5},
    {"kill-server", torture::KillServer, 1000, 30, 1000, 10},
    {"kill-client", torture::KillClient, 500, 20, 500, 10},
    {"deaf-client", torture::DeafClient, 60, 6, 60, 6},
    {"both-write", torture::BothWrite, 1000, 100, 1000, 30},
    {"silent-leavers", torture::SilentLeavers, 10'000, 900, 10'000, 150},
    {"stalling-reader", torture::StallingReader, 1'000'000, 50'000, 1'000'000, 50'000},
    {"size-changes", torture::SizeChanges, 10'000, 1000, 10'000, 1000},
    {"soak", torture::Soak, 3600, 60, 3600, 10},
};

// A run as the command line asks for it. COUNT 0: as often as the table says.
struct Wish {
  explicit Wish(const std::string& text)
      : name(text.substr(0, text.find('='))),
        count(text == name ? 0 : static_cast<std::size_t>(std::atoll(text.c_str() + name.size() + 1))) {}

  std::string name;
  std::size_t count;
};

std::size_t UsualCount(const Run& run, bool brief) {
  if (torture::kEmulated) return brief ? run.emulatedBrief : run.emulatedFull;
  return brief ? run.brief : run.full;
}

// Adds the run's line to the table.
bool Keeps(const Run& run, std::size_t count) {
  const auto begin = torture::Clock::now();
  std::string figures;
  bool kept = true;
  try {
    figures = run.run(count);
  } catch (const std::runtime_error& error) {
    figures = std::string("BROKEN: ") + error.what();
    kept = false;
  }
  const auto seconds = std::chrono::duration<double>(torture::Clock::now() - begin).count();
  std::printf("%-16s %9zu %9.1f  %s\n", run.name, count, seconds, figures.c_str());
  std::fflush(stdout);
  return kept;
}

}  // namespace

// Parts of the server stand in this program; what they log is nobody's concern here.
std::int32_t RAVO_CALL CreateTessarinLogger(std::int32_t, const char*, const char*, const char*, std::int32_t,
                                            std::int32_t, std::int32_t) {
  return 0;
}
std::int32_t RAVO_CALL TessarinLogWrite(const char*, std::int32_t, const char*) {
  return 0;
}

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool brief = std::erase(words, "--short") > 0;
  if (brief) torture::Times::ShortRuns();
  const std::vector<Wish> wishes(words.begin(), words.end());
  for (const auto& wish : wishes) {
    if (std::ranges::find(kRuns, wish.name, &Run::name) != std::end(kRuns)) continue;
    std::fprintf(stderr, "ravo_torture: there is no run %s\n", wish.name.c_str());
    return 2;
  }
  int passed = 0;
  int failed = 0;
  std::printf("%-16s %9s %9s  %s\n", "run", "count", "seconds", "figures");
  for (const Run& run : kRuns) {
    const auto wish = std::ranges::find(wishes, run.name, &Wish::name);
    if (wish == wishes.end() && !wishes.empty()) continue;
    const bool counted = wish != wishes.end() && wish->count > 0;
    ++(Keeps(run, counted ? wish->count : UsualCount(run, brief)) ? passed : failed);
  }
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
