// SPDX-License-Identifier: BSD-2-Clause
#include "media/raw_stream.h"

#include "media/failure.h"

#include <string>

namespace nkdraw::media {
namespace {

constexpr std::uint32_t kV210Tag = MKTAG('v', '2', '1', '0');
constexpr int kV210Bits = 20;  // a pixel, as FFmpeg counts them

}  // namespace

void checkKeeps(const AVOutputFormat& format, const Layout& layout) {
  if ((layout.containers & containerOf(format.name)) == 0)
    throw Failure(ExitCode::kUsage, "this kind of file does not keep the layout",
                  std::string(format.name) + ", " + std::string(layout.name),
                  "write " + containerNames(layout.containers) + ", or choose a --codec");
}

void describeRaw(AVStream& stream, const Layout& layout, const FrameKind& frames,
                 const AVOutputFormat& format) {
  AVCodecParameters& codec = *stream.codecpar;
  av_freep(&codec.extradata);
  codec.extradata_size = 0;
  codec.codec_type = AVMEDIA_TYPE_VIDEO;
  codec.codec_id = layout.codec;
  codec.format = layout.pixelFormat;
  codec.width = frames.width;
  codec.height = frames.height;
  const bool isV210 = layout.codec == AV_CODEC_ID_V210;
  codec.codec_tag = isV210 ? kV210Tag : avcodec_pix_fmt_to_codec_tag(layout.pixelFormat);
  codec.bits_per_coded_sample =
      isV210 ? kV210Bits : av_get_bits_per_pixel(av_pix_fmt_desc_get(layout.pixelFormat));
  // A kind of file with a tag of its own for raw frames is left to choose it.
  std::uint32_t other = 0;
  if (format.codec_tag != nullptr &&
      av_codec_get_id(format.codec_tag, codec.codec_tag) != codec.codec_id &&
      av_codec_get_tag2(format.codec_tag, codec.codec_id, &other) != 0)
    codec.codec_tag = 0;
  stream.time_base = av_inv_q(frames.rate);
  stream.avg_frame_rate = frames.rate;
  stream.r_frame_rate = frames.rate;
}

}  // namespace nkdraw::media
