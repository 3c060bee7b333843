#pragma once

#include <string>

namespace bench {

// The subjects. Each runs in a process of its own, which is pinned to one core, measures, and puts its table out:
// on standard output, and as JSON into the folder.
void FrameSubject(const std::string& out);
void WakeSubject(const std::string& out);
void RequestSubject(const std::string& out);
void InFlightSubject(const std::string& out);
void TaskSubject(const std::string& out);
void StartSubject(const std::string& out);
void GrowthSubject(const std::string& out);
void IdleSubject(const std::string& out);
void WindowsSubject(const std::string& out);

}  // namespace bench
