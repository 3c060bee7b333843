#include "ServerOption.h"

#include "common/JsonNode.h"

namespace TESSARIN_COMMON {

ServerOption ParseServerOption(std::string_view text) {
  JsonNode root(text);
  ServerOption option;
  ReadRecord(root, option);
  return option;
}

}  // namespace TESSARIN_COMMON
