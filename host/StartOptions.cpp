#include "StartOptions.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "Program.h"
#include "common/JsonNode.h"

namespace host {
namespace {

std::filesystem::path Path(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

std::string ReadFile(const std::string& name) {
  std::ifstream file(Path(name), std::ios::binary);
  if (!file) throw std::runtime_error("cannot read the options file " + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

StartOptions ReadStartOptions(const std::string& argument) {
  StartOptions options;
  options.text = argument.starts_with('@') ? ReadFile(argument.substr(1)) : argument;
  try {
    const TESSARIN_COMMON::JsonNode root(options.text);
    root.Get("ipcPath", options.pipe);
    root.Get("manuallyDylibPath", options.engineFile);
    options.engineFile += kEngineFile;
    options.readable = true;
  } catch (const std::runtime_error&) {
    // The library reads the whole text and names the place.
  }
  return options;
}

bool FileExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(Path(path), ignored);
}

}  // namespace host
