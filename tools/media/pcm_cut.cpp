// SPDX-License-Identifier: BSD-2-Clause
#include "media/pcm_cut.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr int kBitsPerByte = 8;

struct Silence {
  AVCodecID codec;
  std::uint8_t byte;
};
constexpr Silence kSilences[] = {
    {AV_CODEC_ID_PCM_U8, 0x80}, {AV_CODEC_ID_PCM_ALAW, 0xD5}, {AV_CODEC_ID_PCM_MULAW, 0xFF}};

std::uint8_t silenceOf(AVCodecID codec) {
  const auto* const row = std::ranges::find(kSilences, codec, &Silence::codec);
  return row != std::end(kSilences) ? row->byte : 0;
}

/// The time in samples of a moment in microseconds.
std::int64_t inSamples(std::int64_t moment, int rate) {
  return moment == std::numeric_limits<std::int64_t>::max()
             ? moment
             : av_rescale_q(moment, kMicroseconds, AVRational{1, rate});
}

}  // namespace

std::optional<std::size_t> sampleBytes(const AVCodecParameters& sound) {
  const std::string_view name = avcodec_get_name(sound.codec_id);
  const int bits = av_get_bits_per_sample(sound.codec_id) * sound.ch_layout.nb_channels;
  if (sound.codec_type != AVMEDIA_TYPE_AUDIO || !name.starts_with("pcm_") ||
      name.ends_with("_planar") || bits <= 0 || bits % kBitsPerByte != 0 || sound.sample_rate <= 0)
    return std::nullopt;
  return static_cast<std::size_t>(bits / kBitsPerByte);
}

PCMCut::PCMCut(const AVStream& sound, const TimeWindow& window, bool fill)
    : streamTime_(sound.time_base),
      codec_(sound.codecpar->codec_id),
      rate_(sound.codecpar->sample_rate),
      bytes_(sampleBytes(*sound.codecpar).value_or(1)),
      fill_(fill),
      first_(inSamples(window.first, rate_)),
      end_(inSamples(window.end, rate_)),
      next_(std::numeric_limits<std::int64_t>::min()),
      written_(first_) {}

/// Files round times, some to milliseconds; packets that follow each other do so to the sample.
std::int64_t PCMCut::placeOf(const AVPacket& packet) const {
  const std::int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if (time == AV_NOPTS_VALUE)
    return began_ ? next_ : first_;
  const std::int64_t place = av_rescale_q(time, streamTime_, timeBase());
  const std::int64_t tick = av_rescale_q_rnd(1, streamTime_, timeBase(), AV_ROUND_UP) + 1;
  return began_ && std::abs(place - next_) <= tick ? next_ : place;
}

void PCMCut::cut(AVPacket& packet, const TakePacket& take) {
  const auto count = static_cast<std::int64_t>(static_cast<std::size_t>(packet.size) / bytes_);
  const std::int64_t begin = placeOf(packet);
  began_ = true;
  next_ = begin + count;
  const std::int64_t from = std::max(begin, written_), to = std::min(next_, end_);
  if (from >= to)
    return;
  if (fill_)
    fillUntil(from, packet.stream_index, take);
  packet.data += static_cast<std::size_t>(from - begin) * bytes_;
  packet.size = static_cast<int>(static_cast<std::size_t>(to - from) * bytes_);
  packet.pts = packet.dts = from - first_;
  packet.duration = to - from;
  written_ = to;
  take(packet);
}

void PCMCut::fillUntil(std::int64_t place, int stream, const TakePacket& take) {
  while (written_ < place) {
    const std::int64_t count = std::min<std::int64_t>(place - written_, rate_);
    const std::size_t size = static_cast<std::size_t>(count) * bytes_;
    const Packet packet = makePacket();
    if (av_new_packet(packet.get(), static_cast<int>(size)) < 0)
      throw std::bad_alloc();
    std::memset(packet->data, silenceOf(codec_), size);
    packet->stream_index = stream;
    packet->flags = AV_PKT_FLAG_KEY;
    packet->pts = packet->dts = written_ - first_;
    packet->duration = count;
    written_ += count;
    take(*packet);
  }
}

}  // namespace nkdraw::media
