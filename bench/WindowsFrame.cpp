// ravo_bench_frame.exe: a frame with its two signals, against three plain copies into a file mapping and two SetEvent.
// Prints a line each size: its name, then p50 and p99 of ours and of the copies in microseconds, and the ratio.
// script/bench windows makes the table.
#include <ravo/log_abi.h>
#include <windows.h>

#include <cstdio>
#include <deque>
#include <string>

#include "LocalServer.h"

namespace {

struct Target {
  explicit Target(std::size_t sizeBytes)
      : mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(sizeBytes),
                                   nullptr)),
        memory(static_cast<std::uint8_t*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0))) {}
  ~Target() {
    UnmapViewOfFile(memory);
    for (const HANDLE handle : {main, side, mapping}) CloseHandle(handle);
  }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  HANDLE mapping;
  std::uint8_t* memory;
  HANDLE main = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  HANDLE side = CreateEventW(nullptr, FALSE, FALSE, nullptr);
};

void Compare(bench::LocalServer& server, const bench::PictureSize& size) {
  constexpr int kRounds = 500;
  const bench::Picture picture(size.width, size.height);
  std::deque<Target> targets;
  for (std::size_t i = 0; i < bench::kTargets; ++i) targets.emplace_back(bench::kHeaderBytes + picture.SizeBytes());
  const auto copy = [&](std::size_t target) {
    picture.CopyTo(targets[target].memory + bench::kHeaderBytes);
    SetEvent(targets[target].main);
    SetEvent(targets[target].side);
  };
  const auto samples = bench::Interleave(server.FrameSides(size.name, picture, "", copy), kRounds);
  std::printf("%s", size.name);
  for (const auto& side : samples) {
    std::printf(" %.3f %.3f", bench::Quantile(side, 0.5), bench::Quantile(side, 0.99));
  }
  std::printf(" %.4f\n", bench::Ratio(samples[0], samples[1], kRounds));
}

}  // namespace

int main(int, char** argv) {
  const bench::TempFolder logs;
  CreateTessarinLogger(0, logs.Path("log").c_str(), "TESSARIN_RAVO_COMMON", "Ravo", 0, 7, 1);
  bench::LocalServer server(R"(\\.\pipe\ravo_bench_)" + std::to_string(GetCurrentProcessId()),
                            std::filesystem::path(argv[0]).parent_path().string());
  for (const bench::PictureSize& size : bench::kPictureSizes) Compare(server, size);
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 0);
}
