#include "PipeWire.h"

#include <pipewire/pipewire.h>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

// Without a session manager, devices and resampling: what clients need to talk video to each other.
constexpr const char* kConfiguration = R"(
context.properties = { core.daemon = true  core.name = pipewire-0 }
context.spa-libs = { support.* = support/libspa-support }
context.modules = [
  { name = libpipewire-module-rt  flags = [ ifexists nofail ] }
  { name = libpipewire-module-protocol-native }
  { name = libpipewire-module-client-node }
  { name = libpipewire-module-access }
  { name = libpipewire-module-link-factory }
]
)";

// One end of a stream, with the loop that serves it. The call-backs come on the library's data thread.
class Stream {
 public:
  Stream(const std::string& folder, const PictureSize& size, pw_direction direction, std::function<void()> onProcess)
      : size_(size), onProcess_(std::move(onProcess)) {
    setenv("PIPEWIRE_RUNTIME_DIR", folder.c_str(), 1);
    pw_init(nullptr, nullptr);
    loop_ = pw_thread_loop_new("bench", nullptr);
    context_ = pw_context_new(pw_thread_loop_get_loop(loop_), nullptr, 0);
    pw_thread_loop_start(loop_);
    const Locked locked(loop_);
    core_ = Connect();
    stream_ = pw_stream_new(core_, "bench", pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", nullptr));
    pw_stream_add_listener(stream_, &listener_, &kEvents, this);
    Start(direction);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // Waits until the daemon has given this end a number.
  [[nodiscard]] std::uint32_t Node() {
    const Locked locked(loop_);
    while (pw_stream_get_node_id(stream_) == SPA_ID_INVALID) pw_thread_loop_wait(loop_);
    return pw_stream_get_node_id(stream_);
  }
  void LinkTo(std::uint32_t reader) {
    const std::uint32_t own = Node();
    const Locked locked(loop_);
    pw_properties* const properties = pw_properties_new(nullptr, nullptr);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", own);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", reader);
    pw_core_create_object(core_, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0);
    pw_properties_free(properties);
    while (!streaming_) pw_thread_loop_wait(loop_);
  }
  void Trigger() {
    const Locked locked(loop_);
    pw_stream_trigger_process(stream_);
  }

  // On the data thread: the buffer that is next, null if there is none.
  [[nodiscard]] pw_buffer* Take() { return pw_stream_dequeue_buffer(stream_); }
  void Give(pw_buffer* buffer) { pw_stream_queue_buffer(stream_, buffer); }

 private:
  class Locked {
   public:
    explicit Locked(pw_thread_loop* loop) : loop_(loop) { pw_thread_loop_lock(loop_); }
    ~Locked() { pw_thread_loop_unlock(loop_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

   private:
    pw_thread_loop* const loop_;
  };

  pw_core* Connect() {
    constexpr int kTries = 2000;
    for (int i = 0; i < kTries; ++i) {
      if (pw_core* const core = pw_context_connect(context_, nullptr, 0)) return core;
      usleep(5000);
    }
    throw std::runtime_error("the daemon does not start");
  }

  void Start(pw_direction direction) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), static_cast<std::uint32_t>(memory.size()));
    spa_video_info_raw info{};
    info.format = SPA_VIDEO_FORMAT_I420;
    info.size = {static_cast<std::uint32_t>(size_.width), static_cast<std::uint32_t>(size_.height)};
    info.framerate = {0, 1};
    const spa_pod* format = spa_format_video_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
    const auto driver = direction == PW_DIRECTION_OUTPUT ? PW_STREAM_FLAG_DRIVER : PW_STREAM_FLAG_NONE;
    const auto flags = static_cast<pw_stream_flags>(driver | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS |
                                                    PW_STREAM_FLAG_NO_CONVERT);
    if (pw_stream_connect(stream_, direction, PW_ID_ANY, flags, &format, 1) != 0) {
      throw std::runtime_error("pw_stream_connect");
    }
  }

  static void OnState(void* self, pw_stream_state, pw_stream_state state, const char*) {
    auto* const stream = static_cast<Stream*>(self);
    stream->streaming_ = state == PW_STREAM_STATE_STREAMING;
    pw_thread_loop_signal(stream->loop_, false);
  }
  // Buffers of one block that holds a whole picture.
  static void OnFormat(void* self, std::uint32_t id, const spa_pod* format) {
    if (format == nullptr || id != SPA_PARAM_Format) return;
    auto* const stream = static_cast<Stream*>(self);
    const auto bytes = static_cast<std::int32_t>(stream->size_.width * stream->size_.height * 3 / 2);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), static_cast<std::uint32_t>(memory.size()));
    const auto* const buffers = static_cast<const spa_pod*>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers, SPA_POD_Int(4),
        SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size, SPA_POD_Int(bytes), SPA_PARAM_BUFFERS_stride,
        SPA_POD_Int(static_cast<std::int32_t>(stream->size_.width))));
    const spa_pod* list[] = {buffers};
    pw_stream_update_params(stream->stream_, list, 1);
  }
  static void OnProcess(void* self) { static_cast<Stream*>(self)->onProcess_(); }

  static const pw_stream_events kEvents;

  const PictureSize size_;
  const std::function<void()> onProcess_;
  pw_thread_loop* loop_ = nullptr;
  pw_context* context_ = nullptr;
  pw_core* core_ = nullptr;
  pw_stream* stream_ = nullptr;
  spa_hook listener_{};
  bool streaming_ = false;  // guarded by the loop's lock
};

const pw_stream_events Stream::kEvents = [] {
  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.state_changed = OnState;
  events.param_changed = OnFormat;
  events.process = OnProcess;
  return events;
}();

class Sender final : public PipeWireSender {
 public:
  Sender(const std::string& folder, const PictureSize& size, std::uint32_t reader)
      : stream_(folder, size, PW_DIRECTION_OUTPUT, [this] { Fill(); }) {
    stream_.LinkTo(reader);
  }

  void Send(const Picture& picture) override {
    picture_ = &picture;
    stream_.Trigger();
  }

 private:
  void Fill() {
    const Picture* const picture = picture_.exchange(nullptr);
    pw_buffer* const buffer = picture != nullptr ? stream_.Take() : nullptr;
    if (buffer == nullptr) return;
    spa_data& data = buffer->buffer->datas[0];
    picture->CopyTo(static_cast<std::uint8_t*>(data.data));
    data.chunk->offset = 0;
    data.chunk->stride = static_cast<std::int32_t>(picture->strides[0]);
    data.chunk->size = static_cast<std::uint32_t>(picture->SizeBytes());
    stream_.Give(buffer);
  }

  std::atomic<const Picture*> picture_{nullptr};
  Stream stream_;
};

}  // namespace

void RunPipeWire(const std::string& folder) {
  std::ofstream(folder + "/bench.conf") << kConfiguration;
  setenv("PIPEWIRE_RUNTIME_DIR", folder.c_str(), 1);
  setenv("PIPEWIRE_CONFIG_DIR", folder.c_str(), 1);
  setenv("PIPEWIRE_DEBUG", "0", 1);
  execlp("pipewire", "pipewire", "-c", "bench.conf", nullptr);
}

void ReadPipeWire(const std::string& folder, const PictureSize& size, const std::function<void(std::uint32_t)>& onNode,
                  const std::function<void()>& onFrame) {
  Stream* reader = nullptr;
  std::atomic<bool> made{false};
  Stream stream(folder, size, PW_DIRECTION_INPUT, [&] {
    if (!made) return;
    pw_buffer* const buffer = reader->Take();
    if (buffer == nullptr) return;
    onFrame();
    reader->Give(buffer);
  });
  reader = &stream;
  made = true;
  onNode(stream.Node());
  for (;;) pause();
}

std::unique_ptr<PipeWireSender> ConnectPipeWire(const std::string& folder, const PictureSize& size,
                                                std::uint32_t readerNode) {
  return std::make_unique<Sender>(folder, size, readerNode);
}

}  // namespace bench
