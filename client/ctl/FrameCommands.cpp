#include <fmt/format.h>

#include "Commands.h"
#include "Files.h"
#include "reader/Y4mWriter.h"

namespace ravo::ctl {
namespace {

// The slots that the server has now, for a client that hears of none being made.
void RequireSlot(Context& context, const std::string& sid) {
  if (!context.slots.Refresh(context.line.Timeout())) throw std::runtime_error("the server does not tell its slots");
  std::string known;
  for (const auto& slot : context.slots.Slots()) {
    if (slot.sid == sid) return;
    known += " " + slot.sid;
  }
  throw std::runtime_error(
      fmt::format("the stream {} has no slot; those that have:{}", sid, known.empty() ? " none" : known));
}

void ReadFrame(Context& context, const std::string& sid, client::Frame& frame) {
  if (context.slots.Read(sid, frame, context.line.Timeout()) == client::FrameReader::Outcome::Frame) return;
  throw std::runtime_error(fmt::format("no frame of {} within {} s", sid, context.line.Timeout().count()));
}

}  // namespace

int RunSnapshot(Context& context) {
  client::Frame frame;
  RequireSlot(context, context.Word(0));
  ReadFrame(context, context.Word(0), frame);
  WritePng(context.Word(1), frame);
  fmt::print("{}: {}x{}\n", context.Word(1), frame.width, frame.height);
  return 0;
}

int RunRecord(Context& context) {
  const int frames = context.line.Number("--frames", 100, 1);
  RequireSlot(context, context.Word(0));
  client::Y4mWriter writer(PathFromUtf8(context.Word(1)));
  client::Frame frame;
  int written = 0;
  for (; written < frames; ++written) {
    ReadFrame(context, context.Word(0), frame);
    if (!writer.Write(frame)) {
      throw std::runtime_error(
          fmt::format("cannot write frame {} of {}x{} to {}", written, frame.width, frame.height, context.Word(1)));
    }
  }
  fmt::print("{}: {} frames\n", context.Word(1), written);
  return 0;
}

}  // namespace ravo::ctl
