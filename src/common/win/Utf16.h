#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace TESSARIN_COMMON {

// UTF-8 to the UTF-16 of the system's wide calls; bytes that are no UTF-8 become the replacement character.
inline std::wstring Utf16FromUtf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

// The other way, for texts that the system hands out.
inline std::string Utf8FromUtf16(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

}  // namespace TESSARIN_COMMON
