// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_converter.h"

#include "media/failure.h"
#include "media/layouts.h"

#include <array>
#include <cstdint>

namespace nkdraw::media {
namespace {

bool isRGB(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

bool usesFullRange(const AVFrame& frame) {
  return frame.color_range == AVCOL_RANGE_JPEG ||
         isFullRange(static_cast<AVPixelFormat>(frame.format));
}

}  // namespace

bool isFullRange(AVPixelFormat format) {
  switch (format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P:
      return true;
    default:
      return isRGB(format) || av_pix_fmt_desc_get(format)->nb_components < 3;
  }
}

AVColorSpace matrixOf(const AVFrame& frame) {
  if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
    return frame.colorspace;
  return matrixForWidth(frame.width);
}

void FrameConverter::prepare(const AVFrame& from) {
  const auto format = static_cast<AVPixelFormat>(from.format);
  const bool chromaChangesHeight =
      av_pix_fmt_desc_get(format)->log2_chroma_h != av_pix_fmt_desc_get(to_)->log2_chroma_h;
  fields_ = interlaced_ && chromaChangesHeight && from.height % 4 == 0 ? 2 : 1;

  scaler_.reset(sws_getContext(
      from.width, from.height / fields_, format, from.width, from.height / fields_, to_,
      SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT,
      nullptr, nullptr, nullptr));
  if (scaler_ == nullptr)
    throw Failure(ExitCode::kProcessing, "no conversion between pixel formats",
                  std::string(av_get_pix_fmt_name(format)) + " to " + av_get_pix_fmt_name(to_),
                  "convert the clip with ffmpeg first");
  const int* const matrix = sws_getCoefficients(matrixOf(from));
  constexpr int kUnity = 1 << 16;
  sws_setColorspaceDetails(scaler_.get(), matrix, usesFullRange(from) ? 1 : 0, matrix,
                           isFullRange(to_) ? 1 : 0, 0, kUnity, kUnity);

  converted_ = makeFrame(to_, from.width, from.height);
  preparedFor_ = format;
}

/// The rows of one field, or of the whole frame.
void FrameConverter::scale(const AVFrame& from, int field) {
  std::array<const std::uint8_t*, 4> source{};
  std::array<std::uint8_t*, 4> target{};
  std::array<int, 4> sourcePitch{}, targetPitch{};
  for (std::size_t plane = 0; plane < source.size(); ++plane) {
    if (from.data[plane] != nullptr)
      source[plane] = from.data[plane] + std::ptrdiff_t{from.linesize[plane]} * field;
    if (converted_->data[plane] != nullptr)
      target[plane] = converted_->data[plane] + std::ptrdiff_t{converted_->linesize[plane]} * field;
    sourcePitch[plane] = from.linesize[plane] * fields_;
    targetPitch[plane] = converted_->linesize[plane] * fields_;
  }
  // A palette is not a plane of rows.
  if (preparedFor_ == AV_PIX_FMT_PAL8)
    source[1] = from.data[1];
  sws_scale(scaler_.get(), source.data(), sourcePitch.data(), 0, from.height / fields_,
            target.data(), targetPitch.data());
}

AVFrame& FrameConverter::convert(AVFrame& from) {
  if (from.format == to_ && usesFullRange(from) == isFullRange(to_))
    return from;
  if (from.format != preparedFor_ || converted_->width != from.width ||
      converted_->height != from.height)
    prepare(from);
  if (av_frame_make_writable(converted_.get()) < 0)
    throw std::bad_alloc();
  for (int field = 0; field < fields_; ++field)
    scale(from, field);
  av_frame_copy_props(converted_.get(), &from);
  converted_->color_range = isFullRange(to_) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  return *converted_;
}

}  // namespace nkdraw::media
