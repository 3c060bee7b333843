#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the system gives for child programs. Failures are std::runtime_errors.
namespace support::calls {

struct Child {
  std::intptr_t process;
  std::intptr_t out;  // the reading ends of its standard output and error
  std::intptr_t err;
};

Child Spawn(const std::string& program, const std::vector<std::string>& arguments);
std::optional<int> Wait(std::intptr_t process, std::chrono::milliseconds bound);
void Kill(std::intptr_t process);
void Interrupt(std::intptr_t process);
void CloseProcess(std::intptr_t process);

// Reads what is there, blocking; 0 at the end.
std::size_t Read(std::intptr_t pipe, char* buffer, std::size_t size);
void ClosePipe(std::intptr_t pipe);

std::string OwnFolder();  // of the running program, without a separator at the end
extern const char* const kProgramEnding;

}  // namespace support::calls
