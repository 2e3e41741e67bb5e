// SPDX-License-Identifier: BSD-2-Clause
#include "media/kept_timecode.h"

#include "media/container_codecs.h"
#include "media/failure.h"
#include "media/media_input.h"
#include "media/pipe_name.h"
#include "media/timecode_source.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace nkdraw::media {
namespace {

/// By FFmpeg's muxers. What is in neither table is found out by reading the file.
constexpr std::string_view kHolding[] = {"mov", "mp4", "matroska", "webm", "avi", "nut",
                                         "mxf", "gxf", "dv",       "ogg",  "ogv"};
constexpr std::string_view kNotHolding[] = {"yuv4mpegpipe", "rawvideo", "mpegts", "mpeg", "vob",
                                            "dvd",          "ipod",     "3gp",    "3g2",  "f4v",
                                            "flv",          "asf",      "h264",   "hevc"};

struct Kind {
  const char *muxer, *suffix;
};
/// To advise, best first.
constexpr Kind kAdvised[] = {{"mov", ".mov"}, {"matroska", ".mkv"}, {"mxf", ".mxf"}};

/// The video holds it, wherever it is.
bool isInTheVideo(AVCodecID codec) {
  return codec == AV_CODEC_ID_MPEG2VIDEO || codec == AV_CODEC_ID_MPEG1VIDEO;
}

/// "; .mov keeps 10:00:00:00", if any other kind of file holds the video, too.
std::string advice(const AVOutputFormat& format, const OutputTimecode& timecode) {
  const AVCodecID codec =  // Y4M's frames are uncompressed
      timecode.codec == AV_CODEC_ID_WRAPPED_AVFRAME ? AV_CODEC_ID_RAWVIDEO : timecode.codec;
  for (const auto& [muxer, suffix] : kAdvised) {
    const AVOutputFormat* const other = av_guess_format(muxer, nullptr, nullptr);
    if (other != nullptr && other->name != std::string_view(format.name) && carries(*other, codec))
      return "; " + std::string(suffix) + " keeps " + timecode.text;
  }
  return {};
}

/// What the file tells; none if it is silent, or can't be opened in the usual way.
std::optional<std::string> toldBy(const std::string& file, AVRational rate) {
  try {
    MediaInput input(file, {});
    const TimecodeStart start = timecodeOf(input, rate);
    return start.known ? std::optional(timecodeText(start, 0)) : std::nullopt;
  } catch (const Failure&) {
    return std::nullopt;
  }
}

}  // namespace

bool holdsTimecode(const AVOutputFormat& format) {
  return std::ranges::find(kHolding, format.name) != std::end(kHolding);
}

std::string foreseenLoss(const AVOutputFormat& format, const OutputTimecode& timecode) {
  if (timecode.text.empty() || isInTheVideo(timecode.codec) ||
      std::ranges::find(kNotHolding, format.name) == std::end(kNotHolding))
    return {};
  return std::string(format.name) + " files hold no timecode" + advice(format, timecode);
}

std::string foundLoss(const std::string& file, const std::string& name,
                      const AVOutputFormat& format, const OutputTimecode& timecode) {
  if (timecode.text.empty() || isPipedOutput(file) || !foreseenLoss(format, timecode).empty())
    return {};
  const std::optional<std::string> told = toldBy(file, timecode.rate);
  // FFmpeg passes the GOP header of a single frame over.
  if (told == timecode.text || (!told && isInTheVideo(timecode.codec)))
    return {};
  return name +
         (told ? " tells the timecode " + *told + " and not " + timecode.text
               : std::string(" tells no timecode")) +
         advice(format, timecode);
}

}  // namespace nkdraw::media
