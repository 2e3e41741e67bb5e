// SPDX-License-Identifier: BSD-2-Clause
#include "media/encoder.h"

#include "media/container_streams.h"
#include "media/failure.h"
#include "media/libav_log.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::media {
namespace {

/// Video encoders may also be named by their codec.
const AVCodec* findEncoder(const std::string& name, AVMediaType type) {
  if (const AVCodec* const codec = avcodec_find_encoder_by_name(name.c_str()))
    return codec;
  const AVCodecDescriptor* const codec =
      type == AVMEDIA_TYPE_VIDEO ? avcodec_descriptor_get_by_name(name.c_str()) : nullptr;
  return codec != nullptr ? avcodec_find_encoder(codec->id) : nullptr;
}

/// FFmpeg reads FFV1 from QuickTime files, though its muxer does not list it.
bool canHold(const AVOutputFormat& format, AVCodecID codec) {
  return keepsCodec(format, codec) ||
         (codec == AV_CODEC_ID_FFV1 && std::string_view(format.name) == "mov");
}

}  // namespace

CodecChoice namedEncoder(const CodecRequest& request, AVMediaType type,
                         const AVOutputFormat& format) {
  const std::string& asked = *request.asked;
  const std::size_t colon = std::min(asked.find(':'), asked.size());
  const std::string name = asked.substr(0, colon);
  const AVCodec* const codec = findEncoder(name, type);
  if (codec == nullptr || codec->type != type)
    throw Failure(ExitCode::kUsage,
                  std::string("no such ") + av_get_media_type_string(type) + " encoder", name,
                  "see ffmpeg -encoders");
  if (!canHold(format, codec->id))
    throw Failure(ExitCode::kUsage, "the output's kind of file does not hold this codec",
                  std::string(format.name) + ", " + name,
                  "choose another suffix or " + request.option);
  return {codec, AV_PIX_FMT_NONE, asked.substr(std::min(colon + 1, asked.size())), request.option};
}

void readOptions(const CodecChoice& choice, Options& options) {
  if (av_dict_parse_string(options.get(), choice.options.c_str(), "=", ":", 0) < 0)
    throw Failure(ExitCode::kUsage, "codec options can't be read", choice.options,
                  "write " + choice.option + " NAME:KEY=VALUE:KEY=VALUE");
}

void checkAllKnown(const CodecChoice& choice, const Options& options) {
  if (const char* const unknown = options.unused())
    throw Failure(ExitCode::kUsage, "the encoder has no such option", unknown,
                  std::string("see ffmpeg -h encoder=") + choice.codec->name);
}

void encode(AVCodecContext& encoder, const AVFrame* frame, const CodecChoice& choice,
            const char* what, const TakePacket& take) {
  const Packet packet = makePacket();
  int error = avcodec_send_frame(&encoder, frame);
  while (error >= 0) {
    error = avcodec_receive_packet(&encoder, packet.get());
    if (error < 0)
      break;
    take(*packet);
    av_packet_unref(packet.get());
  }
  if (error != AVERROR(EAGAIN) && error != AVERROR_EOF)
    throw Failure(ExitCode::kProcessing, what, choice.codec->name,
                  explained(error) + "; choose another " + choice.option);
}

std::string codecText(const CodecChoice& choice) {
  return std::string(choice.codec->name) + ", " + av_get_pix_fmt_name(choice.pixelFormat);
}

}  // namespace nkdraw::media
