#pragma once

#include <ravo/ravo.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// What the exports hand to the host. It comes from the C heap, where the release exports send it back.
namespace TESSARIN_COMMON {

inline char* NewText(const std::string& text) {
  char* const copy = static_cast<char*>(std::malloc(text.size() + 1));
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

// An array of records or of char*. It is there to be released even with nothing in it.
template <class T>
T* NewArray(const std::vector<T>& elements) {
  T* const copy = static_cast<T*>(std::malloc((elements.size() + 1) * sizeof(T)));
  std::copy(elements.begin(), elements.end(), copy);
  return copy;
}

template <class T>
FfiList NewList(const std::vector<T>& elements) {
  return {NewArray(elements), static_cast<std::int32_t>(elements.size())};
}

}  // namespace TESSARIN_COMMON
