// Records of which no event tells: those of statistics that nothing registers for, and texts that the engine lacks.
#include <gtest/gtest.h>

#include <stdexcept>

#include "common/JsonWriter.h"
#include "manager/records/MeetingRecords.h"
#include "manager/records/ScreenRecords.h"

using namespace TESSARIN_LUMARC;
using TESSARIN_COMMON::JsonText;

namespace {

TEST(Records, StatisticsOfStreamsHaveTheirMembersInOrder) {
  const LocalStreamStats local{
      {0.5, 1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 8, 0.25, 9, 10, 11, 12, 13, 14, true, 15}, 16, 17, false};
  EXPECT_EQ(JsonText(local),
            R"({"audio_stats":{"audio_loss_rate":0.5,"send_kbitrate":1,"record_sample_rate":2,"stats_interval":3,)"
            R"("rtt":4,"num_channels":5,"sent_sample_rate":6,"jitter":7},"video_stats":{"sent_kbitrate":1,)"
            R"("input_frame_rate":2,"sent_frame_rate":3,"encoder_output_frame_rate":4,)"
            R"("renderer_output_frame_rate":5,"target_kbitrate":6,"target_frame_rate":7,"stats_interval":8,)"
            R"("video_loss_rate":0.25,"rtt":9,"encoded_bitrate":10,"encoded_frame_width":11,)"
            R"("encoded_frame_height":12,"encoded_frame_count":13,"codec_type":14,"is_screen":true,"jitter":15},)"
            R"("local_tx_quality":16,"local_rx_quality":17,"is_screen":false})");
  const RemoteStreamStats remote{"u",
                                 {0.5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18},
                                 {1, 2, 0.25, 3, 4, 5, 6, 7, 8, true, 9, 10, 11, 12, 13},
                                 14,
                                 15,
                                 true};
  EXPECT_EQ(JsonText(remote),
            R"({"uid":"u","audio_stats":{"audio_loss_rate":0.5,"received_kbitrate":1,"stall_count":2,)"
            R"("stall_duration":3,"e2e_delay":4,"playout_sample_rate":5,"stats_interval":6,"rtt":7,"total_rtt":8,)"
            R"("quality":9,"jitter_buffer_delay":10,"num_channels":11,"received_sample_rate":12,"frozen_rate":13,)"
            R"("concealed_samples":14,"concealment_event":15,"dec_sample_rate":16,"dec_duration":17,"jitter":18},)"
            R"("video_stats":{"width":1,"height":2,"video_loss_rate":0.25,"received_kbitrate":3,)"
            R"("decoder_output_frame_rate":4,"renderer_output_frame_rate":5,"stall_count":6,"stall_count":6,)"
            R"("stall_duration":7,"e2e_delay":8,"is_screen":true,"stats_interval":9,"rtt":10,"frozen_rate":11,)"
            R"("video_index":12,"jitter":13},"remote_tx_quality":14,"remote_rx_quality":15,"is_screen":true})");
}

TEST(Records, ATextThatIsMissingFailsOrIsEmpty) {
  try {
    static_cast<void>(JsonText(VolumeInfo{nullptr, 1, 2}));
    FAIL() << "no failure";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "str != 0");
  }
  EXPECT_EQ(JsonText(ThumbnailRecord(Thumbnail{5, nullptr})), R"({"id":5,"val":""})");
}

}  // namespace
