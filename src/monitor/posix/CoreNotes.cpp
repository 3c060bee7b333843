// The notes of a core: what a debugger knows of the process beside its memory.
#include <fcntl.h>
#include <sys/procfs.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "CoreFile.h"
#include "common/posix/Descriptor.h"

namespace QX_MONITOR {

namespace {

constexpr std::string_view kCore = "CORE";
constexpr std::string_view kLinux = "LINUX";
constexpr std::uint64_t kPageBytes = 4096;

template <class T>
std::span<const std::byte> BytesOf(const T& record) {
  return std::as_bytes(std::span(&record, 1));
}

std::size_t Padded(std::size_t size) {
  return (size + 3) / 4 * 4;
}

// A small file of a process or of one of its threads, as far as the buffer holds it.
std::size_t ReadProcessFile(pid_t id, const char* name, std::span<char> buffer) {
  std::array<char, 64> path{};
  std::snprintf(path.data(), path.size(), "/proc/%d/%s", id, name);
  const TESSARIN_COMMON::Descriptor file(open(path.data(), O_RDONLY | O_CLOEXEC));
  const ssize_t count = read(file.Get(), buffer.data(), buffer.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

// The kernel's name of a process or thread, without the line's end; the buffer's last byte stays NUL.
void ReadName(pid_t id, std::span<char> name) {
  const std::size_t size = ReadProcessFile(id, "comm", name.first(name.size() - 1));
  std::replace(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(size), '\n', '\0');
}

}  // namespace

bool CoreFile::AddNotes() {
  if (!AddThreadNotes(firstThread_) || !AddProcessNotes()) return false;
  return std::ranges::all_of(threads_.Threads(), [this](const StoppedThreads::StoppedThread& thread) {
    return thread.id == firstThread_ || !thread.stands || AddThreadNotes(thread.id);
  });
}

bool CoreFile::AddProcessNotes() {
  prpsinfo_t process{};
  process.pr_sname = 'R';
  process.pr_pid = process_;
  ReadName(process_, process.pr_fname);
  const std::span arguments(process.pr_psargs);
  const std::size_t size = ReadProcessFile(process_, "cmdline", arguments.first(arguments.size() - 1));
  if (size > 0) std::replace(arguments.begin(), arguments.begin() + static_cast<std::ptrdiff_t>(size) - 1, '\0', ' ');
  std::array<char, 4096> vector{};
  const std::size_t vectorSize = ReadProcessFile(process_, "auxv", vector);
  return AddNote(kCore, NT_PRPSINFO, BytesOf(process)) &&
         AddNote(kCore, NT_AUXV, std::as_bytes(std::span(vector).first(vectorSize))) && AddFileNote();
}

// The mapped files: their number, the unit of offsets, the places of all, then the names of all.
bool CoreFile::AddFileNote() {
  using Word = std::uint64_t;
  Word count = 0;
  Word nameBytes = 0;
  for (const Mapping& mapping : map_.Mappings()) {
    if (!map_.IsFile(mapping)) continue;
    ++count;
    nameBytes += mapping.nameSize + 1;
  }
  const Word head[] = {count, kPageBytes};
  bool fits =
      BeginNote(kCore, NT_FILE, sizeof head + count * 3 * sizeof(Word) + nameBytes) && notes_.Add(BytesOf(head));
  for (const Mapping& mapping : map_.Mappings()) {
    const Word place[] = {mapping.start, mapping.end, mapping.fileOffset / kPageBytes};
    if (map_.IsFile(mapping)) fits = fits && notes_.Add(BytesOf(place));
  }
  for (const Mapping& mapping : map_.Mappings()) {
    const std::string_view name = map_.NameOf(mapping);
    if (map_.IsFile(mapping)) fits = fits && notes_.Add(std::as_bytes(std::span(name))) && notes_.Add(std::byte{0});
  }
  return fits && PadNotes();
}

// The general registers open the notes of a thread; all others up to the next thread's are its own.
bool CoreFile::AddThreadNotes(pid_t thread) {
  prstatus_t status{};
  status.pr_pid = thread;
  iovec registers{&status.pr_reg, sizeof status.pr_reg};
  if (ptrace(PTRACE_GETREGSET, thread, NT_PRSTATUS, &registers) != 0) return true;  // it has just ended
  NameNote name{.thread = thread, .name = {}};
  ReadName(thread, name.name);
  return AddNote(kCore, NT_PRSTATUS, BytesOf(status)) && AddRegisters(thread, kCore, NT_FPREGSET) &&
         AddRegisters(thread, kLinux, NT_X86_XSTATE) && AddNote(kNameNoteOwner, kNameNoteType, BytesOf(name));
}

bool CoreFile::AddRegisters(pid_t thread, std::string_view owner, std::uint32_t type) {
  std::array<std::byte, 16384> bytes;
  iovec registers{bytes.data(), bytes.size()};
  if (ptrace(PTRACE_GETREGSET, thread, type, &registers) != 0) return true;  // a processor without these
  return AddNote(owner, type, std::span(bytes).first(registers.iov_len));
}

bool CoreFile::AddNote(std::string_view owner, std::uint32_t type, std::span<const std::byte> body) {
  return BeginNote(owner, type, body.size()) && notes_.Add(body) && PadNotes();
}

bool CoreFile::BeginNote(std::string_view owner, std::uint32_t type, std::size_t bodyBytes) {
  const Elf64_Nhdr header{static_cast<std::uint32_t>(owner.size() + 1), static_cast<std::uint32_t>(bodyBytes), type};
  return notes_.Add(BytesOf(header)) && notes_.Add(std::as_bytes(std::span(owner))) && notes_.Add(std::byte{0}) &&
         PadNotes();
}

bool CoreFile::PadNotes() {
  const std::size_t size = notes_.Items().size();
  constexpr std::array<std::byte, 3> kZeros{};
  return notes_.Add(std::span(kZeros).first(Padded(size) - size));
}

}  // namespace QX_MONITOR
