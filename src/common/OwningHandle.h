#pragma once

#include <utility>

namespace TESSARIN_COMMON {

// Holds one handle of the system (descriptor, module, mapping, event) and closes it once. Traits give the handle's
// Type, its value for "none", and Close:
//   struct DescriptorTraits { using Type = int; static Type None(); static void Close(Type); };
template <class Traits>
class OwningHandle {
 public:
  using Type = typename Traits::Type;

  OwningHandle() = default;
  explicit OwningHandle(Type handle) : handle_(std::move(handle)) {}
  OwningHandle(OwningHandle&& other) noexcept : handle_(other.Release()) {}
  OwningHandle& operator=(OwningHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  ~OwningHandle() { Reset(); }

  [[nodiscard]] Type Get() const { return handle_; }
  explicit operator bool() const { return handle_ != Traits::None(); }

  // Gives the handle away without closing it.
  [[nodiscard]] Type Release() { return std::exchange(handle_, Traits::None()); }

  // Closes what is held and takes another.
  void Reset(Type handle = Traits::None()) {
    const Type old = std::exchange(handle_, std::move(handle));
    if (old != Traits::None()) Traits::Close(old);
  }

 private:
  Type handle_ = Traits::None();
};

}  // namespace TESSARIN_COMMON
