// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_facts.h"

#include "media/failure.h"
#include "media/stream_codec.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr char kTimecodeKey[] = "timecode";
constexpr std::uint32_t kV210Tag = MKTAG('v', '2', '1', '0');
constexpr int kV210Bits = 20;  // a pixel, as FFmpeg counts them

/// The codec's tag, unless the output format has its own for the codec.
std::uint32_t tagFor(const AVCodecParameters& codec, const AVOutputFormat& format) {
  std::uint32_t other = 0;
  const bool fits = format.codec_tag == nullptr ||
                    av_codec_get_id(format.codec_tag, codec.codec_tag) == codec.codec_id ||
                    av_codec_get_tag2(format.codec_tag, codec.codec_id, &other) == 0;
  return fits ? codec.codec_tag : 0;
}

void copySideData(const AVStream& from, AVStream& to) {
  for (int i = 0; i < from.nb_side_data; ++i) {
    const AVPacketSideData& data = from.side_data[i];
    std::uint8_t* const copy = av_stream_new_side_data(&to, data.type, data.size);
    if (copy == nullptr)
      throw std::bad_alloc();
    std::copy_n(data.data, data.size, copy);
  }
}

}  // namespace

bool isSameKind(const AVInputFormat& in, const AVOutputFormat& out) {
  const std::string_view list = in.name, name = out.name;
  return list == name || (containerOf(list) != 0 && containerOf(list) == containerOf(name));
}

std::string describeStream(const AVStream& stream) {
  const char* const kind = av_get_media_type_string(stream.codecpar->codec_type);
  return std::string(kind != nullptr ? kind : "unknown") + ", " +
         avcodec_get_name(stream.codecpar->codec_id);
}

void setTimecodeTag(MediaOutput& output, AVStream& video, const std::string& timecode) {
  const char* const text = timecode.empty() ? nullptr : timecode.c_str();  // null deletes
  av_dict_set(&video.metadata, kTimecodeKey, text, 0);
  AVDictionary*& fileTags = output.file().metadata;
  if (av_dict_get(fileTags, kTimecodeKey, nullptr, 0) != nullptr)
    av_dict_set(&fileTags, kTimecodeKey, text, 0);
}

void keepTimecodeTag(MediaOutput& output, const AVStream& video) {
  const AVDictionaryEntry* const tag = av_dict_get(video.metadata, kTimecodeKey, nullptr, 0);
  if (tag != nullptr && containerOf(output.format().name) == kAVI)
    av_dict_set(&output.file().metadata, kTimecodeKey, tag->value, 0);
}

void copyFacts(const AVStream& from, AVStream& to) {
  to.time_base = from.time_base;
  to.avg_frame_rate = from.avg_frame_rate;
  to.r_frame_rate = from.r_frame_rate;
  to.sample_aspect_ratio = from.sample_aspect_ratio;
  to.disposition = from.disposition;
  av_dict_copy(&to.metadata, from.metadata, 0);
  copySideData(from, to);
}

void copyCodec(const AVStream& from, AVStream& to, const AVOutputFormat& format) {
  if (avcodec_parameters_copy(to.codecpar, from.codecpar) < 0)
    throw std::bad_alloc();
  to.codecpar->codec_tag = tagFor(*from.codecpar, format);
  // Demuxers set one or the other, and the QuickTime muxer reads the codec's.
  const AVRational shape = from.sample_aspect_ratio.num != 0 ? from.sample_aspect_ratio
                                                             : from.codecpar->sample_aspect_ratio;
  to.sample_aspect_ratio = to.codecpar->sample_aspect_ratio = shape;
}

bool keeps(const AVOutputFormat& format, const Layout& layout) {
  return (layout.containers & containerOf(format.name)) != 0 || keepsAnyRaw(format);
}

void checkKeeps(const AVOutputFormat& format, const Layout& layout,
                const std::string& codecOption) {
  if (!keeps(format, layout))
    throw Failure(ExitCode::kUsage, "this kind of file does not keep the layout",
                  std::string(format.name) + ", " + std::string(layout.name),
                  "write " + containerNames(layout.containers) + ", or choose a " + codecOption);
}

void describeRaw(AVStream& stream, const Layout& layout, const FrameKind& frames,
                 const AVOutputFormat& format) {
  AVCodecParameters& codec = *stream.codecpar;
  av_freep(&codec.extradata);
  codec.extradata_size = 0;
  codec.codec_type = AVMEDIA_TYPE_VIDEO;
  codec.codec_id = layout.codec;
  codec.format = layout.pixelFormat;
  codec.width = frames.width;
  codec.height = frames.height;
  const bool isV210 = layout.codec == AV_CODEC_ID_V210;
  codec.codec_tag = isV210 ? kV210Tag : avcodec_pix_fmt_to_codec_tag(layout.pixelFormat);
  codec.bits_per_coded_sample =
      isV210 ? kV210Bits : av_get_bits_per_pixel(av_pix_fmt_desc_get(layout.pixelFormat));
  // A file format with its own tag for raw frames chooses it itself.
  codec.codec_tag = tagFor(codec, format);
  stream.time_base = av_inv_q(frames.rate);
  stream.avg_frame_rate = frames.rate;
  stream.r_frame_rate = frames.rate;
}

}  // namespace nkdraw::media
