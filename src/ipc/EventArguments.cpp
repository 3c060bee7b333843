#include "EventArguments.h"

#include <cJSON.h>

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

EventArguments& EventArguments::Append(cJSON* item) {
  if (!cJSON_AddItemToArray(array_, item)) cJSON_Delete(item);
  return *this;
}

std::string EventArguments::Print() {
  char* const printed = cJSON_Print(array_);
  cJSON_Delete(std::exchange(array_, cJSON_CreateArray()));
  std::string text = printed != nullptr ? printed : "";
  cJSON_free(printed);
  return text;
}

}  // namespace TESSARIN_COMMON
