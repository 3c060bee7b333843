#include "../Machine.h"

#include "SystemServices.h"

namespace integration {

struct Machine::System {
  SystemServices services;
};
const char* const Machine::kListens = "suspend and resume are heard from the system bus";

Machine::Machine() : system_(std::make_unique<System>()) {}
Machine::~Machine() = default;

void Machine::Suspend(const ServerProcess& /*server*/) {
  system_->services.PrepareForSleep(true);
}

void Machine::Resume(const ServerProcess& /*server*/) {
  system_->services.PrepareForSleep(false);
}

}  // namespace integration
