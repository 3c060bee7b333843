#pragma once

#include <string>
#include <vector>

#include "support/PipeName.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WaitUntil.h"

namespace integration {

using support::kBound;
using support::WaitUntil;

// The text as a JSON string, quotes included.
[[nodiscard]] std::string Quoted(const std::string& text);
// The text with each occurrence of a word replaced.
[[nodiscard]] std::string Replaced(std::string text, const std::string& word, const std::string& by);

// ravo-host as a process of its own, with the simulated engine, which keeps a journal. Its log, its journal and what
// tests add lie in a folder of its own. Belongs to one thread.
class ServerProcess {
 public:
  // Members of the engine's parameter text, and of the options: JSON without the braces.
  ServerProcess(const std::string& params, const std::string& options);

  [[nodiscard]] const std::string& Pipe() const { return pipe_; }
  [[nodiscard]] std::string Folder() const { return folder_.Text(); }
  [[nodiscard]] static std::string EngineFolder();
  // The whole parameter text that the options hold.
  [[nodiscard]] const std::string& Params() const { return params_; }
  [[nodiscard]] support::Process& Host() { return host_; }

  // The lines of the journal so far that begin with this text: of all calls, of {"entry":"Subscribe" and so on.
  [[nodiscard]] std::vector<std::string> Journal(const std::string& beginning = "") const;
  // The calls of one entry: what stands between the brackets of its arguments.
  [[nodiscard]] std::vector<std::string> Calls(const std::string& entry) const;
  // Waits until an entry was called so often.
  bool WaitForCalls(const std::string& entry, std::size_t count) const;

  // The lines of the log that hold this text, as far as they are written out, which takes a second.
  [[nodiscard]] std::vector<std::string> LogLines(const std::string& text) const;
  bool WaitForLog(const std::string& text, std::size_t count = 1) const;

  // Names in the system's memory that belong to slots of this server, once one of its slot paths is known.
  [[nodiscard]] static std::vector<std::string> SharedNames(const std::string& slotPath);

 private:
  const support::TempFolder folder_;
  const std::string pipe_ = support::UniquePipeName();
  const std::string params_;
  support::Process host_;
};

}  // namespace integration
