// SPDX-License-Identifier: BSD-2-Clause
#include "media/still.h"

#include "media/failure.h"
#include "media/libav_log.h"
#include "media/picture_converter.h"

#include <fstream>

namespace nkdraw::media {
namespace {

Packet encodePNG(AVFrame& picture) {
  const AVCodec* const codec = avcodec_find_encoder(AV_CODEC_ID_PNG);
  if (codec == nullptr)
    throw Failure(ExitCode::kProcessing, "no PNG encoder", "FFmpeg", "install a full FFmpeg");
  const CodecContext encoder = owned<CodecContext>(avcodec_alloc_context3(codec));
  encoder->width = picture.width;
  encoder->height = picture.height;
  encoder->pix_fmt = static_cast<AVPixelFormat>(picture.format);
  encoder->time_base = {1, 25};
  encoder->sample_aspect_ratio = picture.sample_aspect_ratio;
  Packet packet = makePacket();
  int error = avcodec_open2(encoder.get(), codec, nullptr);
  if (error >= 0)
    error = avcodec_send_frame(encoder.get(), &picture);
  if (error >= 0)
    error = avcodec_send_frame(encoder.get(), nullptr);
  if (error >= 0)
    error = avcodec_receive_packet(encoder.get(), packet.get());
  if (error < 0)
    throw Failure(ExitCode::kProcessing, "the picture can't be encoded", "PNG", explained(error));
  return packet;
}

}  // namespace

void writeStill(AVFrame& picture, const std::string& file, const std::string& name) {
  // Alpha is left out: the picture shows what a screen shows.
  PictureConverter toRGB(AV_PIX_FMT_RGB24, false);
  AVFrame& rgb = toRGB.convert(picture);
  rgb.color_range = AVCOL_RANGE_UNSPECIFIED;
  rgb.colorspace = AVCOL_SPC_UNSPECIFIED;
  const Packet png = encodePNG(rgb);
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(png->data), png->size);
  out.close();
  if (!out)
    throw Failure(ExitCode::kOutput, "the picture can't be written", name, "is the disk full?");
}

}  // namespace nkdraw::media
