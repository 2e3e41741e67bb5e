// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_converter.h"

#include "media/component.h"
#include "media/failure.h"
#include "media/format_match.h"
#include "media/layouts.h"

#include <array>
#include <cstdint>

namespace nkdraw::media {
namespace {

bool isRGB(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

bool isDeep(AVPixelFormat format) {
  return av_pix_fmt_desc_get(format)->comp[0].depth > 8;
}

bool isGrey(AVPixelFormat format) {
  return !isRGB(format) && av_pix_fmt_desc_get(format)->nb_components < 3;
}

}  // namespace

bool usesFullRange(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  if (isGrey(format) && frame.color_range != AVCOL_RANGE_UNSPECIFIED)
    return frame.color_range == AVCOL_RANGE_JPEG;
  return frame.color_range == AVCOL_RANGE_JPEG || isFullRange(format);
}

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
                           makesFullRange(from) ? 1 : 0, 0, kUnity, kUnity);

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

bool FrameConverter::makesFullRange(const AVFrame& from) const {
  const bool isKept =
      range_ == Range::kKept && !isRGB(to_) && !isRGB(static_cast<AVPixelFormat>(from.format));
  return isKept ? usesFullRange(from) : isFullRange(to_);
}

void FrameConverter::makeConverted(const AVFrame& from) {
  if (converted_ == nullptr || converted_->width != from.width || converted_->height != from.height)
    converted_ = makeFrame(to_, from.width, from.height);
  if (av_frame_make_writable(converted_.get()) < 0)
    throw std::bad_alloc();
}

/// Every sample in its place in the target. FFmpeg does this exactly for samples of bytes only.
AVFrame& FrameConverter::reorder(const AVFrame& from) {
  makeConverted(from);
  const auto format = static_cast<AVPixelFormat>(from.format);
  for (int i = 0; i < av_pix_fmt_desc_get(to_)->nb_components; ++i) {
    const Component source(format, i), target(to_, i);
    for (int y = 0; y < target.rows(from.height); ++y) {
      for (int x = 0; x < target.columns(from.width); ++x)
        target.put(*converted_, x, y, source.get(from, x, y));
    }
  }
  av_frame_copy_props(converted_.get(), &from);
  return *converted_;
}

/// The same frame under the target's name.
AVFrame& FrameConverter::relabel(const AVFrame& from) {
  av_frame_unref(relabelled_.get());
  if (av_frame_ref(relabelled_.get(), &from) < 0)
    throw std::bad_alloc();
  relabelled_->format = to_;
  relabelled_->color_range = usesFullRange(from) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  return *relabelled_;
}

AVFrame& FrameConverter::convert(AVFrame& from) {
  const auto format = static_cast<AVPixelFormat>(from.format);
  if (usesFullRange(from) == makesFullRange(from)) {
    if (format == to_)
      return from;
    if (storeAlike(format, to_))
      return relabel(from);
    if (isDeep(to_) && holdTheSame(format, to_))
      return reorder(from);
  }
  if (from.format != preparedFor_ || converted_->width != from.width ||
      converted_->height != from.height)
    prepare(from);
  makeConverted(from);
  for (int field = 0; field < fields_; ++field)
    scale(from, field);
  av_frame_copy_props(converted_.get(), &from);
  converted_->color_range = makesFullRange(from) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  return *converted_;
}

}  // namespace nkdraw::media
