#include "ContentView.h"

#include <atomic>
#include <cstring>

#include "common/JsonDocument.h"

namespace TESSARIN_COMMON {

// The memory of one parse. Its chunk serves request after request: a fresh one each time would cost its page faults
// each time.
struct ContentView::Pool {
  static constexpr std::size_t kChunkBytes = 0x10000;

  Pool() : allocator(chunk, sizeof chunk, kChunkBytes), document(&allocator) {}

  // The one that the last view gave back, or a new one.
  static Pool* Take() {
    Pool* const spare = Spare().exchange(nullptr);
    return spare != nullptr ? spare : new Pool;
  }
  static void Return(Pool* pool) {
    pool->document.SetNull();
    pool->allocator.Clear();
    delete Spare().exchange(pool);
  }

  alignas(std::max_align_t) char chunk[kChunkBytes];
  JsonPool allocator;
  JsonDocument document;

 private:
  static std::atomic<Pool*>& Spare() {
    static std::atomic<Pool*> spare{nullptr};
    return spare;
  }
};

void ContentView::GiveBack::operator()(Pool* pool) const {
  Pool::Return(pool);
}

void ContentView::Parse(std::string_view text) {
  Clear();
  pool_.reset(Pool::Take());
  auto& document = pool_->document;
  // Parsed in place, in a copy that lives as long as the values: their strings need no memory of their own.
  auto* const copy = static_cast<char*>(pool_->allocator.Malloc(text.size() + 1));
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  document.ParseInPlace(copy, text);
  value_ = &document;
}

void ContentView::Clear() {
  value_ = nullptr;
  pool_.reset();
}

std::string ContentView::String(std::size_t index) const {
  const auto* found = Argument(index, [](const auto& value) { return value.IsString(); });
  return found != nullptr ? std::string(found->GetString(), found->GetStringLength()) : std::string();
}

std::int64_t ContentView::Integer(std::size_t index) const {
  const auto* found = Argument(index, [](const auto& value) { return value.IsNumber(); });
  return found != nullptr ? found->GetInt64() : 0;
}

bool ContentView::Boolean(std::size_t index) const {
  const auto* found = Argument(index, [](const auto& value) { return value.IsBool(); });
  return found != nullptr && found->GetBool();
}

double ContentView::Double(std::size_t index) const {
  const auto* found = Argument(index, [](const auto& value) { return value.IsDouble(); });
  return found != nullptr ? found->GetDouble() : 0.0;
}

template <class Accepts>
const JsonValue* ContentView::Argument(std::size_t index, Accepts accepts) const {
  if (index < Size()) {
    const auto& element = Value()[static_cast<rapidjson::SizeType>(index)];
    if (accepts(element)) return &element;
  }
  return accepts(Value()) ? &Value() : nullptr;
}

std::size_t ContentView::Size() const {
  return IsArray() ? Value().Size() : 0;
}

ContentView ContentView::Child(std::size_t index) const {
  ContentView child;
  if (index < Size()) child.value_ = &Value()[static_cast<rapidjson::SizeType>(index)];
  return child;
}

std::string ContentView::AsString() const {
  const char* const text = Value().GetString();
  return {text, Value().GetStringLength()};
}

const JsonValue& ContentView::Value() const {
  static const auto* const none = new JsonValue;
  return value_ != nullptr ? *value_ : *none;
}

}  // namespace TESSARIN_COMMON
