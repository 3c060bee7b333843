#pragma once

#include <filesystem>
#include <string>

namespace logger {

// The file that this run of the program writes. Each run has one of its own, so that servers which run side by side
// do not move each other's: <stem>_<date>-<time>_<process id>.log, its older parts beside it as <...>.1.log and so on.
//
// Makes the folder if it is missing, and removes the files of the oldest runs so that `keepRuns` stay, this one
// included; 0 keeps all. Fails with a std::filesystem::filesystem_error if the folder cannot be made; a file that
// cannot be removed stays.
std::filesystem::path PrepareLogFile(const std::filesystem::path& folder, const std::string& stem, int keepRuns);

}  // namespace logger
