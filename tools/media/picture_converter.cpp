// SPDX-License-Identifier: BSD-2-Clause
#include "media/picture_converter.h"

#include "media/failure.h"
#include "media/layouts.h"

#include <array>
#include <cstdint>

namespace nkdraw::media {
namespace {

bool isRGB(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

bool usesFullRange(const AVFrame& picture) {
  return picture.color_range == AVCOL_RANGE_JPEG ||
         isFullRange(static_cast<AVPixelFormat>(picture.format));
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

AVColorSpace matrixOf(const AVFrame& picture) {
  if (picture.colorspace != AVCOL_SPC_UNSPECIFIED && picture.colorspace != AVCOL_SPC_RGB)
    return picture.colorspace;
  return matrixForWidth(picture.width);
}

void PictureConverter::prepare(const AVFrame& from) {
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

  picture_ = makeFrame();
  picture_->format = to_;
  picture_->width = from.width;
  picture_->height = from.height;
  if (av_frame_get_buffer(picture_.get(), 0) < 0)
    throw std::bad_alloc();
  preparedFor_ = format;
}

AVFrame& PictureConverter::convert(AVFrame& from) {
  if (from.format == to_ && usesFullRange(from) == isFullRange(to_))
    return from;
  if (from.format != preparedFor_ || picture_->width != from.width ||
      picture_->height != from.height)
    prepare(from);
  if (av_frame_make_writable(picture_.get()) < 0)
    throw std::bad_alloc();
  for (int field = 0; field < fields_; ++field) {
    std::array<const std::uint8_t*, 4> source{};
    std::array<std::uint8_t*, 4> target{};
    std::array<int, 4> sourcePitch{}, targetPitch{};
    for (std::size_t plane = 0; plane < source.size(); ++plane) {
      if (from.data[plane] != nullptr)
        source[plane] = from.data[plane] + std::ptrdiff_t{from.linesize[plane]} * field;
      if (picture_->data[plane] != nullptr)
        target[plane] = picture_->data[plane] + std::ptrdiff_t{picture_->linesize[plane]} * field;
      sourcePitch[plane] = from.linesize[plane] * fields_;
      targetPitch[plane] = picture_->linesize[plane] * fields_;
    }
    // A palette is no plane of rows.
    if (preparedFor_ == AV_PIX_FMT_PAL8)
      source[1] = from.data[1];
    sws_scale(scaler_.get(), source.data(), sourcePitch.data(), 0, from.height / fields_,
              target.data(), targetPitch.data());
  }
  av_frame_copy_props(picture_.get(), &from);
  picture_->color_range = isFullRange(to_) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  return *picture_;
}

}  // namespace nkdraw::media
