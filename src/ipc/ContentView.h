#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "common/RapidJson.h"

namespace TESSARIN_COMMON {

// The parsed content of a message: positional arguments with typed accessors. An argument that is absent or of another
// type reads as empty, 0 or false; a lone value in place of the array answers for every index.
//
// The root view owns the values. A child points into its root's values and must not outlive them. Belongs to one
// thread at a time.
class ContentView {
 public:
  ContentView() = default;
  ContentView(ContentView&& other) noexcept
      : pool_(std::move(other.pool_)), value_(std::exchange(other.value_, nullptr)) {}
  ContentView& operator=(ContentView&& other) noexcept {
    pool_ = std::move(other.pool_);
    value_ = std::exchange(other.value_, nullptr);
    return *this;
  }
  ~ContentView() = default;

  // Replaces the content. Fails as JsonDocument does: "Parse json string fail. err=...".
  void Parse(std::string_view text);
  void Clear();

  // The argument as text.
  [[nodiscard]] std::string String(std::size_t index) const;
  // A number that is no signed 64-bit integer, such as 1.5, fails with "data_.f.flags & kInt64Flag".
  [[nodiscard]] std::int64_t Integer(std::size_t index) const;
  [[nodiscard]] bool Boolean(std::size_t index) const;
  // Only a number written with a fraction or an exponent counts: 2 gives 0.0, and 2.0 gives 2.0.
  [[nodiscard]] double Double(std::size_t index) const;

  [[nodiscard]] bool IsArray() const { return Value().IsArray(); }
  [[nodiscard]] std::size_t Size() const;  // 0 for what is no array
  // One element of an array; a view without a value if there is none.
  [[nodiscard]] ContentView Child(std::size_t index) const;

  [[nodiscard]] bool HasValue() const { return value_ != nullptr; }
  // This view's own value as text. Fails with "IsString()" if it is none, so also without a value.
  [[nodiscard]] std::string AsString() const;
  // A JSON null without a value.
  [[nodiscard]] const JsonValue& Value() const;
  // For reading a record: JsonNode(view.Child(1).ValueOrNull()).
  [[nodiscard]] const JsonValue* ValueOrNull() const { return value_; }

 private:
  struct Pool;
  struct GiveBack {
    void operator()(Pool* pool) const;
  };

  // The element, or the root standing for it; null if neither is of the kind.
  template <class Accepts>
  [[nodiscard]] const JsonValue* Argument(std::size_t index, Accepts accepts) const;

  std::unique_ptr<Pool, GiveBack> pool_;  // the root's alone
  const JsonValue* value_ = nullptr;
};

}  // namespace TESSARIN_COMMON
