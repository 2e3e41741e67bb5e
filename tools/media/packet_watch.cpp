// SPDX-License-Identifier: BSD-2-Clause
#include "media/packet_watch.h"

#include "media/libav_log.h"
#include "media/time_window.h"

namespace nkdraw::media {
namespace {

/// A decoder that reports what it can. Null for uncompressed sound, other streams, and codecs that
/// FFmpeg does not decode.
CodecContext strictDecoder(const AVStream& stream) {
  const AVCodecParameters& track = *stream.codecpar;
  const AVCodec* const codec = avcodec_find_decoder(track.codec_id);
  if (track.codec_type != AVMEDIA_TYPE_AUDIO || codec == nullptr ||
      av_get_bits_per_sample(track.codec_id) > 0)
    return nullptr;
  auto decoder = owned<CodecContext>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(decoder.get(), &track) < 0)
    throw std::bad_alloc();
  decoder->pkt_timebase = stream.time_base;
  decoder->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;
  return avcodec_open2(decoder.get(), codec, nullptr) >= 0 ? std::move(decoder) : nullptr;
}

}  // namespace

PacketWatch::PacketWatch(MediaInput& input, const AVStream& stream, bool decodes)
    : input_(input), stream_(stream), decoder_(decodes ? strictDecoder(stream) : nullptr) {}

int PacketWatch::decode(const AVPacket& packet) {
  int error = avcodec_send_packet(decoder_.get(), &packet);
  int first = error;
  while (error >= 0) {
    error = avcodec_receive_frame(decoder_.get(), frame_.get());
    av_frame_unref(frame_.get());
    if (first >= 0 && error < 0 && error != AVERROR(EAGAIN))
      first = error;
  }
  return first;
}

void PacketWatch::check(const AVPacket& packet) {
  const std::int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if ((packet.flags & AV_PKT_FLAG_CORRUPT) != 0)
    return note(time, "parts of its data are missing");
  if (decoder_ == nullptr || packet.size == 0)
    return;
  forgetLibavErrors();
  if (decode(packet) < 0) {
    const std::string told = firstLibavError();
    note(time, "it can't be decoded" + (told.empty() ? "" : " (" + told + ")"));
  }
}

void PacketWatch::note(std::int64_t time, const std::string& why) {
  const std::int64_t moment = time != AV_NOPTS_VALUE
                                  ? av_rescale_q(time, stream_.time_base, kMicroseconds)
                                  : AV_NOPTS_VALUE;
  input_.damage().noteStream(stream_, moment, why);
}

}  // namespace nkdraw::media
