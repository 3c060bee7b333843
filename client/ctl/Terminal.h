#pragma once

namespace ravo::ctl {

// Whether a person reads the standard output as it comes.
[[nodiscard]] bool OutputIsTerminal();
// Empties the terminal; the next output stands at its top.
void ClearTerminal();

}  // namespace ravo::ctl
