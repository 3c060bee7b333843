// From handing a frame over to its reader being awake in another process, by four ways. The writer rests before each
// frame, so that the reader waits as it does between the frames of a video.
#include <linux/futex.h>
#include <semaphore.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <deque>
#include <memory>
#include <thread>

#include "LocalServer.h"
#include "Server.h"
#include "SharedMemory.h"
#include "Subjects.h"
#include "Table.h"
#include "peers/PipeWire.h"
#include "reader/SlotView.h"

namespace bench {

namespace {

constexpr int kRounds = 120;
constexpr int kFramesARound = 10;
constexpr std::chrono::milliseconds kRest(2);
constexpr std::chrono::hours kForever(1);

// What a writer and its reader share beside the way of the frame.
struct Desk {
  sem_t told;   // the reader has something to read here
  sem_t awake;  // the reader has woken, and before the first frame: is ready
  std::atomic<Clock::rep> awakeAt;
  std::atomic<std::uint32_t> word;  // the bare slot's frame number, the futex; the PipeWire reader's node
  char path[128];
};

void WaitFor(sem_t& semaphore) {
  while (sem_wait(&semaphore) != 0) continue;
}

long Futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value) {
  return syscall(SYS_futex, &word, operation, value, nullptr, nullptr, 0);
}

// A way to a reader, and that reader's process. The reader is told of a frame by `wait` returning.
class Way {
 public:
  Way() : desk_(new (memory_.Bytes()) Desk{}) {
    sem_init(&desk_->told, 1, 0);
    sem_init(&desk_->awake, 1, 0);
  }
  virtual ~Way() = default;
  Way(const Way&) = delete;
  Way& operator=(const Way&) = delete;

  // Before this process has any other thread; the second when all readers are there.
  void Fork() {
    reader_ = std::make_unique<Child>([this] { Read(); });
  }
  virtual void Open() { WaitFor(desk_->awake); }

  // The first frame is not counted: it pays for what others have left in the caches.
  void Round(Samples& us) {
    OneFrame();
    for (int i = 0; i < kFramesARound; ++i) us.push_back(OneFrame());
  }

 protected:
  virtual void Read() = 0;
  virtual void Prepare() {}
  virtual void Send() = 0;

  void Ready() { sem_post(&desk_->awake); }
  void Awake() {
    desk_->awakeAt = Clock::now().time_since_epoch().count();
    sem_post(&desk_->awake);
  }
  Desk& Shared() { return *desk_; }

 private:
  double OneFrame() {
    std::this_thread::sleep_for(kRest);
    Prepare();
    const auto begin = Clock::now();
    Send();
    WaitFor(desk_->awake);
    const Clock::time_point end{Clock::duration(desk_->awakeAt.load())};
    return std::chrono::duration<double, std::micro>(end - begin).count();
  }

  SharedMemory memory_{sizeof(Desk)};
  Desk* const desk_;
  std::unique_ptr<Child> reader_;
};

class RavoWay final : public Way {
 public:
  RavoWay(std::unique_ptr<LocalServer>& server, std::string uid, const Picture& picture)
      : server_(server), uid_(std::move(uid)), picture_(picture) {}
  void Open() override {
    server_->AddStream(uid_);
    Send();
    std::strncpy(Shared().path, server_->SlotPath(uid_).c_str(), sizeof Shared().path - 1);
    sem_post(&Shared().told);
    Way::Open();
  }

 private:
  void Read() override {
    WaitFor(Shared().told);
    std::string error;
    const std::string path = Shared().path;
    const auto view = ravo::client::SlotView::Open(path, "qx_ctl_" + path + "_main", error);
    view->Wait(kForever);  // the frame that made the slot
    for (Ready();; Awake()) view->Wait(kForever);
  }
  void Prepare() override { server_->Tick(); }
  void Send() override { server_->Deliver(uid_, picture_); }

  std::unique_ptr<LocalServer>& server_;
  const std::string uid_;
  const Picture& picture_;
};

class BareWay final : public Way {
 public:
  explicit BareWay(const Picture& picture) : picture_(picture), slot_(kHeaderBytes + picture.SizeBytes()) {}

 private:
  void Read() override {
    Ready();
    for (std::uint32_t last = 0;; Awake(), ++last) {
      while (Shared().word == last) Futex(Shared().word, FUTEX_WAIT, last);
    }
  }
  void Send() override {
    picture_.CopyTo(slot_.Bytes() + kHeaderBytes);
    ++Shared().word;
    Futex(Shared().word, FUTEX_WAKE, 1);
  }

  const Picture& picture_;
  const SharedMemory slot_;
};

class SocketWay final : public Way {
 public:
  explicit SocketWay(const Picture& picture) : picture_(picture) {
    Require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_) == 0, "socketpair");
  }
  ~SocketWay() override {
    for (const int end : ends_) close(end);
  }

 private:
  void Read() override {
    std::vector<std::uint8_t> frame(picture_.SizeBytes());
    for (Ready();; Awake()) Require(recv(ends_[1], frame.data(), frame.size(), MSG_WAITALL) > 0, "recv");
  }
  void Send() override {
    for (std::size_t i = 0; i < picture_.sizes.size(); ++i) {
      Require(send(ends_[0], picture_.pointers[i], picture_.sizes[i], 0) > 0, "send");
    }
  }

  const Picture& picture_;
  int ends_[2]{};
};

class PipeWireWay final : public Way {
 public:
  PipeWireWay(std::string folder, const PictureSize& size, const Picture& picture)
      : folder_(std::move(folder)), size_(size), picture_(picture) {}
  void Open() override {
    Way::Open();
    sender_ = ConnectPipeWire(folder_, size_, Shared().word);
  }

 private:
  void Read() override {
    const auto onNode = [this](std::uint32_t node) {
      Shared().word = node;
      Ready();
    };
    ReadPipeWire(folder_, size_, onNode, [this] { Awake(); });
  }
  void Send() override { sender_->Send(picture_); }

  const std::string folder_;
  const PictureSize size_;
  const Picture& picture_;
  std::unique_ptr<PipeWireSender> sender_;
};

using Ways = std::vector<std::unique_ptr<Way>>;

// A side that takes its ways in turn; none if there are none.
Side SideOf(const std::string& name, const Ways& ways) {
  if (ways.empty()) return {name, nullptr};
  return {name, [&ways, turn = std::size_t{0}](Samples& us) mutable { ways[turn++ % ways.size()]->Round(us); }};
}

// One size of frames, by all ways.
struct Contest {
  Contest(std::unique_ptr<LocalServer>& server, const std::string& folder, const PictureSize& of)
      : size(of), picture(of.width, of.height) {
    for (std::size_t i = 0; i < kTargets; ++i) {
      ravo.push_back(std::make_unique<RavoWay>(server, of.name + std::to_string(i), picture));
      bare.push_back(std::make_unique<BareWay>(picture));
    }
    socket.push_back(std::make_unique<SocketWay>(picture));
    if (RunPipeWire != nullptr) pipeWire.push_back(std::make_unique<PipeWireWay>(folder, size, picture));
    ForEach([](Way& way) { way.Fork(); });
  }

  void Measure(Table& table) {
    ForEach([](Way& way) { way.Open(); });
    table.Compare(size.name,
                  {SideOf("ravo", ravo), SideOf("futex-signalled slot", bare), SideOf("through a socket", socket),
                   SideOf("PipeWire", pipeWire)},
                  {{}, AtMost(1.1), AtMost(0.333), AtMost(1)}, kRounds);
  }

  template <class Work>
  void ForEach(Work work) {
    for (const Ways* ways : {&ravo, &bare, &socket, &pipeWire}) {
      for (const auto& way : *ways) work(*way);
    }
  }

  const PictureSize size;
  const Picture picture;
  Ways ravo, bare, socket, pipeWire;
};

}  // namespace

void WakeSubject(const std::string& out) {
  const TempFolder folder;
  std::unique_ptr<Child> daemon;
  if (RunPipeWire != nullptr) daemon = std::make_unique<Child>([&] { RunPipeWire(folder.Path("")); });
  std::unique_ptr<LocalServer> server;
  std::deque<Contest> contests;
  for (const PictureSize& size : kPictureSizes) contests.emplace_back(server, folder.Path(""), size);
  server = std::make_unique<LocalServer>(folder.Path("pipe"), ProgramFolder());
  Table table("wake", "from handing a frame over to its reader awake in another process", "us");
  for (Contest& contest : contests) contest.Measure(table);
  table.Finish(out);
}

}  // namespace bench
