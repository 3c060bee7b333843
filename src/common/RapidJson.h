#pragma once

// The one way to RapidJSON: its assertions throw their expression as a runtime error, for instance "IsObject()".
#include <stdexcept>
#include <utility>

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

// Its memory comes from malloc, whose failure it does not look at; here that throws as elsewhere.
#include <rapidjson/rapidjson.h>

#include <cstdlib>
#include <new>

namespace TESSARIN_COMMON {
inline void* OrBadAlloc(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
}  // namespace TESSARIN_COMMON

#define malloc(bytes) forward<void*>(::TESSARIN_COMMON::OrBadAlloc(std::malloc(bytes)))
#define realloc(memory, bytes) forward<void*>(::TESSARIN_COMMON::OrBadAlloc(std::realloc(memory, bytes)))
#include <rapidjson/allocators.h>
#undef malloc
#undef realloc

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
