// SPDX-License-Identifier: BSD-2-Clause
#include "media/codec_tag.h"

#include "media/container_codecs.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

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

/// 0 leaves it to FFmpeg.
std::uint32_t tagOf(AVCodecID codec, const AVOutputFormat& format) {
  const auto* const found = std::ranges::find(kTags, codec, &Tag::codec);
  if (found == std::end(kTags) || !isQuickTimeFamily(format) ||
      av_codec_get_id(format.codec_tag, found->tag) != codec)
    return 0;
  return found->tag;
}

}  // namespace

void tagCodec(AVCodecParameters& video, const AVOutputFormat& format) {
  const std::uint32_t tag = tagOf(video.codec_id, format);
  if (tag == 0)
    return;
  video.codec_tag = tag;
  // From the pixel format FFmpeg concludes that H.264 is AVC-Intra, whatever the tag says.
  if (video.codec_id == AV_CODEC_ID_H264)
    video.format = AV_PIX_FMT_NONE;
}

std::string tagText(AVCodecID codec, const AVOutputFormat& format) {
  const std::uint32_t tag = tagOf(codec, format);
  char letters[AV_FOURCC_MAX_STRING_SIZE] = {};
  return tag != 0 ? av_fourcc_make_string(letters, tag) : "";
}

}  // namespace nkdraw::media
