#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace shoom {

// One named segment of shared memory, readable and writable by the same user alone. Its maker removes it when it
// closes; on Windows it lives on while another process has it open. Belongs to one thread at a time.
class Shm {
 public:
  enum Result : int { kOk = 0, kMappingFailed = 100, kViewFailed = 110, kOpenFailed = 120 };

  // Opens nothing yet.
  Shm(std::string path, std::uint32_t sizeBytes);
  ~Shm();
  Shm(const Shm&) = delete;
  Shm& operator=(const Shm&) = delete;

  // true: makes the segment, zeroed, and maps it for writing; on Linux the name must be free and the memory be there.
  // false: opens an existing one for reading; its first `sizeBytes` must exist. A failure leaves the system's error
  // for LastSystemError.
  [[nodiscard]] int Create(bool make);
  void Close();

  // The mapped bytes; null before Create and after Close.
  [[nodiscard]] std::uint8_t* Data() const { return data_; }
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  struct Mapping;

  const std::string path_;
  const std::uint32_t sizeBytes_;
  std::uint8_t* data_ = nullptr;
  std::unique_ptr<Mapping> mapping_;
};

}  // namespace shoom
