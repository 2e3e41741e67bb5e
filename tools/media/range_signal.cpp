// SPDX-License-Identifier: BSD-2-Clause
#include "media/range_signal.h"

#include "media/layouts.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

/// Their bitstreams tell the range.
constexpr AVCodecID kTelling[] = {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_AV1,
                                  AV_CODEC_ID_VP9, AV_CODEC_ID_MJPEG};
/// Their decoders always say studio range.
constexpr AVCodecID kStudioOnly[] = {AV_CODEC_ID_PRORES};

template <class List>
bool has(const List& list, AVCodecID codec) {
  return std::ranges::find(list, codec) != std::end(list);
}

bool isLossless(AVCodecID codec) {
  constexpr int kBoth = AV_CODEC_PROP_LOSSLESS | AV_CODEC_PROP_LOSSY;
  const AVCodecDescriptor* const facts = avcodec_descriptor_get(codec);
  return codec == AV_CODEC_ID_RAWVIDEO ||
         (facts != nullptr && (facts->props & kBoth) == AV_CODEC_PROP_LOSSLESS);
}

/// Matroska and WebM have a field for it, which FFmpeg fills.
bool tells(const AVOutputFormat& format) {
  return containerOf(format.name) == kMKV || std::string_view(format.name) == "webm";
}

}  // namespace

FullRange fullRangeIn(const AVCodec& codec, const AVOutputFormat& format) {
  if (has(kTelling, codec.id) || (tells(format) && !has(kStudioOnly, codec.id)))
    return FullRange::kTold;
  return isLossless(codec.id) ? FullRange::kUntold : FullRange::kGivenUp;
}

}  // namespace nkdraw::media
