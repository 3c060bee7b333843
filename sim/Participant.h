#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "MediaStream.h"
#include "common/Fields.h"

namespace sim {

// One published stream of another user, as a parameter text gives it: what he publishes, when he comes and goes, and
// what goes wrong. -1 stands for never.
struct Participant {
  std::string userId;
  std::int64_t streamIndex = 0;  // 1 for a screen
  std::string video;             // Y4M file; empty for the test pattern
  std::vector<Encoding> encodings;
  std::int64_t joinAfterMs = 0;    // after the own join
  std::int64_t leaveAfterMs = -1;  // after his join
  // Faults.
  std::int64_t subscribeState = 0;  // the state that answers a subscription; nothing starts unless it is 0
  bool subscribeNever = false;      // a subscription is not answered at all
  std::int64_t silentAfterFrames = -1;
  std::int64_t silentForMs = -1;       // how long the silence lasts; -1 for ever
  std::int64_t leaveAfterFrames = -1;  // leaves while this frame is being handed over
  std::int64_t rotation = 0;
  std::int64_t strideExtra = 0;  // bytes of padding behind each row
  std::vector<ShapeChange> changes;

  // Whether the stream can be played.
  [[nodiscard]] bool IsUsable() const {
    return !userId.empty() && std::ranges::all_of(encodings, &Encoding::IsUsable) &&
           std::ranges::all_of(changes, &ShapeChange::IsUsable) && strideExtra >= 0 &&
           strideExtra <= Encoding::kMaxSide;
  }
  [[nodiscard]] std::string Sid() const { return userId + "_" + std::to_string(streamIndex); }
  [[nodiscard]] bool IsScreen() const { return streamIndex == 1; }
  [[nodiscard]] MediaPlan Plan() const {
    return {IsScreen() ? userId + " SCREEN" : userId,
            video,
            rotation,
            strideExtra,
            silentAfterFrames,
            silentForMs,
            changes};
  }
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::Encoding> = Fields(Field{"width", &sim::Encoding::width},
                                                      Field{"height", &sim::Encoding::height},
                                                      Field{"maxKbps", &sim::Encoding::maxKbps},
                                                      Field{"frameRate", &sim::Encoding::frameRate},
                                                      Field{"scaleMode", &sim::Encoding::scaleMode},
                                                      Field{"codecMode", &sim::Encoding::codecMode});

template <>
inline constexpr auto kFields<sim::ShapeChange> = Fields(Field{"afterFrames", &sim::ShapeChange::afterFrames},
                                                         Field{"width", &sim::ShapeChange::width},
                                                         Field{"height", &sim::ShapeChange::height},
                                                         Field{"rotation", &sim::ShapeChange::rotation},
                                                         Field{"strideExtra", &sim::ShapeChange::strideExtra});

template <>
inline constexpr auto kFields<sim::Participant> = Fields(
    Field{"userId", &sim::Participant::userId}, Field{"streamIndex", &sim::Participant::streamIndex},
    Field{"video", &sim::Participant::video}, Field{"encodings", &sim::Participant::encodings},
    Field{"joinAfterMs", &sim::Participant::joinAfterMs}, Field{"leaveAfterMs", &sim::Participant::leaveAfterMs},
    Field{"subscribeState", &sim::Participant::subscribeState},
    Field{"subscribeNever", &sim::Participant::subscribeNever},
    Field{"silentAfterFrames", &sim::Participant::silentAfterFrames},
    Field{"silentForMs", &sim::Participant::silentForMs},
    Field{"leaveAfterFrames", &sim::Participant::leaveAfterFrames}, Field{"rotation", &sim::Participant::rotation},
    Field{"strideExtra", &sim::Participant::strideExtra}, Field{"changes", &sim::Participant::changes});

}  // namespace TESSARIN_COMMON
