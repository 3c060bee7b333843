// From the engine's callback into the slot, against three plain copies of the same planes into the same kind of
// segment.
#include <fcntl.h>
#include <ravo/log_abi.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "Measure.h"
#include "manager/FrameDelivery.h"
#include "manager/RavoManager.h"
#include "manager/SubscribeManager.h"
#include "slots/StreamDataManager.h"

namespace bench {

namespace {

using TESSARIN_LUMARC::OnVideoCommonFrame;
using TESSARIN_LUMARC::RavoManager;
using TESSARIN_LUMARC::slots::StreamDataManager;

constexpr int kRounds = 1500;

// A picture of the engine's, in planes of its own.
struct Picture {
  Picture(std::int64_t width, std::int64_t height)
      : info{.field_type = 0,
             .format = 0,
             .colorSpace = 0,
             .width = width,
             .height = height,
             .rotation = 0,
             .renderTimeMs = 0,
             .flip = false},
        strides{width, width / 2, width / 2} {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      sizes[i] = static_cast<std::size_t>(i == 0 ? width * height : width * height / 4);
      planes[i].assign(sizes[i], static_cast<std::uint8_t>(i + 1));
      pointers[i] = planes[i].data();
    }
  }

  VideoFrameInfo info;
  std::array<std::int64_t, 3> strides;
  std::array<std::size_t, 3> sizes{};
  std::array<std::vector<std::uint8_t>, 3> planes;
  std::array<const std::uint8_t*, 3> pointers{};
};

// A segment like a slot's, filled by plain copies.
class PlainSegment {
 public:
  explicit PlainSegment(std::size_t sizeBytes) : sizeBytes_(sizeBytes) {
    const std::string name = "/ravo_bench_" + std::to_string(getpid());
    const int file = shm_open(name.c_str(), O_CREAT | O_EXCL | O_RDWR, 0600);
    shm_unlink(name.c_str());
    if (file < 0 || ftruncate(file, static_cast<off_t>(sizeBytes)) != 0) std::abort();
    memory_ = static_cast<std::uint8_t*>(mmap(nullptr, sizeBytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    close(file);
  }
  ~PlainSegment() { munmap(memory_, sizeBytes_); }
  PlainSegment(const PlainSegment&) = delete;
  PlainSegment& operator=(const PlainSegment&) = delete;

  void Copy(const Picture& picture) {
    constexpr std::size_t kHeaderBytes = 52;  // so that both sides have the same alignment
    std::uint8_t* to = memory_ + kHeaderBytes;
    for (std::size_t i = 0; i < picture.sizes.size(); ++i) {
      std::memcpy(to, picture.pointers[i], picture.sizes[i]);
      to += picture.sizes[i];
    }
  }

 private:
  std::size_t sizeBytes_;
  std::uint8_t* memory_ = nullptr;
};

void Deliver(const char* uid, const Picture& picture) {
  OnVideoCommonFrame(uid, picture.info, picture.pointers.data(), 3, picture.strides.data());
}

void Compare(const char* name, const char* uid, std::int64_t width, std::int64_t height) {
  const Picture picture(width, height);
  StreamDataManager::GetInstance().UpdateStream(
      {.uid = uid, .sid = uid, .hasVideo = true, .hasAudio = true, .isScreen = false, .resolutions = {}});
  PlainSegment plain(picture.sizes[0] * 2);
  const auto frames = RavoManager::GetInstance().FrameSlots();
  std::vector<double> ours, theirs, dropped;
  for (int round = 0; round < kRounds; ++round) {
    frames->Tick();
    ours.push_back(NanosecondsOf([&] { Deliver(uid, picture); }));
    dropped.push_back(NanosecondsOf([&] { Deliver(uid, picture); }));
    theirs.push_back(NanosecondsOf([&] { plain.Copy(picture); }));
  }
  PrintRow(name, Median(ours) / 1000, Median(theirs) / 1000, "us", 1.10);
  std::printf("%-34s %10.3f us  (to reach: under 1)\n", "  second frame of a tick", Median(dropped) / 1000);
}

// A whole server, in this process and without a client.
void StartServer(const TempFolder& folder) {
  TESSARIN_COMMON::ServerOption option;
  option.ipcPath = folder.Path("pipe");
  option.logPath = folder.Path("log");
  option.manuallyDylibPath = ProgramFolder();
  CreateTessarinLogger(0, option.logPath.c_str(), "TESSARIN_RAVO_COMMON", "Ravo", 0, 7, 1);
  std::thread([option] { RavoManager::GetInstance().init(option); }).detach();
  while (access(option.ipcPath.c_str(), F_OK) != 0) usleep(1000);
}

}  // namespace

void FrameSubject() {
  const TempFolder folder;
  StartServer(folder);
  PinToOneCore();
  PrintHead("Frame: engine callback to slot written, against three memcpy", "slot", "memcpy");
  Compare("640x360", "small", 640, 360);
  Compare("1280x720", "hd", 1280, 720);
  Compare("1920x1080", "fullhd", 1920, 1080);
  Compare("3840x2160", "uhd", 3840, 2160);
  RavoManager::GetInstance().FrameSlots()->DestroyAllSlots();
}

}  // namespace bench
