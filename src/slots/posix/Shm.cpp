#include "../Shm.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "common/posix/Descriptor.h"
#include "common/posix/NameRegistry.h"

namespace shoom {
namespace {

using TESSARIN_COMMON::Descriptor;
using TESSARIN_COMMON::NameRegistry;

struct View {
  void* address = nullptr;
  std::size_t sizeBytes = 0;
  bool operator==(const View&) const = default;
};

struct ViewTraits {
  using Type = View;
  static View None() { return {}; }
  static void Close(const View& view) { munmap(view.address, view.sizeBytes); }
};
using OwnedView = TESSARIN_COMMON::OwningHandle<ViewTraits>;

// A name in the system that goes away with this object.
struct NameTraits {
  using Type = std::string;
  static std::string None() { return {}; }
  static void Close(const std::string& name) { NameRegistry::GetInstance().Remove(NameRegistry::Kind::Segment, name); }
};
using OwnedName = TESSARIN_COMMON::OwningHandle<NameTraits>;

Descriptor MakeSegment(const std::string& name) {
  Descriptor descriptor;
  static_cast<void>(NameRegistry::GetInstance().Add(NameRegistry::Kind::Segment, name, [&] {
    descriptor.Reset(shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600));
    return static_cast<bool>(descriptor);
  }));
  return descriptor;
}

// Takes the pages now: a full file system is then an error here, and not a signal in the middle of a frame.
bool Reserve(int descriptor, std::uint32_t sizeBytes) {
  int error = EINTR;
  while (error == EINTR) error = posix_fallocate(descriptor, 0, static_cast<off_t>(sizeBytes));
  errno = error;
  return error == 0;
}

OwnedView Map(int descriptor, std::size_t sizeBytes, int protection) {
  void* address = mmap(nullptr, sizeBytes, protection, MAP_SHARED, descriptor, 0);
  return address != MAP_FAILED ? OwnedView({address, sizeBytes}) : OwnedView();
}

// Never more than there is: a touch beyond the end of the object would be a signal. And never what another user has
// put under the name of a segment that is gone.
OwnedView MapForReading(int descriptor, std::uint32_t sizeBytes) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return {};
  if (status.st_uid != geteuid()) {
    errno = EACCES;
    return {};
  }
  const auto there = static_cast<std::uint64_t>(status.st_size);
  if (there >= sizeBytes && there != 0) return Map(descriptor, sizeBytes != 0 ? sizeBytes : there, PROT_READ);
  errno = EINVAL;
  return {};
}

}  // namespace

struct Shm::Mapping {
  OwnedName name;  // the maker's alone
  OwnedView view;
};

Shm::Shm(std::string path, std::uint32_t sizeBytes) : path_(std::move(path)), sizeBytes_(sizeBytes) {}

Shm::~Shm() {
  Close();
}

int Shm::Create(bool make) {
  auto mapping = std::make_unique<Mapping>();
  const std::string name = '/' + path_;
  std::string held =
      make ? name : std::string();  // copied while there is nothing yet that a failure would leave behind
  const Descriptor descriptor = make ? MakeSegment(name) : Descriptor(shm_open(name.c_str(), O_RDONLY, 0));
  if (!descriptor) return make ? kMappingFailed : kOpenFailed;
  if (make) mapping->name.Reset(std::move(held));

  int result = kOk;
  if (make && !Reserve(descriptor.Get(), sizeBytes_)) {
    result = kMappingFailed;
  } else {
    mapping->view =
        make ? Map(descriptor.Get(), sizeBytes_, PROT_READ | PROT_WRITE) : MapForReading(descriptor.Get(), sizeBytes_);
    if (!mapping->view) result = kViewFailed;
  }
  if (result != kOk) {
    const int error = errno;
    mapping.reset();
    errno = error;
    return result;
  }
  data_ = static_cast<std::uint8_t*>(mapping->view.Get().address);
  mapping_ = std::move(mapping);
  return kOk;
}

void Shm::Close() {
  data_ = nullptr;
  mapping_.reset();
}

}  // namespace shoom
