#pragma once

// The one way to RapidJSON: its assertions throw their expression as a runtime error, for instance "IsObject()".
#include <cstdlib>
#include <new>
#include <stdexcept>

#ifdef RAPIDJSON_ASSERT
#error "include common/RapidJson.h before anything of rapidjson"
#endif
#define RAPIDJSON_ASSERT(expression)                          \
  do {                                                        \
    if (!(expression)) throw std::runtime_error(#expression); \
  } while (false)
// Inside its noexcept functions a throw could not leave.
#define RAPIDJSON_NOEXCEPT_ASSERT(expression) static_cast<void>(expression)
#define RAPIDJSON_HAS_STDSTRING 1
// Strings are scanned sixteen bytes at a time. The scan may look at bytes behind the end of a text, on the same line of
// memory, which the address sanitizer would take for a fault.
#if defined(__SSE2__) && !defined(RAVO_SANITIZE_ADDRESS)
#define RAPIDJSON_SSE2 1
#endif

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace TESSARIN_COMMON {

// The library's own allocator hands on what malloc gives, and nobody looks whether it is null; this one throws.
class JsonMemory {
 public:
  static constexpr bool kNeedFree = true;

  static void* Malloc(std::size_t bytes) { return bytes != 0 ? OrThrow(std::malloc(bytes)) : nullptr; }
  static void* Realloc(void* memory, std::size_t /*oldBytes*/, std::size_t bytes) {
    if (bytes != 0) return OrThrow(std::realloc(memory, bytes));
    std::free(memory);
    return nullptr;
  }
  static void Free(void* memory) { std::free(memory); }

 private:
  static void* OrThrow(void* memory) {
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
  }
};

using JsonPool = rapidjson::MemoryPoolAllocator<JsonMemory>;
using JsonValue = rapidjson::GenericValue<rapidjson::UTF8<>, JsonPool>;
using JsonReader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory>;
using JsonBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, JsonMemory>;

}  // namespace TESSARIN_COMMON
