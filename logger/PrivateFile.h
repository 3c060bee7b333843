#pragma once

#include <filesystem>

namespace logger {

// Makes the file, if it is missing, for the own user alone, since lines hold whole requests. Fails with a
// std::system_error if the name belongs to somebody else, is a link of either kind or no plain file: whoever may write
// in the folder could otherwise lead the lines elsewhere. Where files inherit their folder's rights it does nothing.
void MakePrivate(const std::filesystem::path& path);

}  // namespace logger
