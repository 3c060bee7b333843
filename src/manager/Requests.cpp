#include "Requests.h"

#include "RavoManager.h"

namespace TESSARIN_LUMARC {

void ReplyText(IPCData& request, std::string content) {
  request.content = std::move(content);
  request.message_type = TESSARIN_COMMON::kMessageCallResponse;
  RavoManager::GetInstance().SendEnvelope(request);
}

void ReplyNull(IPCData& request) {
  ReplyText(request, "null");
}

bool RequestManager::handle(IPCData& request) const {
  const auto entry = handlers_.find(request.message_key);
  if (entry == handlers_.end()) return false;
  entry->second(request);
  return true;
}

}  // namespace TESSARIN_LUMARC
