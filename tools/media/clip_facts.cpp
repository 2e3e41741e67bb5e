// SPDX-License-Identifier: BSD-2-Clause
#include "media/clip_facts.h"

#include "media/failure.h"

#include <cstdio>

namespace nkdraw::media {
namespace {

std::uint32_t sourceCode(MediaInput& input, const Layout* layout) {
  if (layout != nullptr)
    return layout->compression;
  const AVCodecParameters& codec = *input.video().codecpar;
  if (codec.codec_tag != 0)
    return codec.codec_tag;
  const AVCodecTag* const lists[] = {avformat_get_riff_video_tags(), nullptr};
  return av_codec_get_tag(lists, codec.codec_id);
}

}  // namespace

const Layout* ownLayout(MediaInput& input) {
  const AVCodecParameters& codec = *input.video().codecpar;
  return layoutOf(codec.codec_id, static_cast<AVPixelFormat>(codec.format));
}

FrameKind framesOf(MediaInput& input, const Layout* layout) {
  const AVCodecParameters& codec = *input.video().codecpar;
  return {codec.width,        codec.height,     input.frameRate(),
          input.interlaced(), input.fileType(), sourceCode(input, layout)};
}

AVPixelFormat decodedFormat(MediaInput& input) {
  const AVCodecParameters& codec = *input.video().codecpar;
  const auto format = static_cast<AVPixelFormat>(codec.format);
  if (format == AV_PIX_FMT_NONE)
    throw Failure(ExitCode::kInput, "the video can't be decoded", input.path(),
                  avcodec_find_decoder(codec.codec_id) != nullptr
                      ? "no frame was found in it; the input may be incomplete"
                      : std::string("its codec is ") + avcodec_get_name(codec.codec_id) +
                            "; convert the clip first");
  return format;
}

Frame exampleOf(MediaInput& input, AVPixelFormat drawn) {
  const AVCodecParameters& codec = *input.video().codecpar;
  Frame example = makeFrame();
  example->format = drawn;
  example->width = codec.width;
  example->height = codec.height;
  example->sample_aspect_ratio =
      av_guess_sample_aspect_ratio(&input.file(), &input.video(), nullptr);
  example->color_range = codec.color_range;
  example->color_primaries = codec.color_primaries;
  example->color_trc = codec.color_trc;
  example->colorspace = codec.color_space;
  example->chroma_location = codec.chroma_location;
  example->top_field_first =
      codec.field_order == AV_FIELD_TT || codec.field_order == AV_FIELD_TB ? 1 : 0;
  return example;
}

std::string rateText(AVRational rate) {
  char text[64];
  std::snprintf(text, sizeof text, "%.6g frames/s", av_q2d(rate));
  return text;
}

void checkSize(const AVFrame& decoded, const FrameKind& frames, const std::string& path,
               std::int64_t index) {
  if (decoded.width != frames.width || decoded.height != frames.height)
    throw Failure(ExitCode::kInput, "the frames change their size", path,
                  "frame " + std::to_string(index) + " is " + std::to_string(decoded.width) + "x" +
                      std::to_string(decoded.height) + "; convert the clip first");
}

}  // namespace nkdraw::media
