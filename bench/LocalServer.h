#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Measure.h"
#include "Picture.h"
#include "ipc/NamedPipeClient.h"

namespace bench {

// A whole server in this process, with a client that only listens. It ends with the process. The calling thread plays
// the engine.
class LocalServer {
 public:
  // Loads the engine from that folder.
  LocalServer(const std::string& pipe, const std::string& engineFolder);
  // Removes its slots: the process is about to end without the server's knowing.
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  // Makes a stream known whose name is its user's.
  void AddStream(const std::string& uid);
  // Lets each slot take its next frame.
  void Tick();
  // The engine's call.
  void Deliver(const std::string& uid, const Picture& picture);
  // Where the stream's frames are read; after the first one.
  [[nodiscard]] std::string SlotPath(const std::string& uid) const;

  // A frame as our side, and plain copies of it to a target as the other; a sample a round. The streams are named
  // after `uid`.
  [[nodiscard]] std::vector<Side> FrameSides(const std::string& uid, const Picture& picture, const std::string& name,
                                             const std::function<void(std::size_t target)>& copy);

 private:
  TESSARIN_COMMON::NamedPipeClient client_;
};

// What lies in front of the planes in a slot: plain copies go to the same alignment.
constexpr std::size_t kHeaderBytes = 52;

}  // namespace bench
