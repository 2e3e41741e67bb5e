// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_encoder.h"

#include "media/codec_tag.h"
#include "media/failure.h"
#include "media/layouts.h"
#include "media/libav_log.h"
#include "media/media_output.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

/// The lossless encodings of a format, best first, and the file formats in which each is usual (0:
/// wherever FFmpeg supports it).
struct LosslessCodec {
  AVPixelFormat drawn;
  AVCodecID codec;
  AVPixelFormat pixelFormat;
  unsigned containers;
};
constexpr char kPixelFormatKey[] = "pix_fmt";
constexpr unsigned kAnyKind = 0;
constexpr LosslessCodec kLossless[] = {
    {AV_PIX_FMT_YUV422P10, AV_CODEC_ID_V210, AV_PIX_FMT_YUV422P10, kMOV | kAVI | kMKV | kNUT},
    {AV_PIX_FMT_YUV422P10, AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV422P10, kAnyKind},
    {AV_PIX_FMT_UYVY422, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_UYVY422, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_UYVY422, AV_CODEC_ID_FFV1, AV_PIX_FMT_YUV422P, kAnyKind},
    {AV_PIX_FMT_BGRA, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_BGRA, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_BGRA, AV_CODEC_ID_FFV1, AV_PIX_FMT_BGRA, kAnyKind},
    {AV_PIX_FMT_BGR0, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_BGR24, kMOV | kAVI | kNUT},
    {AV_PIX_FMT_BGR0, AV_CODEC_ID_FFV1, AV_PIX_FMT_BGR0, kAnyKind},
    {AV_PIX_FMT_RGB48LE, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGB48LE, kNUT},
    {AV_PIX_FMT_RGB48LE, AV_CODEC_ID_FFV1, AV_PIX_FMT_RGB48LE, kAnyKind},
    {AV_PIX_FMT_RGBA64LE, AV_CODEC_ID_RAWVIDEO, AV_PIX_FMT_RGBA64LE, kNUT},
    {AV_PIX_FMT_RGBA64LE, AV_CODEC_ID_FFV1, AV_PIX_FMT_RGBA64LE, kAnyKind},
};

CodecChoice losslessChoice(const std::string& option, AVPixelFormat drawn,
                           const AVOutputFormat& format) {
  const unsigned container = containerOf(format.name);
  for (const LosslessCodec& each : kLossless) {
    const bool usual = each.containers == kAnyKind ? holds(format, each.codec)
                                                   : (each.containers & container) != 0;
    if (each.drawn == drawn && usual) {
      if (const AVCodec* const codec = avcodec_find_encoder(each.codec))
        return {codec, each.pixelFormat, {}, option};
    }
  }
  throw Failure(ExitCode::kUsage, "no lossless codec for this kind of file", format.name,
                "choose one with " + option + ", or write .mov, .avi, .mkv or .nut");
}

/// FFmpeg's raw encoder takes all formats, but only NUT distinguishes all of them.
AVPixelFormat rawFormat(AVPixelFormat wanted, const AVOutputFormat& format,
                        const std::string& option) {
  const Layout* const layout = wipeLayoutOf(AV_CODEC_ID_RAWVIDEO, wanted);
  const unsigned containers = layout != nullptr ? layout->containers : unsigned{kNUT};
  if ((containers & containerOf(format.name)) == 0)
    throw Failure(ExitCode::kUsage, "this kind of file does not keep such raw frames",
                  std::string(format.name) + ", " + av_get_pix_fmt_name(wanted),
                  "choose another " + option + ", or write " + containerNames(containers));
  return wanted;
}

/// Some encoders write to standard error, bypassing FFmpeg's log; each is silenced in its own way.
void silence(const AVCodec& codec, Options& options) {
  constexpr char kX265[] = "x265-params";
  if (std::string_view(codec.name) == "libx265") {
    const AVDictionaryEntry* const asked = av_dict_get(*options.get(), kX265, nullptr, 0);
    const std::string more = asked != nullptr ? std::string(":") + asked->value : "";
    options.set(kX265, ("log-level=none" + more).c_str());
  }
  setenv("SVT_LOG", "0", 0);
}

/// An encoder without a list accepts every format.
bool takes(const AVCodec& codec, AVPixelFormat format) {
  if (codec.pix_fmts == nullptr)
    return true;
  for (const AVPixelFormat* each = codec.pix_fmts; *each != AV_PIX_FMT_NONE; ++each) {
    if (*each == format)
      return true;
  }
  return false;
}

/// The pixel format among the options, which is not an option of FFmpeg's encoders.
std::optional<AVPixelFormat> askedFormat(const CodecChoice& choice) {
  Options options;
  readOptions(choice, options);
  const AVDictionaryEntry* const entry = av_dict_get(*options.get(), kPixelFormatKey, nullptr, 0);
  if (entry == nullptr)
    return std::nullopt;
  const AVPixelFormat format = av_get_pix_fmt(entry->value);
  if (format == AV_PIX_FMT_NONE || !takes(*choice.codec, format))
    throw Failure(ExitCode::kUsage, "the encoder does not take this pixel format", entry->value,
                  std::string("see ffmpeg -h encoder=") + choice.codec->name);
  return format;
}

bool hasAlpha(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

/// The pixel format for an encoder, unless the user named one.
AVPixelFormat usualFormat(const AVCodec& codec, AVPixelFormat drawn) {
  return codec.pix_fmts != nullptr ? avcodec_find_best_pix_fmt_of_list(
                                         codec.pix_fmts, drawn, hasAlpha(drawn) ? 1 : 0, nullptr)
                                   : drawn;
}

CodecChoice namedChoice(const CodecRequest& request, AVPixelFormat drawn,
                        const AVOutputFormat& format) {
  CodecChoice choice = namedEncoder(request, AVMEDIA_TYPE_VIDEO, format);
  const auto asked = askedFormat(choice);
  const AVPixelFormat usualRaw = drawn == AV_PIX_FMT_BGR0 ? AV_PIX_FMT_BGR24 : drawn;
  if (choice.codec->id == AV_CODEC_ID_RAWVIDEO)
    choice.pixelFormat = rawFormat(asked.value_or(usualRaw), format, request.option);
  else
    choice.pixelFormat = asked ? *asked : usualFormat(*choice.codec, drawn);
  return choice;
}

bool isYUV(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  return (facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 && facts.nb_components >= 3;
}

}  // namespace

CodecChoice chooseCodec(const CodecRequest& request, AVPixelFormat drawn,
                        const AVOutputFormat& format) {
  return request.asked ? namedChoice(request, drawn, format)
                       : losslessChoice(request.option, drawn, format);
}

VideoEncoder::VideoEncoder(const CodecChoice& choice, const AVFrame& first, const FrameKind& frames,
                           const AVOutputFormat& format)
    : choice_(choice),
      format_(format),
      encoder_(owned<CodecContext>(avcodec_alloc_context3(choice.codec))),
      converter_(choice.pixelFormat, frames.interlaced) {
  describe(first, frames);
  open();
}

void VideoEncoder::describe(const AVFrame& first, const FrameKind& frames) {
  encoder_->width = first.width;
  encoder_->height = first.height;
  encoder_->pix_fmt = choice_.pixelFormat;
  encoder_->time_base = av_inv_q(frames.rate);
  encoder_->framerate = frames.rate;
  encoder_->sample_aspect_ratio = first.sample_aspect_ratio;
  encoder_->color_range = first.color_range;
  encoder_->color_primaries = first.color_primaries;
  encoder_->color_trc = first.color_trc;
  encoder_->colorspace = first.colorspace;
  encoder_->chroma_sample_location = first.chroma_location;
  if (isYUV(choice_.pixelFormat)) {
    encoder_->color_range = isFullRange(choice_.pixelFormat) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    if (!isYUV(static_cast<AVPixelFormat>(first.format)))
      encoder_->colorspace = matrixOf(first);
  }
  if (frames.interlaced) {
    encoder_->field_order = first.top_field_first != 0 ? AV_FIELD_TT : AV_FIELD_BB;
    encoder_->flags |= AV_CODEC_FLAG_INTERLACED_DCT;
  }
}

void VideoEncoder::open() {
  if ((format_.flags & AVFMT_GLOBALHEADER) != 0)
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  encoder_->thread_count = 0;
  Options options;
  readOptions(choice_, options);
  options.set(kPixelFormatKey, nullptr);
  if (!showsLibavMessages())
    silence(*choice_.codec, options);
  forgetLibavErrors();
  if (const int error = av_opt_set_dict2(encoder_.get(), options.get(), AV_OPT_SEARCH_CHILDREN);
      error < 0)
    throw Failure(
        ExitCode::kUsage, "the encoder does not take an option's value", choice_.codec->name,
        explained(error, firstLibavError()) + "; see ffmpeg -h encoder=" + choice_.codec->name);
  if (const int error = avcodec_open2(encoder_.get(), choice_.codec, options.get()); error < 0)
    throw Failure(ExitCode::kProcessing, "the encoder refuses the video", choice_.codec->name,
                  explained(error, firstLibavError()) + "; choose another " + choice_.option);
  checkAllKnown(choice_, options);
}

void VideoEncoder::describeTo(AVStream& stream) const {
  if (avcodec_parameters_from_context(stream.codecpar, encoder_.get()) < 0)
    throw std::bad_alloc();
  tagCodec(*stream.codecpar, format_);
  stream.time_base = encoder_->time_base;
  stream.avg_frame_rate = encoder_->framerate;
  stream.r_frame_rate = encoder_->framerate;
  stream.sample_aspect_ratio = encoder_->sample_aspect_ratio;
}

void VideoEncoder::encode(AVFrame* frame, std::int64_t index, const TakePacket& take) {
  AVFrame* converted = nullptr;
  if (frame != nullptr) {
    converted = &converter_.convert(*frame);
    converted->pts = index;
    converted->pict_type = AV_PICTURE_TYPE_NONE;
  }
  const auto takeTimed = [&](AVPacket& packet) {
    if (packet.duration == 0)
      packet.duration = 1;
    take(packet);
  };
  media::encode(*encoder_, converted, choice_, "a frame can't be encoded", takeTimed);
}

}  // namespace nkdraw::media
