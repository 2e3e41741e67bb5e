// SPDX-License-Identifier: BSD-2-Clause
#include "harm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using nkdraw::media::InputContext;
using nkdraw::media::makePacket;
using nkdraw::media::Packet;

void copyWith(const Harm& harm, const std::string& from, const std::string& to, AVMediaType kind,
              std::int64_t number) {
  AVFormatContext* opened = nullptr;
  ASSERT_GE(avformat_open_input(&opened, from.c_str(), nullptr, nullptr), 0);
  const InputContext input(opened);
  ASSERT_GE(avformat_find_stream_info(opened, nullptr), 0);
  const int harmed = av_find_best_stream(opened, kind, -1, -1, nullptr, 0);
  AVFormatContext* out = nullptr;
  ASSERT_GE(avformat_alloc_output_context2(&out, nullptr, nullptr, to.c_str()), 0);
  for (unsigned i = 0; i < opened->nb_streams; ++i) {
    AVStream& stream = *avformat_new_stream(out, nullptr);
    avcodec_parameters_copy(stream.codecpar, opened->streams[i]->codecpar);
    stream.time_base = opened->streams[i]->time_base;
    stream.avg_frame_rate = opened->streams[i]->avg_frame_rate;
  }
  ASSERT_GE(avio_open(&out->pb, to.c_str(), AVIO_FLAG_WRITE), 0);
  ASSERT_GE(avformat_write_header(out, nullptr), 0);
  const Packet packet = makePacket();
  for (std::int64_t count = 0; av_read_frame(opened, packet.get()) >= 0;) {
    const int index = packet->stream_index;
    if (index == harmed && count++ == number) {
      ASSERT_GE(av_packet_make_writable(packet.get()), 0);
      harm(*packet);
    }
    av_packet_rescale_ts(packet.get(), opened->streams[index]->time_base,
                         out->streams[index]->time_base);
    ASSERT_GE(av_interleaved_write_frame(out, packet.get()), 0);
  }
  av_write_trailer(out);
  avio_closep(&out->pb);
  avformat_free_context(out);
}

Harm noiseAt(double share) {
  return [share](AVPacket& packet) {
    std::mt19937 random(11);
    const auto begin = static_cast<std::ptrdiff_t>(packet.size * share);
    const std::ptrdiff_t end = std::min<std::ptrdiff_t>(packet.size, begin + 200);
    for (std::ptrdiff_t i = begin; i < end; ++i)
      packet.data[i] = static_cast<std::uint8_t>(random());
  };
}
