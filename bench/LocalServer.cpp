#include "LocalServer.h"

#include <ravo/frame_slot.h>

#include <stdexcept>
#include <thread>

#include "manager/FrameDelivery.h"
#include "manager/RavoManager.h"
#include "slots/StreamDataManager.h"

namespace bench {

using TESSARIN_LUMARC::RavoManager;
using TESSARIN_LUMARC::slots::StreamDataManager;

static_assert(kHeaderBytes == RAVO_SLOT_HEADER_BYTES);

Picture::Picture(std::int64_t width, std::int64_t height)
    : info{.field_type = 0,
           .format = 0,
           .colorSpace = 0,
           .width = width,
           .height = height,
           .rotation = 0,
           .renderTimeMs = 0,
           .flip = false},
      strides{width, width / 2, width / 2} {
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    sizes[i] = static_cast<std::size_t>(i == 0 ? width * height : width * height / 4);
    planes[i].assign(sizes[i], static_cast<std::uint8_t>(i + 1));
    pointers[i] = planes[i].data();
  }
}

LocalServer::LocalServer(const std::string& pipe, const std::string& engineFolder) : client_(pipe) {
  TESSARIN_COMMON::ServerOption option;
  option.ipcPath = pipe;
  option.manuallyDylibPath = engineFolder;
  std::thread([option] { RavoManager::GetInstance().init(option); }).detach();
  constexpr int kBoundMs = 20'000;
  if (!client_.Connect(kBoundMs)) throw std::runtime_error("the server does not start");
}

LocalServer::~LocalServer() {
  RavoManager::GetInstance().FrameSlots()->DestroyAllSlots();
}

void LocalServer::AddStream(const std::string& uid) {
  StreamDataManager::GetInstance().UpdateStream(
      {.uid = uid, .sid = uid, .hasVideo = true, .hasAudio = true, .isScreen = false, .resolutions = {}});
}

void LocalServer::Tick() {
  RavoManager::GetInstance().FrameSlots()->Tick();
}

void LocalServer::Deliver(const std::string& uid, const Picture& picture) {
  TESSARIN_LUMARC::OnVideoCommonFrame(uid.c_str(), picture.info, picture.pointers.data(), 3, picture.strides.data());
}

std::string LocalServer::SlotPath(const std::string& uid) const {
  return RavoManager::GetInstance().FrameSlots()->Snapshot().at(uid).info.path;
}

std::vector<Side> LocalServer::FrameSides(const std::string& uid, const Picture& picture, const std::string& name,
                                          const std::function<void(std::size_t target)>& copy) {
  for (std::size_t i = 0; i < kTargets; ++i) AddStream(uid + std::to_string(i));
  const auto ours = [this, uid, &picture, turn = std::size_t{0}](Samples& us) mutable {
    const std::string stream = uid + std::to_string(turn++ % kTargets);
    Tick();
    us.push_back(NanosecondsOf([&] { Deliver(stream, picture); }) / 1000);
  };
  const auto theirs = [copy, turn = std::size_t{0}](Samples& us) mutable {
    const std::size_t target = turn++ % kTargets;
    us.push_back(NanosecondsOf([&] { copy(target); }) / 1000);
  };
  return {{"ravo", ours}, {name, theirs}};
}

}  // namespace bench
