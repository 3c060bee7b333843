#include "EventArguments.h"

#include <cJSON.h>

#include <memory>
#include <new>
#include <utility>

namespace TESSARIN_COMMON {

EventArguments::EventArguments() : array_(cJSON_CreateArray()) {}

EventArguments::~EventArguments() {
  cJSON_Delete(array_);
}

EventArguments& EventArguments::Add(const char* text) {
  return text != nullptr ? Append(cJSON_CreateString(text)) : *this;
}

EventArguments& EventArguments::Add(bool value) {
  return Append(cJSON_CreateBool(value));
}

EventArguments& EventArguments::Add(double number) {
  return Append(cJSON_CreateNumber(number));
}

EventArguments& EventArguments::AddRaw(const std::string& json) {
  return Append(cJSON_CreateRaw(json.c_str()));
}

// The arguments are known by their places, so none may be left out for want of memory.
EventArguments& EventArguments::Append(cJSON* item) {
  if (cJSON_AddItemToArray(array_, item)) return *this;
  cJSON_Delete(item);
  throw std::bad_alloc();
}

std::string EventArguments::Print() {
  const std::unique_ptr<char, decltype(&cJSON_free)> printed(cJSON_Print(array_), cJSON_free);
  cJSON_Delete(std::exchange(array_, cJSON_CreateArray()));
  if (printed == nullptr) throw std::bad_alloc();
  return printed.get();
}

}  // namespace TESSARIN_COMMON
