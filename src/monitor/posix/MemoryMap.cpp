#include "MemoryMap.h"

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "common/posix/Descriptor.h"

namespace QX_MONITOR {

namespace {

// Takes the next word, and the blanks before it, off a line.
std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(word.size());
  return word;
}

std::uint64_t Number(std::string_view text, int base) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number, base);
  return number;
}

std::uint32_t FlagsOf(std::string_view rights) {
  return (rights[0] == 'r' ? PF_R : 0U) | (rights[1] == 'w' ? PF_W : 0U) | (rights[2] == 'x' ? PF_X : 0U);
}

// Whether a list of two-letter flags, each followed by a blank, says that a mapping is none to dump.
bool IsExcluded(std::string_view flags) {
  return flags.find(" dd") != flags.npos || flags.find(" io") != flags.npos || flags.find(" pf") != flags.npos;
}

}  // namespace

bool MemoryMap::Read(pid_t process) {
  std::array<char, 32> path{};
  std::snprintf(path.data(), path.size(), "/proc/%d/smaps", process);
  const TESSARIN_COMMON::Descriptor file(open(path.data(), O_RDONLY | O_CLOEXEC));
  std::array<char, 16384> buffer;  // longer than any line
  std::size_t filled = 0;
  for (;;) {
    const ssize_t count = read(file.Get(), buffer.data() + filled, buffer.size() - filled);
    if (count <= 0) return count == 0 && !Mappings().empty();
    filled += static_cast<std::size_t>(count);
    std::string_view rest(buffer.data(), filled);
    for (auto end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
      if (!AddLine(rest.substr(0, end))) return false;
      rest.remove_prefix(end + 1);
    }
    filled = rest.size();
    std::memmove(buffer.data(), rest.data(), filled);
  }
}

// A line with the place of a mapping is followed by lines "<Property>: <value>" about it.
bool MemoryMap::AddLine(std::string_view line) {
  const std::string_view whole = line;
  const std::string_view word = TakeWord(line);
  if (!word.ends_with(':')) return AddMapping(whole);
  Mapping& mapping = mappings_.Items().back();
  if (word == "Anonymous:" || word == "Swap:") {
    mapping.hasOwnPages = mapping.hasOwnPages || Number(TakeWord(line), 10) > 0;
  } else if (word == "VmFlags:") {
    mapping.isExcluded = IsExcluded(line);
  }
  return true;
}

// "<start>-<end> <rights> <offset> <device> <inode> <name>", the name with blanks of its own.
bool MemoryMap::AddMapping(std::string_view line) {
  const std::string_view range = TakeWord(line);
  const std::string_view rights = TakeWord(line);
  const std::string_view offset = TakeWord(line);
  TakeWord(line);  // the device
  TakeWord(line);  // the file's number
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const auto dash = range.find('-');
  const auto nameOffset = static_cast<std::uint32_t>(names_.Items().size());
  const Mapping mapping{.start = Number(range.substr(0, dash), 16),
                        .end = Number(range.substr(dash + 1), 16),
                        .fileOffset = Number(offset, 16),
                        .flags = FlagsOf(rights),
                        .nameOffset = nameOffset,
                        .nameSize = static_cast<std::uint32_t>(line.size()),
                        .isShared = rights[3] == 's'};
  return mappings_.Add(mapping) && names_.Add(std::span<const char>(line));
}

}  // namespace QX_MONITOR
