// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_encoder.h"

#include "media/codec_tag.h"
#include "media/drawn_format.h"
#include "media/failure.h"
#include "media/format_match.h"
#include "media/layouts.h"
#include "media/libav_log.h"
#include "media/light_levels.h"
#include "media/lossless_codec.h"
#include "media/range_signal.h"
#include "media/stream_codec.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr char kPixelFormatKey[] = "pix_fmt";

CodecChoice losslessChoice(const std::string& option, AVPixelFormat drawn,
                           const AVOutputFormat& format) {
  if (const auto found = losslessEncoding(drawn, format))
    return {found->codec, found->pixelFormat, {}, option};
  // Of the formats that every surface draws in.
  if (const auto nearest = losslessEncoding(drawnFormat(drawn), format))
    return {nearest->codec, nearest->pixelFormat, {}, option};
  throw Failure(ExitCode::kUsage, "no lossless codec for this kind of file", format.name,
                "choose one with " + option + ", or write .mov, .avi, .mkv or .nut");
}

/// FFmpeg's raw encoder takes all formats, but only NUT distinguishes all that have a tag.
AVPixelFormat rawFormat(AVPixelFormat wanted, const AVOutputFormat& format,
                        const std::string& option) {
  const Layout* const layout = wipeLayoutOf(AV_CODEC_ID_RAWVIDEO, wanted);
  const unsigned containers = layout != nullptr ? layout->containers : unsigned{kNUT};
  if (avcodec_pix_fmt_to_codec_tag(wanted) == 0)
    throw Failure(ExitCode::kUsage, "no kind of file keeps such raw frames",
                  av_get_pix_fmt_name(wanted), "choose another " + option);
  if (!keepsAnyRaw(format) && (containers & containerOf(format.name)) == 0)
    throw Failure(ExitCode::kUsage, "this kind of file does not keep such raw frames",
                  std::string(format.name) + ", " + av_get_pix_fmt_name(wanted),
                  "choose another " + option + ", or write " + containerNames(containers));
  return wanted;
}

/// The raw frames of `drawn` in this kind of file, unless the user named others: outside NUT those
/// of the nearest layout.
AVPixelFormat usualRawFormat(AVPixelFormat drawn, const AVOutputFormat& format) {
  const bool keepsAll = containerOf(format.name) == kNUT;
  const bool isLayout = layoutOf(AV_CODEC_ID_RAWVIDEO, drawn) != nullptr;
  const AVPixelFormat usual = keepsAll || isLayout ? drawn : drawnFormat(drawn);
  return usual == AV_PIX_FMT_BGR0 ? AV_PIX_FMT_BGR24 : usual;
}

AVCodecContext* leftOpen = nullptr;  // each has the one before in its `opaque`

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

/// FFmpeg tells libx264 the order of fields with the frames, when its headers are made.
void tellFieldOrder(const AVCodec& codec, AVFieldOrder order, Options& options) {
  constexpr char kX264[] = "x264-params";
  if (std::string_view(codec.name) != "libx264" || order != AV_FIELD_BB)
    return;
  const AVDictionaryEntry* const asked = av_dict_get(*options.get(), kX264, nullptr, 0);
  const std::string more = asked != nullptr ? std::string(":") + asked->value : "";
  options.set(kX264, ("bff=1" + more).c_str());
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

/// The pixel format for an encoder, unless the user named one: the frames' own if it takes that.
AVPixelFormat usualFormat(const AVCodec& codec, AVPixelFormat drawn) {
  if (const AVPixelFormat same = sameIn(codec.pix_fmts, drawn); same != AV_PIX_FMT_NONE)
    return same;
  return codec.pix_fmts != nullptr ? avcodec_find_best_pix_fmt_of_list(
                                         codec.pix_fmts, drawn, hasAlpha(drawn) ? 1 : 0, nullptr)
                                   : drawn;
}

CodecChoice namedChoice(const CodecRequest& request, AVPixelFormat drawn,
                        const AVOutputFormat& format) {
  CodecChoice choice = namedEncoder(request, AVMEDIA_TYPE_VIDEO, format);
  const auto asked = askedFormat(choice);
  if (choice.codec->id == AV_CODEC_ID_RAWVIDEO)
    choice.pixelFormat =
        rawFormat(asked.value_or(usualRawFormat(drawn, format)), format, request.option);
  else
    choice.pixelFormat = asked ? *asked : usualFormat(*choice.codec, drawn);
  return choice;
}

FrameConverter::Range rangeFor(const CodecChoice& choice, const AVOutputFormat& format) {
  return fullRangeIn(*choice.codec, format) == FullRange::kGivenUp ? FrameConverter::Range::kStudio
                                                                   : FrameConverter::Range::kKept;
}

bool isYUV(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  return (facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 && facts.nb_components >= 3;
}

}  // namespace

CodecChoice chooseCodec(const CodecRequest& request, AVPixelFormat drawn,
                        const AVOutputFormat& format) {
  if (request.asked)
    return namedChoice(request, drawn, format);
  const auto plain = streamCodec(drawn, format, request.option);
  return plain ? *plain : losslessChoice(request.option, drawn, format);
}

VideoEncoder::VideoEncoder(const CodecChoice& choice, const AVFrame& first, const FrameKind& frames,
                           const AVOutputFormat& format)
    : choice_(choice),
      format_(format),
      encoder_(owned<CodecContext>(avcodec_alloc_context3(choice.codec))),
      converter_(choice.pixelFormat, frames.interlaced, rangeFor(choice, format)) {
  describe(first, frames);
  open(first);
}

/// SVT-AV1 waits for ever when it is closed without a frame, so then it stays open.
VideoEncoder::~VideoEncoder() {
  if (begun_ || std::string_view(choice_.codec->name) != "libsvtav1")
    return;
  encoder_->opaque = leftOpen;
  leftOpen = encoder_.release();
}

void VideoEncoder::describe(const AVFrame& first, const FrameKind& frames) {
  encoder_->width = choice_.evenSize ? first.width & ~1 : first.width;
  encoder_->height = choice_.evenSize ? first.height & ~1 : first.height;
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
    encoder_->color_range = converter_.makesFullRange(first) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    if (!isYUV(static_cast<AVPixelFormat>(first.format)))
      encoder_->colorspace = matrixOf(first);
  }
  if (frames.interlaced) {
    encoder_->field_order = first.top_field_first != 0 ? AV_FIELD_TT : AV_FIELD_BB;
    encoder_->flags |= AV_CODEC_FLAG_INTERLACED_DCT;
  }
}

void VideoEncoder::open(const AVFrame& first) {
  if ((format_.flags & AVFMT_GLOBALHEADER) != 0)
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  encoder_->thread_count = 0;
  Options options;
  readOptions(choice_, options);
  options.set(kPixelFormatKey, nullptr);
  addLightLevels(first, *choice_.codec, options);
  tellFieldOrder(*choice_.codec, encoder_->field_order, options);
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
  begun_ = true;
  if (frame != nullptr) {
    converted = &converter_.convert(*frame);
    converted->pts = index;
    converted->pict_type = AV_PICTURE_TYPE_NONE;
  }
  Frame cropped;  // shares the pixels
  if (choice_.evenSize && converted != nullptr) {
    cropped = owned<Frame>(av_frame_clone(converted));
    cropped->width = encoder_->width;
    cropped->height = encoder_->height;
    converted = cropped.get();
  }
  const auto takeTimed = [&](AVPacket& packet) {
    if (packet.duration == 0)
      packet.duration = 1;
    take(packet);
  };
  media::encode(*encoder_, converted, choice_, "a frame can't be encoded", takeTimed);
}

}  // namespace nkdraw::media
