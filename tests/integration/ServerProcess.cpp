#include "ServerProcess.h"

#include <filesystem>
#include <fstream>

#include "common/JsonWriter.h"

namespace integration {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> LinesOf(const fs::path& file) {
  std::vector<std::string> lines;
  std::ifstream in(file, std::ios::binary);
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

std::string ParamsText(const std::string& folder, const std::string& params) {
  return R"({"sim.journal":)" + Quoted(folder + "/journal") + (params.empty() ? "" : "," + params) + "}";
}

std::string OptionsText(const std::string& pipe, const std::string& folder, const std::string& params,
                        const std::string& options) {
  return R"({"ipcPath":)" + Quoted(pipe) + R"(,"manuallyDylibPath":)" + Quoted(ServerProcess::EngineFolder()) +
         R"(,"logPath":)" + Quoted(folder) + R"(,"rtcParams":)" + Quoted(params) +
         (options.empty() ? "" : "," + options) + "}";
}

}  // namespace

std::string Quoted(const std::string& text) {
  return TESSARIN_COMMON::JsonText(text);
}

std::string Replaced(std::string text, const std::string& word, const std::string& by) {
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
    text.replace(at, word.size(), by);
  }
  return text;
}

ServerProcess::ServerProcess(const std::string& params, const std::string& options)
    : params_(ParamsText(folder_.Text(), params)),
      host_(support::BesideTest("ravo-host"), {OptionsText(pipe_, folder_.Text(), params_, options)}) {}

std::string ServerProcess::EngineFolder() {
  return fs::path(support::BesideTest("ravo-host")).parent_path().string();
}

std::vector<std::string> ServerProcess::Journal(const std::string& beginning) const {
  std::vector<std::string> lines = LinesOf(folder_.Path() / "journal");
  std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(beginning); });
  return lines;
}

std::vector<std::string> ServerProcess::Calls(const std::string& entry) const {
  const std::string beginning = R"({"entry":")" + entry + R"(","args":[)";
  std::vector<std::string> lines = Journal(beginning);
  std::erase_if(lines, [](const std::string& line) { return !line.ends_with("]}"); });  // on the way into the file
  for (auto& line : lines) line = line.substr(beginning.size(), line.size() - beginning.size() - 2);
  return lines;
}

bool ServerProcess::WaitForCalls(const std::string& entry, std::size_t count) const {
  return WaitUntil([&] { return Calls(entry).size() >= count; });
}

std::vector<std::string> ServerProcess::LogLines(const std::string& text) const {
  std::vector<std::string> found;
  for (const auto& entry : fs::directory_iterator(folder_.Path())) {
    if (entry.path().extension() != ".log") continue;
    for (auto& line : LinesOf(entry.path())) {
      if (line.find(text) != std::string::npos) found.push_back(std::move(line));
    }
  }
  return found;
}

bool ServerProcess::WaitForLog(const std::string& text, std::size_t count) const {
  return WaitUntil([&] { return LogLines(text).size() >= count; });
}

// A path is "<stream>_<server>_<number>". Where shared memory has no folder, its names end with their last holder.
std::vector<std::string> ServerProcess::SharedNames(const std::string& slotPath) {
  const auto first = slotPath.find('_');
  const std::string server = slotPath.substr(first, slotPath.rfind('_') + 1 - first);
  std::vector<std::string> names;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator("/dev/shm", none)) {
    const std::string name = entry.path().filename().string() + '_';
    if (name.find(server) != std::string::npos) names.push_back(name);
  }
  return names;
}

}  // namespace integration
