// SPDX-License-Identifier: BSD-2-Clause
#include "media/drawn_format.h"

#include "media/component.h"

namespace nkdraw::media {
namespace {

constexpr int kShallow = 8;  // bits that the 8-bit layouts hold

}  // namespace

AVPixelFormat drawnFormat(AVPixelFormat source) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(source);
  const bool isRGB = (facts.flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
  if (isRGB)
    return (facts.flags & (AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_PAL)) != 0 ? AV_PIX_FMT_BGRA
                                                                              : AV_PIX_FMT_BGR0;
  return facts.comp[0].depth > kShallow ? AV_PIX_FMT_YUV422P10 : AV_PIX_FMT_UYVY422;
}

AVPixelFormat keptFormat(AVPixelFormat source) {
  return hasComponents(source) ? source : drawnFormat(source);
}

Storage storageOf(AVPixelFormat drawn) {
  return drawn == AV_PIX_FMT_YUV422P10 ? Storage::kPlanes10 : Storage::kPacked;
}

Picture planesOf(AVFrame& frame) {
  Picture planes;
  for (std::size_t i = 0; i < planes.planes.size(); ++i) {
    planes.planes[i] = frame.data[i];
    planes.pitches[i] = frame.linesize[i];
  }
  return planes;
}

}  // namespace nkdraw::media
