// SPDX-License-Identifier: BSD-2-Clause
#include "media/container_codecs.h"

#include "media/media_output.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr AVCodecID kNone = AV_CODEC_ID_NONE;
constexpr std::size_t kMost = 5;

/// FFmpeg's muxers that take codecs which they, or their readers, don't know: all that they hold.
struct Held {
  std::string_view muxer;
  AVCodecID codecs[kMost];
};
constexpr Held kHeld[] = {
    {"mxf",
     {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_DNXHD, AV_CODEC_ID_H264, AV_CODEC_ID_JPEG2000,
      AV_CODEC_ID_DVVIDEO}},
    {"mpegts",
     {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG1VIDEO,
      AV_CODEC_ID_MPEG4}},
    {"gxf", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_DVVIDEO, AV_CODEC_ID_MJPEG, kNone, kNone}},
    {"mpeg", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG1VIDEO, AV_CODEC_ID_H264, kNone, kNone}},
    {"vob", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG1VIDEO, kNone, kNone, kNone}},
};

/// What FFmpeg's muxers say they hold, and refuse when the file begins.
constexpr Held kRefused[] = {
    {"mov", {AV_CODEC_ID_VP8, AV_CODEC_ID_VP9, AV_CODEC_ID_AV1, kNone, kNone}},
    {"mp4", {AV_CODEC_ID_VP8, kNone, kNone, kNone, kNone}},
    {"ipod", {AV_CODEC_ID_VP8, AV_CODEC_ID_VP9, AV_CODEC_ID_AV1, kNone, kNone}},
};

const Held* entryOf(std::span<const Held> table, const AVOutputFormat& format) {
  const auto found = std::ranges::find(table, format.name, &Held::muxer);
  return found != table.end() ? &*found : nullptr;
}

bool has(const Held* entry, AVCodecID codec) {
  return entry != nullptr && std::ranges::find(entry->codecs, codec) != std::end(entry->codecs);
}

/// What each kind of file usually holds, best first; FFmpeg's own default for kinds that are not
/// here.
struct Usual {
  std::string_view muxer;
  AVCodecID codecs[2];
};
constexpr Usual kUsual[] = {
    {"mov", {AV_CODEC_ID_FFV1, AV_CODEC_ID_H264}},
    {"matroska", {AV_CODEC_ID_FFV1, AV_CODEC_ID_H264}},
    {"avi", {AV_CODEC_ID_FFV1, AV_CODEC_ID_H264}},
    {"nut", {AV_CODEC_ID_FFV1, AV_CODEC_ID_H264}},
    {"mp4", {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC}},
    {"ipod", {AV_CODEC_ID_H264, AV_CODEC_ID_H264}},
    {"3gp", {AV_CODEC_ID_H264, AV_CODEC_ID_H264}},
    {"flv", {AV_CODEC_ID_H264, AV_CODEC_ID_H264}},
    {"f4v", {AV_CODEC_ID_H264, AV_CODEC_ID_H264}},
    {"mpegts", {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC}},
    {"mxf", {AV_CODEC_ID_DNXHD, AV_CODEC_ID_MPEG2VIDEO}},
    {"gxf", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG2VIDEO}},
    {"mpeg", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG2VIDEO}},
    {"vob", {AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MPEG2VIDEO}},
    {"webm", {AV_CODEC_ID_VP9, AV_CODEC_ID_AV1}},
};

constexpr std::string_view kFamily[] = {"mov", "mp4", "ipod", "3gp", "3g2", "f4v", "ismv", "psp"};

}  // namespace

bool refuses(const AVOutputFormat& format, AVCodecID codec) {
  return has(entryOf(kRefused, format), codec);
}

bool carries(const AVOutputFormat& format, AVCodecID codec) {
  const Held* const held = entryOf(kHeld, format);
  return held != nullptr ? has(held, codec) : holds(format, codec) && !refuses(format, codec);
}

std::span<const AVCodecID> usualCodecs(const AVOutputFormat& format) {
  const auto* const usual = std::ranges::find(kUsual, format.name, &Usual::muxer);
  return usual != std::end(kUsual) ? std::span<const AVCodecID>(usual->codecs)
                                   : std::span(&format.video_codec, 1);
}

bool isQuickTimeFamily(const AVOutputFormat& format) {
  return std::ranges::find(kFamily, format.name) != std::end(kFamily);
}

}  // namespace nkdraw::media
