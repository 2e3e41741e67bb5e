// SPDX-License-Identifier: BSD-2-Clause
#include "media/component.h"

#include <algorithm>
#include <span>

namespace nkdraw::media {
namespace {

constexpr int kByteBits = 8, kWordBits = 16, kFloatBits = 32;

bool has(AVPixelFormat format, std::uint64_t flag) {
  return (av_pix_fmt_desc_get(format)->flags & flag) != 0;
}

constexpr std::uint64_t kOutOfReach = AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_HWACCEL |
                                      AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BAYER;

/// Formats whose descriptions don't tell where their samples are, or which are neither YCbCr nor
/// RGB.
constexpr AVPixelFormat kOthers[] = {AV_PIX_FMT_UYYVYY411, AV_PIX_FMT_XYZ12LE, AV_PIX_FMT_XYZ12BE};

}  // namespace

bool hasComponents(AVPixelFormat format) {
  const AVPixFmtDescriptor* const facts = av_pix_fmt_desc_get(format);
  if (facts == nullptr || (facts->flags & kOutOfReach) != 0 || facts->nb_components == 0 ||
      std::ranges::find(kOthers, format) != std::end(kOthers))
    return false;
  const int most = has(format, AV_PIX_FMT_FLAG_FLOAT) ? kFloatBits : kWordBits;
  return std::ranges::all_of(
      std::span(facts->comp, facts->nb_components),
      [most](const AVComponentDescriptor& each) { return each.shift + each.depth <= most; });
}

Component::Component(AVPixelFormat format, int number)
    : place_(av_pix_fmt_desc_get(format)->comp[number]),
      isFloat_(has(format, AV_PIX_FMT_FLAG_FLOAT)) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  const bool bigEndian = has(format, AV_PIX_FMT_FLAG_BE);
  isSwapped_ = bigEndian != (std::endian::native == std::endian::big);
  if (isFloat_)
    place_.depth = kWordBits;
  mask_ = (1U << place_.depth) - 1;
  isByte_ = place_.shift + place_.depth <= kByteBits;
  if ((facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 && (number == 1 || number == 2)) {
    columnShift_ = facts.log2_chroma_w;
    rowShift_ = facts.log2_chroma_h;
  }
  high_ = bigEndian ? 0 : 1;
  // FFmpeg counts the offset of a byte within a word from the little end.
  offset_ = place_.offset + (isByte_ && bigEndian ? 1 : 0);
}

}  // namespace nkdraw::media
