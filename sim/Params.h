#pragma once

#include <string_view>

namespace sim {

// Takes one parameter text of the engine. A JSON object adds to what earlier texts said: its members named sim.* set
// the simulation up (see README.md), all others are the real engine's and change nothing here. An unknown sim.* name,
// or one whose value does not fit, is a violation; the other members count all the same. False if the text is no JSON
// object. Any thread may call it.
bool AddParams(std::string_view text);

}  // namespace sim
