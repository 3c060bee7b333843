#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "../Picture.h"

// A video stream through a PipeWire daemon of our own. Null where the library is not installed.
namespace bench {

class PipeWireSender {
 public:
  virtual ~PipeWireSender() = default;
  // Starts what copies the picture into a buffer and hands it over.
  virtual void Send(const Picture& picture) = 0;
};

// Becomes the daemon, whose socket lies in that folder.
[[gnu::weak]] void RunPipeWire(const std::string& folder);
// Stays, and calls for each frame that has come. `onNode` is told the number of this end.
[[gnu::weak]] void ReadPipeWire(const std::string& folder, const PictureSize& size,
                                const std::function<void(std::uint32_t)>& onNode, const std::function<void()>& onFrame);
// The other end, linked to the node with that number.
[[gnu::weak]] std::unique_ptr<PipeWireSender> ConnectPipeWire(const std::string& folder, const PictureSize& size,
                                                              std::uint32_t readerNode);

}  // namespace bench
