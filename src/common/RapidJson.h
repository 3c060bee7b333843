#pragma once

// The one way to RapidJSON: its assertions throw their expression as a runtime error, for instance "IsObject()".
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

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
