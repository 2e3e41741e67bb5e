// SPDX-License-Identifier: BSD-2-Clause
#include "media/format_match.h"

#include "media/component.h"

#include <algorithm>
#include <span>

namespace nkdraw::media {
namespace {

std::span<const AVComponentDescriptor> componentsOf(const AVPixFmtDescriptor& facts) {
  return {facts.comp, facts.nb_components};
}

template <class Same>
bool match(AVPixelFormat a, AVPixelFormat b, std::uint64_t flags, Same same) {
  const AVPixFmtDescriptor &one = *av_pix_fmt_desc_get(a), &other = *av_pix_fmt_desc_get(b);
  return ((one.flags ^ other.flags) & flags) == 0 && one.log2_chroma_w == other.log2_chroma_w &&
         one.log2_chroma_h == other.log2_chroma_h &&
         std::ranges::equal(componentsOf(one), componentsOf(other), same);
}

}  // namespace

bool storeAlike(AVPixelFormat a, AVPixelFormat b) {
  constexpr std::uint64_t kAllFlags = ~std::uint64_t{0};
  return match(a, b, kAllFlags, [](const AVComponentDescriptor& x, const AVComponentDescriptor& y) {
    return x.plane == y.plane && x.step == y.step && x.offset == y.offset && x.shift == y.shift &&
           x.depth == y.depth;
  });
}

bool holdTheSame(AVPixelFormat a, AVPixelFormat b) {
  constexpr std::uint64_t kMeaning = AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_ALPHA;
  return hasComponents(a) && hasComponents(b) &&
         match(a, b, kMeaning, [](const AVComponentDescriptor& x, const AVComponentDescriptor& y) {
           return x.depth == y.depth;
         });
}

AVPixelFormat sameIn(const AVPixelFormat* list, AVPixelFormat wanted) {
  if (list == nullptr)
    return wanted;
  AVPixelFormat found = AV_PIX_FMT_NONE;
  for (; *list != AV_PIX_FMT_NONE; ++list) {
    if (*list == wanted)
      return wanted;
    if (found == AV_PIX_FMT_NONE && holdTheSame(*list, wanted))
      found = *list;
  }
  return found;
}

bool losesNothing(AVPixelFormat from, AVPixelFormat to) {
  const std::uint64_t alpha = av_pix_fmt_desc_get(from)->flags & AV_PIX_FMT_FLAG_ALPHA;
  return storeAlike(from, to) || holdTheSame(from, to) ||
         av_get_pix_fmt_loss(to, from, alpha != 0 ? 1 : 0) == 0;
}

AVPixelFormat widerIn(const AVPixelFormat* list, AVPixelFormat wanted) {
  const auto bitsOf = [](AVPixelFormat format) {
    return av_get_bits_per_pixel(av_pix_fmt_desc_get(format));
  };
  AVPixelFormat found = AV_PIX_FMT_NONE;
  for (; list != nullptr && *list != AV_PIX_FMT_NONE; ++list) {
    if (losesNothing(wanted, *list) && sws_isSupportedOutput(*list) != 0 &&
        (found == AV_PIX_FMT_NONE || bitsOf(*list) < bitsOf(found)))
      found = *list;
  }
  return found;
}

}  // namespace nkdraw::media
