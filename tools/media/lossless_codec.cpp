// SPDX-License-Identifier: BSD-2-Clause
#include "media/lossless_codec.h"

#include "media/format_match.h"
#include "media/layouts.h"
#include "media/media_output.h"

namespace nkdraw::media {
namespace {

/// Formats that are usual in other forms, and the file formats in which each is usual (0: wherever
/// FFmpeg supports it).
struct UsualForm {
  AVPixelFormat drawn;
  AVCodecID codec;
  AVPixelFormat pixelFormat;
  unsigned containers;
};
constexpr unsigned kAnyKind = 0;
constexpr UsualForm kUsualForms[] = {
    {AV_PIX_FMT_YUV422P10, AV_CODEC_ID_V210, AV_PIX_FMT_YUV422P10, kMOV | kAVI | kMKV | kNUT},
    {AV_PIX_FMT_UYVY422, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_UYVY422, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_UYVY422, AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV422P, kAnyKind},
    {AV_PIX_FMT_BGRA, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_BGRA, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_BGR0, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_BGR24, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_RGB24, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGB24, kMOV | kNUT},
    {AV_PIX_FMT_RGB24, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_BGR24, kAVI},
    {AV_PIX_FMT_RGB48LE, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGB48LE, kNUT},
    {AV_PIX_FMT_RGBA64LE, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGBA64LE, kNUT},
};

}  // namespace

std::optional<LosslessEncoding> losslessEncoding(AVPixelFormat drawn,
                                                 const AVOutputFormat& format) {
  const unsigned container = containerOf(format.name);
  for (const UsualForm& each : kUsualForms) {
    const bool usual = each.containers == kAnyKind ? holds(format, each.codec)
                                                   : (each.containers & container) != 0;
    const AVCodec* const codec = avcodec_find_encoder(each.codec);
    if (each.drawn == drawn && usual && codec != nullptr)
      return LosslessEncoding{codec, each.pixelFormat};
  }
  // FFmpeg reads it from QuickTime files as well, where it has the name that it has in AVI.
  const AVCodec* const ffv1 = holds(format, AV_CODEC_ID_FFV1) || container == kMOV
                                  ? avcodec_find_encoder(AV_CODEC_ID_FFV1)
                                  : nullptr;
  if (ffv1 != nullptr) {
    if (const AVPixelFormat same = sameIn(ffv1->pix_fmts, drawn); same != AV_PIX_FMT_NONE)
      return LosslessEncoding{ffv1, same};
  }
  const AVCodec* const raw = avcodec_find_encoder(AV_CODEC_ID_RAWVIDEO);
  if (raw != nullptr && container == kNUT && avcodec_pix_fmt_to_codec_tag(drawn) != 0)
    return LosslessEncoding{raw, drawn};
  if (ffv1 != nullptr) {
    if (const AVPixelFormat wider = widerIn(ffv1->pix_fmts, drawn); wider != AV_PIX_FMT_NONE)
      return LosslessEncoding{ffv1, wider};
  }
  return std::nullopt;
}

}  // namespace nkdraw::media
