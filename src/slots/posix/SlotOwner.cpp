#include "../SlotOwner.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string_view>

#include "common/posix/Descriptor.h"
#include "common/posix/NameRegistry.h"

// How the living are told from the dead: an owner holds a lock on its mark, a file beside the segments, until its
// process ends in whatever way. Owners hold it shared, since two processes may have the same owner part (a hash, and a
// process id of another name space); who removes names holds it alone, and so knows that nobody makes any.
namespace TESSARIN_LUMARC::slots {
namespace {

using TESSARIN_COMMON::Descriptor;
using TESSARIN_COMMON::NameRegistry;

constexpr const char* kDirectory = "/dev/shm/";
constexpr std::string_view kMarkPrefix = "ravo_owner_";
constexpr std::string_view kEventPrefix = "sem.qx_ctl_";  // what the C library makes of the event's name
constexpr std::string_view kEventSuffixes[] = {"_main", "_side"};

bool IsNumber(std::string_view text) {
  return !text.empty() && text.size() <= 20 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The owner in "<number>_<owner>_<number>"; empty for anything else.
std::string_view OwnerOfPath(std::string_view path) {
  const auto first = path.find('_');
  const auto last = path.rfind('_');
  if (first == last) return {};
  const std::string_view owner = path.substr(first + 1, last - first - 1);
  return IsNumber(path.substr(0, first)) && IsNumber(owner) && IsNumber(path.substr(last + 1)) ? owner
                                                                                               : std::string_view();
}

std::string_view OwnerOfEvent(std::string_view name) {
  if (!name.starts_with(kEventPrefix)) return {};
  for (const auto suffix : kEventSuffixes) {
    if (!name.ends_with(suffix)) continue;
    return OwnerOfPath(name.substr(kEventPrefix.size(), name.size() - kEventPrefix.size() - suffix.size()));
  }
  return {};
}

std::string_view OwnerOfMark(std::string_view name) {
  if (!name.starts_with(kMarkPrefix)) return {};
  name.remove_prefix(kMarkPrefix.size());
  return IsNumber(name) ? name : std::string_view();
}

bool IsOurs(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

bool IsOurFile(const std::string& name) {
  struct stat status = {};
  return lstat((kDirectory + name).c_str(), &status) == 0 && IsOurs(status);
}

template <class Visit>
void ForEachName(Visit visit) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(kDirectory), closedir);
  if (!directory) return;
  while (const dirent* entry = readdir(directory.get())) visit(std::string(entry->d_name));
}

// Owners come from marks and events. A segment alone could be anybody's, three numbers being no unusual name.
std::set<std::string> OwnersSeen() {
  std::set<std::string> owners;
  ForEachName([&](const std::string& name) {
    std::string_view owner = OwnerOfMark(name);
    if (owner.empty()) owner = OwnerOfEvent(name);
    if (!owner.empty() && IsOurFile(name)) owners.emplace(owner);
  });
  return owners;
}

void RemoveNames(const std::string& owner) {
  std::set<std::string> names;  // first all, then remove: a directory that changes may show some twice or not at all
  ForEachName([&](const std::string& name) {
    if ((OwnerOfPath(name) == owner || OwnerOfEvent(name) == owner) && IsOurFile(name)) names.insert(name);
  });
  for (const auto& name : names) unlink((kDirectory + name).c_str());
}

std::string MarkFile(const std::string& owner) {
  return kDirectory + std::string(kMarkPrefix) + owner;
}

bool Lock(int descriptor, int operation) {
  int result = -1;
  do result = flock(descriptor, operation);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

// Whether the file is still the one of that name, and not one that its last owner removed while we waited for the lock.
bool IsLinked(int descriptor, const std::string& file) {
  struct stat held = {};
  struct stat named = {};
  return fstat(descriptor, &held) == 0 && lstat(file.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
         held.st_ino == named.st_ino;
}

// A stranger may have made the file first, and hold a lock on it that we would wait for.
bool IsOurMark(int descriptor) {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 && IsOurs(status);
}

// The mark, made if it is missing, with the lock on it; none if the lock or the file cannot be had.
Descriptor LockMark(const std::string& file, int operation) {
  while (true) {
    Descriptor mark(open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!mark || !IsOurMark(mark.Get()) || !Lock(mark.Get(), operation)) return {};
    if (IsLinked(mark.Get(), file)) return mark;
  }
}

// Alone for a moment, if nobody else lives, to clear what an earlier owner of that name left; then shared.
Descriptor TakeMark(const std::string& owner) {
  const std::string file = MarkFile(owner);
  while (true) {
    Descriptor mark = LockMark(file, LOCK_EX | LOCK_NB);
    if (!mark) return LockMark(file, LOCK_SH);
    RemoveNames(owner);
    // The change of a lock lets go of it in between, so that a sweeper may have had the file.
    if (!Lock(mark.Get(), LOCK_SH)) return {};
    if (IsLinked(mark.Get(), file)) return mark;
  }
}

struct Claims {
  std::mutex mutex;
  std::map<std::string, Descriptor> marks;  // none for an owner whose mark could not be had
};

Claims& OurClaims() {
  static auto* const claims = new Claims;
  return *claims;
}

}  // namespace

// Only the first claim clears what an earlier owner left: behind it the names are our own, even where it got no mark,
// be it somebody else's file or no memory. Our slots then live without one, and the next claim tries again. The name is
// kept first, so that a file which is made goes with the process, whatever fails then.
void ClaimOwner(const std::string& owner) {
  auto& claims = OurClaims();
  const std::lock_guard lock(claims.mutex);
  const auto [claim, isFirst] = claims.marks.try_emplace(owner);
  Descriptor& mark = claim->second;
  if (mark) return;
  const std::string name = '/' + std::string(kMarkPrefix) + owner;
  if (!NameRegistry::GetInstance().Add(NameRegistry::Kind::OwnerMark, name, [] { return true; })) return;
  mark = isFirst ? TakeMark(owner) : LockMark(MarkFile(owner), LOCK_SH);
}

void SweepLeftovers() {
  auto& claims = OurClaims();
  const std::lock_guard lock(claims.mutex);
  for (const auto& owner : OwnersSeen()) {
    if (claims.marks.contains(owner)) continue;
    const Descriptor mark = LockMark(MarkFile(owner), LOCK_EX | LOCK_NB);
    if (!mark) continue;  // alive
    RemoveNames(owner);
    unlink(MarkFile(owner).c_str());
  }
}

}  // namespace TESSARIN_LUMARC::slots
