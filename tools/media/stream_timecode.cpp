// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_timecode.h"

#include "media/lookahead.h"
#include "media/video_decoder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <iterator>

extern "C" {
#include <libavutil/timecode.h>
}

namespace nkdraw::media {
namespace {

using Text = std::array<char, AV_TIMECODE_STR_SIZE>;

/// Frames may come out of a decoder this many packets after they went in.
constexpr int kMostPackets = 64;

template <class Value>
const Value* sideData(const AVFrame& frame, AVFrameSideDataType type) {
  const AVFrameSideData* const side = av_frame_get_side_data(&frame, type);
  return side != nullptr && side->size >= sizeof(Value) ? reinterpret_cast<const Value*>(side->data)
                                                        : nullptr;
}

std::string gopText(const AVFrame& frame, AVRational /*rate*/) {
  const auto* const code = sideData<std::int64_t>(frame, AV_FRAME_DATA_GOP_TIMECODE);
  if (code == nullptr)
    return {};
  Text text{};
  return av_timecode_make_mpeg_tc_string(text.data(), static_cast<std::uint32_t>(*code));
}

/// The first word is the number of timecodes that follow.
std::string pictureText(const AVFrame& frame, AVRational rate) {
  using Words = std::array<std::uint32_t, 4>;
  const auto* const words = sideData<Words>(frame, AV_FRAME_DATA_S12M_TIMECODE);
  if (words == nullptr || (*words)[0] == 0)
    return {};
  Text text{};
  return av_timecode_make_smpte_tc_string2(text.data(), rate, (*words)[1], 0, 0);
}

struct Source {
  AVCodecID codec;
  const char* origin;
  std::string (*textOf)(const AVFrame& frame, AVRational rate);
};
constexpr Source kSources[] = {
    {AV_CODEC_ID_MPEG1VIDEO, "the MPEG-1 GOP header", gopText},
    {AV_CODEC_ID_MPEG2VIDEO, "the MPEG-2 GOP header", gopText},
    {AV_CODEC_ID_H264, "the H.264 picture timing", pictureText},
    {AV_CODEC_ID_HEVC, "the HEVC picture timing", pictureText},
};

std::string textOfFirstFrame(MediaInput& input, const Source& source) {
  AVStream& video = input.video();
  VideoDecoder decoder(*video.codecpar, video.time_base, input.path());
  Lookahead packets(input);
  std::string text;
  bool decoded = false;
  const auto take = [&](AVFrame& frame) {
    if (!decoded)
      text = source.textOf(frame, input.frameRate());
    decoded = true;
  };
  for (int i = 0; i < kMostPackets && !decoded; ++i) {
    const AVPacket* const packet = packets.next();
    decoder.decode(packet, take);
    if (packet == nullptr)
      break;
  }
  return text;
}

/// The timecode pack in the first subcode block of a DV frame: binary-coded decimal frames,
/// seconds, minutes and hours, below some flags.
std::string subcodeText(const AVPacket& packet) {
  constexpr std::size_t kPack = 80 + 3 + 3;  // after a block's, and a subcode sync block's, head
  constexpr std::uint8_t kTimecodePack = 0x13, kDropFlag = 0x40;
  if (packet.size < static_cast<int>(kPack) + 5 || packet.data[kPack] != kTimecodePack)
    return {};
  const std::uint8_t* const pack = packet.data + kPack + 1;
  const auto digits = [&](std::size_t at, unsigned mask) {
    const unsigned value = pack[at] & mask;
    return (value >> 4) * 10 + (value & 0xF);
  };
  Text text{};
  std::snprintf(text.data(), text.size(), "%02u:%02u:%02u%c%02u", digits(3, 0x3F), digits(2, 0x7F),
                digits(1, 0x7F), (pack[0] & kDropFlag) != 0 ? ';' : ':', digits(0, 0x3F));
  return text.data();
}

}  // namespace

StreamTimecode streamTimecode(MediaInput& input) {
  const AVCodecID codec = input.video().codecpar->codec_id;
  if (codec == AV_CODEC_ID_DVVIDEO) {
    Lookahead packets(input);
    const AVPacket* const first = packets.next();
    return {first != nullptr ? subcodeText(*first) : "", "the DV subcode"};
  }
  const auto* const source = std::ranges::find(kSources, codec, &Source::codec);
  if (source == std::end(kSources))
    return {};
  return {textOfFirstFrame(input, *source), source->origin};
}

}  // namespace nkdraw::media
