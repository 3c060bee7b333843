#pragma once

#include <concepts>
#include <string>

struct cJSON;

namespace TESSARIN_COMMON {

// Builds the argument array of an event: EventArguments().Add("ann").Add(5).AddRaw(record).Print(). A want of memory
// throws, in Add and in Print.
class EventArguments {
 public:
  EventArguments();
  ~EventArguments();
  EventArguments(const EventArguments&) = delete;
  EventArguments& operator=(const EventArguments&) = delete;

  // Text up to its first NUL. A null pointer adds nothing.
  EventArguments& Add(const char* text);
  EventArguments& Add(const std::string& text) { return Add(text.c_str()); }
  EventArguments& Add(bool value);
  // All numbers go through a double, so that integers above 2^53 lose precision; clients know.
  EventArguments& Add(double number);
  template <std::integral T>
  EventArguments& Add(T number) {
    return Add(static_cast<double>(number));
  }
  // JSON text that goes in as it stands.
  EventArguments& AddRaw(const std::string& json);

  // The text, in cJSON's formatted form with tabs and line feeds. The array is empty afterwards.
  [[nodiscard]] std::string Print();

 private:
  EventArguments& Append(cJSON* item);

  cJSON* array_;
};

}  // namespace TESSARIN_COMMON
