#include "Contract.h"

#include <algorithm>

namespace integration {

std::vector<Method> AllMethods() {
  std::vector<Method> methods;
  for (const MethodGroup& group : kMethods) {
    for (const std::string& text : Split(group.methods, " ")) {
      const auto parts = Split(text, ">");
      Method method{parts[0], group.arguments, group.reply, {parts[0]}};
      if (parts.size() > 1) method.entries = parts[1] == "-" ? std::vector<std::string>() : Split(parts[1], ",");
      if (method.arguments == "x") method.entries.clear();
      methods.push_back(std::move(method));
    }
  }
  return methods;
}

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> pieces;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    pieces.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  return pieces;
}

}  // namespace integration
