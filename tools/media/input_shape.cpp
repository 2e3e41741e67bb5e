// SPDX-License-Identifier: BSD-2-Clause
#include "media/input_shape.h"

#include "media/failure.h"
#include "media/layouts.h"

#include <array>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr char kRaw[] = "rawvideo";

/// Short names of FFmpeg's demuxers.
constexpr std::array<std::array<std::string_view, 2>, 2> kShortNames = {
    {{"y4m", "yuv4mpegpipe"}, {"raw", kRaw}}};

std::string demuxerName(const InputShape& shape) {
  if (shape.format.empty())
    return shape.layout.empty() ? "" : kRaw;
  for (const auto& [shortName, name] : kShortNames) {
    if (shape.format == shortName)
      return std::string(name);
  }
  return shape.format;
}

/// FFmpeg reads v210 with a demuxer of its own.
std::string rawDemuxer(const InputShape& shape, Options& options) {
  const Layout* const layout = layoutNamed(shape.layout);
  if (layout != nullptr && layout->codec == AV_CODEC_ID_V210)
    return "v210";
  const AVPixelFormat format =
      layout != nullptr ? layout->pixelFormat : av_get_pix_fmt(shape.layout.c_str());
  if (format == AV_PIX_FMT_NONE)
    throw Failure(ExitCode::kUsage, "no such layout of raw video", shape.layout,
                  "see nkdraw burnin --list-layouts and ffmpeg -pix_fmts");
  options.set("pixel_format", av_get_pix_fmt_name(format));
  return kRaw;
}

std::string rawOptions(const InputShape& shape, const std::string& name, Options& options) {
  if (shape.width == 0 || shape.layout.empty())
    throw Failure(ExitCode::kUsage, "raw video does not tell what it is", name,
                  "give --input-size WxH, --input-layout NAME and --input-rate RATE");
  const std::string size = std::to_string(shape.width) + "x" + std::to_string(shape.height);
  options.set("video_size", size.c_str());
  return rawDemuxer(shape, options);
}

}  // namespace

const AVInputFormat* demuxerFor(const InputShape& shape, const std::string& name,
                                Options& options) {
  std::string wanted = demuxerName(shape);
  if (wanted == kRaw)
    wanted = rawOptions(shape, name, options);
  else if (shape.width > 0)
    throw Failure(ExitCode::kUsage, "only raw video has its size from the user", "--input-size",
                  "leave it out, or give --input-layout too");
  if (shape.rate.num > 0) {
    const std::string rate = std::to_string(shape.rate.num) + "/" + std::to_string(shape.rate.den);
    options.set("framerate", rate.c_str());
  }
  if (wanted.empty())
    return nullptr;
  const AVInputFormat* const format = av_find_input_format(wanted.c_str());
  if (format == nullptr)
    throw Failure(ExitCode::kUsage, "no such kind of input", wanted, "see ffmpeg -demuxers");
  return format;
}

}  // namespace nkdraw::media
