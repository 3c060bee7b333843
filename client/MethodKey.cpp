#include "MethodKey.h"

namespace ravo::client {
namespace {

bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}

}  // namespace

std::string MethodKey(std::string_view method) {
  if (method.empty() || !IsUpper(method.front())) return std::string(method);
  std::string key;
  for (const char c : method) {
    // One underscore for each capital, also in a row of them: the server makes a capital of each letter behind one.
    if (IsUpper(c) && !key.empty()) key += '_';
    key += IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return key;
}

}  // namespace ravo::client
