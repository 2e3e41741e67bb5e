// SPDX-License-Identifier: BSD-2-Clause
#include "media/codec_tag.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

struct Tag {
  AVCodecID codec;
  std::uint32_t tag;
};
constexpr Tag kTags[] = {
    {AV_CODEC_ID_H264, MKTAG('a', 'v', 'c', '1')},
    {AV_CODEC_ID_HEVC, MKTAG('h', 'v', 'c', '1')},
};

/// FFmpeg's muxers for QuickTime files and their relatives.
constexpr std::string_view kFamily[] = {"mov", "mp4", "ipod", "3gp", "3g2", "f4v", "ismv", "psp"};

}  // namespace

void tagCodec(AVCodecParameters& video, const AVOutputFormat& format) {
  const auto* const found = std::ranges::find(kTags, video.codec_id, &Tag::codec);
  const bool isFamily = std::ranges::find(kFamily, format.name) != std::end(kFamily);
  if (found == std::end(kTags) || !isFamily ||
      av_codec_get_id(format.codec_tag, found->tag) != video.codec_id)
    return;
  video.codec_tag = found->tag;
  // From the pixel format FFmpeg concludes that H.264 is AVC-Intra, whatever the tag says.
  if (video.codec_id == AV_CODEC_ID_H264)
    video.format = AV_PIX_FMT_NONE;
}

}  // namespace nkdraw::media
