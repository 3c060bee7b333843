#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ravo::client {

// A slot's segment, mapped for reading, and one of its events. Keeps both alive after the server has removed them.
// Belongs to one thread.
class SlotView {
 public:
  // Null if the segment or the event cannot be opened; `error` then says which call failed and why.
  static std::unique_ptr<SlotView> Open(const std::string& path, const std::string& eventName, std::string& error);
  ~SlotView();
  SlotView(const SlotView&) = delete;
  SlotView& operator=(const SlotView&) = delete;

  [[nodiscard]] const std::uint8_t* Data() const { return data_; }
  // What is really mapped, not what the server announced.
  [[nodiscard]] std::size_t SizeBytes() const { return sizeBytes_; }
  // Waits for the event and takes it; false after the time.
  bool Wait(std::chrono::milliseconds timeout);

 private:
  struct Handles;

  SlotView();

  std::unique_ptr<Handles> handles_;
  const std::uint8_t* data_ = nullptr;
  std::size_t sizeBytes_ = 0;
};

}  // namespace ravo::client
