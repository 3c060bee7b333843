#include "CoreFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "common/posix/Descriptor.h"

namespace QX_MONITOR {

namespace {

using TESSARIN_COMMON::Descriptor;

constexpr std::uint64_t kPageBytes = 4096;
constexpr std::size_t kChunkBytes = 64 * kPageBytes;

std::uint64_t ToPage(std::uint64_t offset) {
  return (offset + kPageBytes - 1) / kPageBytes * kPageBytes;
}

bool WriteAt(int file, const void* data, std::size_t size, std::uint64_t offset) {
  const auto* at = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t count = pwrite(file, at, size, static_cast<off_t>(offset));
    if (count <= 0) return false;
    at += count;
    offset += static_cast<std::uint64_t>(count);
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

bool IsZero(const std::byte* data, std::size_t size) {
  return data[0] == std::byte{0} && std::memcmp(data, data + 1, size - 1) == 0;
}

// Pages of zeros stay holes in the file: most of a stack was never used.
bool WriteUsedPages(int file, std::span<const std::byte> data, std::uint64_t offset) {
  while (!data.empty()) {
    const std::size_t size = std::min<std::size_t>(data.size(), kPageBytes);
    if (!IsZero(data.data(), size) && !WriteAt(file, data.data(), size, offset)) return false;
    data = data.subspan(size);
    offset += size;
  }
  return true;
}

}  // namespace

bool CoreFile::Write() {
  const bool written = WriteStopped();
  threads_.Release();
  return written;
}

bool CoreFile::WriteStopped() {
  if (!threads_.Stop(process_) || !map_.Read(process_) || !AddNotes() || !AddSegments() || !WriteHeaders())
    return false;
  std::array<char, 32> path{};
  std::snprintf(path.data(), path.size(), "/proc/%d/mem", process_);
  const Descriptor memory(open(path.data(), O_RDONLY | O_CLOEXEC));
  return memory && WriteMemory(memory.Get());
}

// What can be read from the files that a process has mapped need not be kept, but for the first page, by whose build
// id a debugger knows the file. Memory that is shared with others is left out.
std::uint64_t CoreFile::BytesToKeep(const Mapping& mapping) const {
  if ((mapping.flags & PF_R) == 0 || mapping.isExcluded || mapping.isShared) return 0;
  if (mapping.hasOwnPages || map_.NameOf(mapping) == "[vdso]") return mapping.end - mapping.start;
  return map_.IsFile(mapping) && mapping.fileOffset == 0 ? kPageBytes : 0;
}

// The notes come first, then the memory, by whole pages.
bool CoreFile::AddSegments() {
  const std::size_t headers = sizeof(Elf64_Ehdr) + (map_.Mappings().size() + 1) * sizeof(Elf64_Phdr);
  const std::size_t noteBytes = notes_.Items().size();
  Elf64_Phdr notes{};
  notes.p_type = PT_NOTE;
  notes.p_offset = headers;
  notes.p_filesz = noteBytes;
  notes.p_align = 4;
  bool fits = segments_.Add(notes);
  std::uint64_t offset = ToPage(headers + noteBytes);
  for (const Mapping& mapping : map_.Mappings()) {
    const std::uint64_t kept = BytesToKeep(mapping);
    fits = fits && segments_.Add(Elf64_Phdr{.p_type = PT_LOAD,
                                            .p_flags = mapping.flags,
                                            .p_offset = offset,
                                            .p_vaddr = mapping.start,
                                            .p_paddr = 0,
                                            .p_filesz = kept,
                                            .p_memsz = mapping.end - mapping.start,
                                            .p_align = kPageBytes});
    offset += kept;
  }
  return fits && ftruncate(file_, static_cast<off_t>(offset)) == 0;
}

bool CoreFile::WriteHeaders() {
  Elf64_Ehdr header{};
  std::memcpy(header.e_ident, ELFMAG, SELFMAG);
  header.e_ident[EI_CLASS] = ELFCLASS64;
  header.e_ident[EI_DATA] = ELFDATA2LSB;
  header.e_ident[EI_VERSION] = EV_CURRENT;
  header.e_type = ET_CORE;
  header.e_machine = EM_X86_64;
  header.e_version = EV_CURRENT;
  header.e_phoff = sizeof header;
  header.e_ehsize = sizeof header;
  header.e_phentsize = sizeof(Elf64_Phdr);
  header.e_phnum = static_cast<Elf64_Half>(segments_.Items().size());
  const auto segments = std::as_bytes(segments_.Items());
  const auto notes = notes_.Items();
  return WriteAt(file_, &header, sizeof header, 0) &&
         WriteAt(file_, segments.data(), segments.size(), header.e_phoff) &&
         WriteAt(file_, notes.data(), notes.size(), header.e_phoff + segments.size());
}

bool CoreFile::WriteMemory(int memory) {
  return std::ranges::all_of(segments_.Items(), [&](const Elf64_Phdr& segment) {
    return segment.p_type != PT_LOAD || WriteSegment(memory, segment);
  });
}

// What cannot be read, as behind the end of a mapped file, stays a hole.
bool CoreFile::WriteSegment(int memory, const Elf64_Phdr& segment) {
  alignas(kPageBytes) static std::array<std::byte, kChunkBytes> chunk;
  for (std::uint64_t done = 0; done < segment.p_filesz;) {
    const std::size_t wanted = std::min<std::uint64_t>(kChunkBytes, segment.p_filesz - done);
    const ssize_t count = pread(memory, chunk.data(), wanted, static_cast<off_t>(segment.p_vaddr + done));
    const std::size_t size = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (!WriteUsedPages(file_, std::span(chunk).first(size), segment.p_offset + done)) return false;
    done += size > 0 ? size : kPageBytes;
  }
  return true;
}

}  // namespace QX_MONITOR
