#include "../PrivateFile.h"

namespace logger {

void MakePrivate(const std::filesystem::path&) {}

}  // namespace logger
