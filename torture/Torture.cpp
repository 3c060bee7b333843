#include "Torture.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "ctl/ProcessSample.h"

namespace torture {
namespace {

using integration::Quoted;
using integration::RawLink;

// With a journal file, since without one the engine keeps its journal in the memory that is measured.
std::string Options(const std::string& pipe, const std::string& folder, const std::string& params) {
  const std::string all =
      R"({"sim.journal":)" + Quoted(folder + "/journal") + (params.empty() ? "" : "," + params) + "}";
  return fmt::format(R"({{"ipcPath":{},"manuallyDylibPath":{},"logPath":{},"rtcParams":{}}})", Quoted(pipe),
                     Quoted(integration::ServerProcess::EngineFolder()), Quoted(folder), Quoted(all));
}

}  // namespace

void Require(bool kept, const std::string& promise) {
  if (!kept) throw std::runtime_error(promise);
}

double Times::At(double part) const {
  std::vector<double> sorted = ms_;
  std::sort(sorted.begin(), sorted.end());
  return sorted.empty() ? 0 : sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

std::string Times::Text() const {
  if (ms_.size() == 1) return fmt::format("{:.1f} ms", At(0));
  return fmt::format("p50 {:.1f} ms, p99 {:.1f} ms, max {:.1f} ms", At(0.5), At(0.99), At(1));
}

void Times::RequireWithin(Milliseconds limit, const std::string& promise) const {
  const std::string figures = promise + ": " + Text();
  Require(!ms_.empty(), figures);
  Require(kSanitized || At(isShort_ ? 0.5 : 0.99) <= static_cast<double>(limit.count()), figures);
  Require(At(1) < 10'000, figures);
}

Server::Server(const std::string& params, std::string pipe)
    : pipe_(std::move(pipe)), host_(support::BesideTest("ravo-host"), {Options(pipe_, folder_.Text(), params)}) {}

void Server::RequireGoodEnd(const std::string& slotPath) {
  const auto code = host_.Wait();
  Require(code == 0, fmt::format("the server ends with {}: {}", code.value_or(-1), host_.Err()));
  Require(host_.Err().find("violation") == std::string::npos, "the rules of the engine are kept: " + host_.Err());
  Require(!std::filesystem::exists(pipe_), "no socket is left");
  Require(slotPath.empty() || integration::ServerProcess::SharedNames(slotPath).empty(), "no shared name is left");
}

std::string Room(std::size_t participants, const std::string& encoding) {
  std::string users;
  for (std::size_t i = 0; i < participants; ++i) {
    users += fmt::format(R"({}{{"userId":"user{}","encodings":[{}]}})", i == 0 ? "" : ",", i, encoding);
  }
  return R"("sim.room":{"participants":[)" + users + "]}";
}

std::string Sid(std::size_t participant) {
  return fmt::format("user{}_0", participant);
}

bool Ask(RawLink& link, const std::string& key, const std::string& content) {
  return link.Send(RawLink::Framed(RawLink::Request(key, content, 1)));
}

std::string Await(RawLink& link, const std::string& word) {
  while (const auto body = link.Receive()) {
    if (body->find(word) != std::string::npos) return *body;
  }
  return "";
}

std::string Watch(RawLink& link, std::size_t participants) {
  Ask(link, "join_meeting", R"(["token","room","me",""])");
  for (std::size_t i = 0; i < participants; ++i) Await(link, "STREAM_ADDED");
  for (std::size_t i = 0; i < participants; ++i) {
    Ask(link, "subscribe_video", R"([")" + Sid(i) + R"(",0,0,{"subscribeClientId":"view"}])");
  }
  // The join retires the slot of a preview, too, and names none if there is none: that may come late on a busy machine.
  const std::string member = R"(\"path\":\")";
  const std::string update = Await(link, member);
  const auto begin = update.find(member);
  if (begin == std::string::npos) return "";
  return update.substr(begin + member.size(), update.find('\\', begin + member.size()) - begin - member.size());
}

double ResidentMiB(std::uint32_t process) {
  const auto sample = ravo::ctl::SampleProcess(process);
  return sample ? static_cast<double>(sample->memoryBytes) / (1 << 20) : 0;
}

}  // namespace torture
