#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace TESSARIN_COMMON {

// FNV-1a, 32 bits, over the bytes of a text. An empty text gives the offset basis.
constexpr std::uint32_t Fnv1a(std::string_view text) {
  std::uint32_t hash = 2166136261u;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
  return hash;
}

struct Fnv1aHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return Fnv1a(text); }
};

// A table keyed by text; look-ups take a string_view without a copy.
template <class T>
using StringMap = std::unordered_map<std::string, T, Fnv1aHash, std::equal_to<>>;

}  // namespace TESSARIN_COMMON
