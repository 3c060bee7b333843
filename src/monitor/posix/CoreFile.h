#pragma once

#include <elf.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "MemoryMap.h"
#include "ReservedList.h"
#include "StoppedThreads.h"

namespace QX_MONITOR {

// Writes a core of another process, for gdb: what its memory holds that is in no file, and the registers of all its
// threads. The names of the threads are in notes of our own, since the format has no place for them. Made before the
// fork; Write belongs to the child and allocates nothing.
class CoreFile {
 public:
  // The first thread is the one that a debugger shows at first.
  CoreFile(int file, pid_t process, pid_t firstThread) : file_(file), process_(process), firstThread_(firstThread) {}

  // Stops the process for as long as it takes.
  [[nodiscard]] bool Write();

  // The note of a thread's name: of owner kNameNoteOwner and this type.
  static constexpr std::string_view kNameNoteOwner = "Ravo";
  static constexpr std::uint32_t kNameNoteType = 1;
  struct NameNote {
    std::int32_t thread;
    char name[16];  // ends with NUL
  };

 private:
  bool WriteStopped();

  static constexpr std::size_t kMostNoteBytes = 64 << 20;
  static constexpr std::size_t kMostSegments = 65001;

  bool AddNotes();
  bool AddProcessNotes();
  bool AddFileNote();
  bool AddThreadNotes(pid_t thread);
  bool AddRegisters(pid_t thread, std::string_view owner, std::uint32_t type);
  bool AddNote(std::string_view owner, std::uint32_t type, std::span<const std::byte> body);
  bool BeginNote(std::string_view owner, std::uint32_t type, std::size_t bodyBytes);
  bool PadNotes();

  bool AddSegments();
  [[nodiscard]] std::uint64_t BytesToKeep(const Mapping& mapping) const;
  bool WriteHeaders();
  bool WriteMemory(int memory);
  bool WriteSegment(int memory, const Elf64_Phdr& segment);

  const int file_;
  const pid_t process_;
  const pid_t firstThread_;
  StoppedThreads threads_;
  MemoryMap map_;
  ReservedList<std::byte> notes_{kMostNoteBytes};
  ReservedList<Elf64_Phdr> segments_{kMostSegments};
};

}  // namespace QX_MONITOR
