// SPDX-License-Identifier: BSD-2-Clause
#include "media/still.h"

#include "media/frame_converter.h"
#include "media/image_sequence.h"
#include "media/output_file.h"
#include "media/picture_kind.h"
#include "media/video_encoder.h"

namespace nkdraw::media {
namespace {

bool isRGB(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

}  // namespace

void writeStill(AVFrame& frame, const std::string& file, const std::string& name,
                const Orientation& orientation) {
  const CodecChoice choice =
      stillCodec(stillKindOf(name), static_cast<AVPixelFormat>(frame.format));
  // Alpha is left out, so the picture looks as on a screen.
  FrameConverter toRGB(isRGB(choice.pixelFormat) ? choice.pixelFormat : AV_PIX_FMT_RGB24, false);
  AVFrame& rgb = toRGB.convert(frame);
  rgb.color_range = AVCOL_RANGE_UNSPECIFIED;
  rgb.colorspace = AVCOL_SPC_UNSPECIFIED;
  const Frame turned = orientation.isUpright() ? nullptr : upright(rgb, orientation);
  AVFrame& shown = turned != nullptr ? *turned : rgb;
  if (!isRGB(choice.pixelFormat))
    shown.colorspace = AVCOL_SPC_BT470BG;  // that of every JPEG
  VideoEncoder encoder(choice, shown, FrameKind(), sequenceFormat());
  const auto write = [&](const AVPacket& packet) {
    writeBytes({packet.data, static_cast<std::size_t>(packet.size)}, file, name);
  };
  encoder.encode(&shown, 0, write);
  encoder.encode(nullptr, 0, write);
}

}  // namespace nkdraw::media
