// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_codec.h"

#include "media/failure.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr std::string_view kRaw = "rawvideo", kY4M = "yuv4mpegpipe", kPictures = "image2";

/// What Y4M holds without loss of frames in a format.
struct PlanarForm {
  AVPixelFormat drawn, held;
};
constexpr PlanarForm kPlanarForms[] = {
    {AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YVYU422, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV420P},
    {AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV422P},
    {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV444P},
    {AV_PIX_FMT_YUV411P, AV_PIX_FMT_YUV411P},
    {AV_PIX_FMT_GRAY8, AV_PIX_FMT_GRAY8},
    {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUVJ420P},
    {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUVJ422P},
    {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUVJ444P},
    {AV_PIX_FMT_YUV420P10LE, AV_PIX_FMT_YUV420P10LE},
    {AV_PIX_FMT_YUV422P10LE, AV_PIX_FMT_YUV422P10LE},
    {AV_PIX_FMT_YUV444P10LE, AV_PIX_FMT_YUV444P10LE},
    {AV_PIX_FMT_YUV420P12LE, AV_PIX_FMT_YUV420P12LE},
    {AV_PIX_FMT_YUV422P12LE, AV_PIX_FMT_YUV422P12LE},
    {AV_PIX_FMT_YUV444P12LE, AV_PIX_FMT_YUV444P12LE},
    {AV_PIX_FMT_YUV420P16LE, AV_PIX_FMT_YUV420P16LE},
    {AV_PIX_FMT_YUV422P16LE, AV_PIX_FMT_YUV422P16LE},
    {AV_PIX_FMT_YUV444P16LE, AV_PIX_FMT_YUV444P16LE},
    {AV_PIX_FMT_GRAY16LE, AV_PIX_FMT_GRAY16LE},
};

AVPixelFormat planarForm(AVPixelFormat drawn, const std::string& option) {
  const auto* const found = std::ranges::find(kPlanarForms, drawn, &PlanarForm::drawn);
  if (found == std::end(kPlanarForms))
    throw Failure(ExitCode::kUsage, "Y4M does not hold such frames", av_get_pix_fmt_name(drawn),
                  "write nut, or choose " + option + " wrapped_avframe:pix_fmt=yuv444p");
  return found->held;
}

/// Raw YCbCr of ten bits is packed as the library draws it.
CodecChoice rawCodec(AVPixelFormat drawn, const std::string& option) {
  const bool packs = drawn == AV_PIX_FMT_YUV422P10;
  const AVCodec* const codec =
      avcodec_find_encoder(packs ? AV_CODEC_ID_V210 : AV_CODEC_ID_RAWVIDEO);
  return {codec, drawn == AV_PIX_FMT_BGR0 ? AV_PIX_FMT_BGR24 : drawn, {}, option};
}

}  // namespace

bool keepsAnyRaw(const AVOutputFormat& format) {
  return format.name == kRaw;
}

bool isAlwaysEncoded(const AVOutputFormat& format) {
  return format.name == kY4M || format.name == kPictures;
}

bool holdsVideoAlone(const AVOutputFormat& format) {
  return format.name == kRaw || isAlwaysEncoded(format);
}

std::optional<CodecChoice> streamCodec(AVPixelFormat drawn, const AVOutputFormat& format,
                                       const std::string& option) {
  if (format.name == kRaw)
    return rawCodec(drawn, option);
  if (format.name == kY4M)
    return CodecChoice{
        avcodec_find_encoder(AV_CODEC_ID_WRAPPED_AVFRAME), planarForm(drawn, option), {}, option};
  return std::nullopt;
}

}  // namespace nkdraw::media
