// A request through pipe, dispatch, handler, log and reply of a real server process, against a bare blocking echo of
// the same bytes over the same kind of link. Both on one core.
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Measure.h"

namespace bench {

namespace {

constexpr int kRounds = 15;
constexpr int kEach = 1000;

[[noreturn]] void Die(const char* what) {
  std::perror(what);
  _exit(1);
}

sockaddr_un Address(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  return address;
}

// A client that does nothing but send and receive frames, blocking.
class Link {
 public:
  explicit Link(const std::string& path) : socket_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    const sockaddr_un address = Address(path);
    for (int i = 0; i < 500; ++i) {
      if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return;
      usleep(10000);
    }
    Die("connect");
  }
  ~Link() { close(socket_); }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  void Send(const std::string& frame) {
    if (send(socket_, frame.data(), frame.size(), 0) != static_cast<ssize_t>(frame.size())) Die("send");
  }
  // One frame; in the usual case all of it comes at once.
  void Receive() {
    std::uint32_t length = 0;
    while (have_ < sizeof length) Fill();
    std::memcpy(&length, buffer_.data(), sizeof length);
    while (have_ < sizeof length + length) Fill();
    have_ -= sizeof length + length;
    std::memmove(buffer_.data(), buffer_.data() + sizeof length + length, have_);
  }
  void RoundTrip(const std::string& frame) {
    Send(frame);
    Receive();
  }

 private:
  void Fill() {
    const ssize_t got = recv(socket_, buffer_.data() + have_, buffer_.size() - have_, 0);
    if (got <= 0) Die("recv");
    have_ += static_cast<std::size_t>(got);
  }

  int socket_;
  std::size_t have_ = 0;
  std::vector<char> buffer_ = std::vector<char>(1 << 20);
};

[[noreturn]] void Echo(const std::string& path) {
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  const sockaddr_un address = Address(path);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 || listen(listener, 1) != 0) {
    Die("bind");
  }
  const int peer = accept(listener, nullptr, nullptr);
  std::vector<char> buffer(1 << 16);
  for (;;) {
    const ssize_t got = recv(peer, buffer.data(), buffer.size(), 0);
    if (got <= 0) _exit(0);
    if (send(peer, buffer.data(), static_cast<std::size_t>(got), 0) != got) _exit(0);
  }
}

pid_t StartServer(const TempFolder& folder) {
  const std::string program = ProgramFolder() + "/ravo-host";
  const std::string options = R"({"ipcPath":")" + folder.Path("pipe") + R"(","logPath":")" + folder.Path("log") +
                              R"(","manuallyDylibPath":")" + ProgramFolder() + R"("})";
  const pid_t child = fork();
  if (child != 0) return child;
  if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(1);
  execl(program.c_str(), program.c_str(), options.c_str(), static_cast<char*>(nullptr));
  Die(program.c_str());
}

// A request whose body has so many bytes.
std::string RequestOf(std::size_t bodyBytes) {
  const std::string head = R"({"method_name":{"module_name":"","content_type":"JSON","message_type":"CALL",)"
                           R"("message_key":"get_subscribe_status","context_id":")";
  const std::string tail = R"(","taskId":1},"content":"[]"})";
  const std::string body = head + std::string(bodyBytes - head.size() - tail.size(), 'x') + tail;
  const auto length = static_cast<std::uint32_t>(body.size());
  return std::string(reinterpret_cast<const char*>(&length), sizeof length) + body;
}

double RoundOf(Link& link, const std::string& frame) {
  std::vector<double> times;
  for (int i = 0; i < kEach; ++i) times.push_back(NanosecondsOf([&] { link.RoundTrip(frame); }) / 1000);
  return Median(times);
}

}  // namespace

void RequestSubject() {
  const TempFolder folder;
  PinToOneCore();
  const pid_t server = StartServer(folder);
  const pid_t echo = fork();
  if (echo == 0) Echo(folder.Path("echo"));
  {
    Link ours(folder.Path("pipe"));
    Link theirs(folder.Path("echo"));
    for (int i = 0; i < 2; ++i) ours.Receive();  // "connect" and "INIT"
    PrintHead("Request: get_subscribe_status and its reply, against a bare echo", "server", "echo");
    const struct {
      const char* name;
      std::size_t bytes;
      double limit;
    } sizes[] = {{"300 bytes", 300, 2.5}, {"2 KB", 2048, 3.0}};
    for (const auto& size : sizes) {
      const std::string frame = RequestOf(size.bytes);
      std::vector<double> a, b;
      for (int round = 0; round < kRounds; ++round) {
        a.push_back(RoundOf(ours, frame));
        b.push_back(RoundOf(theirs, frame));
      }
      PrintRow(size.name, Median(a), Median(b), "us", size.limit);
    }
  }
  waitpid(server, nullptr, 0);
  waitpid(echo, nullptr, 0);
}

}  // namespace bench
