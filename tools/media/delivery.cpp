// SPDX-License-Identifier: BSD-2-Clause
#include "media/delivery.h"

#include "media/codec_tag.h"
#include "media/container_codecs.h"
#include "media/drawn_format.h"
#include "media/failure.h"
#include "media/format_match.h"
#include "media/layouts.h"
#include "media/lossless_codec.h"
#include "media/pipe_name.h"
#include "media/stream_codec.h"
#include "media/video_encoder.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace nkdraw::media {
namespace {

/// An encoder and the format in which it takes frames.
struct Candidate {
  const AVCodec* encoder = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
  int loss = 0;  // FFmpeg's FF_LOSS bits
};

bool hasAlpha(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

/// Palettes can be read, but not made.
bool canBeMade(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_PAL) == 0 &&
         sws_isSupportedOutput(format) != 0;
}

/// The encoder's format that loses least of the source's.
Candidate candidateOf(const AVCodec& encoder, AVPixelFormat source) {
  if (const AVPixelFormat same = sameIn(encoder.pix_fmts, source); same != AV_PIX_FMT_NONE)
    return {&encoder, same, 0};
  AVPixelFormat best = AV_PIX_FMT_NONE;
  const int alpha = hasAlpha(source) ? 1 : 0;
  for (const AVPixelFormat* each = encoder.pix_fmts; *each != AV_PIX_FMT_NONE; ++each) {
    if (canBeMade(*each))
      best = best == AV_PIX_FMT_NONE
                 ? *each
                 : av_find_best_pix_fmt_of_2(best, *each, source, alpha, nullptr);
  }
  return {&encoder, best, best == AV_PIX_FMT_NONE ? 0 : av_get_pix_fmt_loss(best, source, alpha)};
}

/// The encoder of a codec that loses least of the pixels; none if FFmpeg has none.
std::optional<Candidate> encoderFor(AVCodecID codec, AVPixelFormat source) {
  std::optional<Candidate> best;
  const auto consider = [&](const AVCodec* encoder) {
    if (encoder == nullptr || (encoder->capabilities & AV_CODEC_CAP_EXPERIMENTAL) != 0)
      return;
    const Candidate each = candidateOf(*encoder, source);
    if (each.pixelFormat != AV_PIX_FMT_NONE && (!best || each.loss < best->loss))
      best = each;
  };
  for (const char* const name : encoderNames(codec))
    consider(avcodec_find_encoder_by_name(name));
  if (!best)
    consider(avcodec_find_encoder(codec));
  return best;
}

EncoderTask taskOf(const Candidate& candidate, const SourceVideo& source,
                   const AVOutputFormat& format) {
  return {source, *candidate.encoder, candidate.pixelFormat, candidate.encoder->id == source.codec,
          format};
}

CodecChoice choiceOf(const Candidate& candidate, const SourceVideo& source,
                     const AVOutputFormat& format, const CodecRequest& request) {
  return {candidate.encoder, candidate.pixelFormat, codecOptions(taskOf(candidate, source, format)),
          request.option};
}

/// Without a request, chooseCodec keeps every bit, or the most that this kind of file holds.
CodecChoice nearLossless(const SourceVideo& source, const AVOutputFormat& format,
                         const CodecRequest& request) {
  return chooseCodec({request.option, {}}, source.pixelFormat, format);
}

CodecChoice losslessDelivery(const SourceVideo& source, const AVOutputFormat& format,
                             const CodecRequest& request) {
  CodecChoice choice = nearLossless(source, format, request);
  if (!losesNothing(source.pixelFormat, choice.pixelFormat))
    throw Failure(ExitCode::kUsage, "this kind of file keeps no such frames without loss",
                  std::string(format.name) + ", " + av_get_pix_fmt_name(source.pixelFormat),
                  "write .nut, or leave out --lossless");
  return choice;
}

CodecChoice viewingCopy(const AVOutputFormat& format, const CodecRequest& request) {
  const AVCodec* const encoder = avcodec_find_encoder_by_name("libx264");
  if (encoder == nullptr || !carries(format, AV_CODEC_ID_H264))
    throw Failure(ExitCode::kUsage, "this kind of file holds no viewing copy", format.name,
                  "write .mp4");
  CodecChoice choice = {encoder, AV_PIX_FMT_YUV420P, viewingOptions(), request.option};
  choice.evenSize = true;
  return choice;
}

/// Raw frames that only NUT can tell apart are brought to the nearest layout.
CodecChoice askedDelivery(const CodecRequest& request, const SourceVideo& source,
                          const AVOutputFormat& format) {
  const bool isRaw = request.asked->starts_with("rawvideo") && containerOf(format.name) != kNUT;
  return chooseCodec(request, isRaw ? drawnFormat(source.pixelFormat) : source.pixelFormat, format);
}

/// The usual codec of the kind of file that loses least.
CodecChoice usualDelivery(const SourceVideo& source, const AVOutputFormat& format,
                          const CodecRequest& request) {
  std::optional<Candidate> best;
  for (const AVCodecID codec : usualCodecs(format)) {
    const auto each = encoderFor(codec, source.pixelFormat);
    if (each && (!best || each->loss < best->loss) && takesSuch(taskOf(*each, source, format)))
      best = each;
  }
  if (!best)
    throw Failure(ExitCode::kUsage, "FFmpeg has no encoder for this kind of file", format.name,
                  "choose one with " + request.option + ", or write .mov, .mkv or .mp4");
  return choiceOf(*best, source, format, request);
}

/// For video whose own codec can't be had.
CodecChoice otherDelivery(bool hasEncoder, const SourceVideo& source, const AVOutputFormat& format,
                          const CodecRequest& request) {
  CodecChoice choice = !hasEncoder && losslessEncoding(source.pixelFormat, format)
                           ? nearLossless(source, format, request)
                           : usualDelivery(source, format, request);
  const bool isRaw = source.codec == AV_CODEC_ID_RAWVIDEO;
  const std::string name = isRaw ? "uncompressed video" : avcodec_get_name(source.codec);
  choice.note = std::string("the video becomes ") + avcodec_get_name(choice.codec->id) + ": " +
                (hasEncoder ? std::string(format.name) + " files hold no " + name
                            : "FFmpeg has no encoder for " + name);
  return choice;
}

CodecChoice ownDelivery(const SourceVideo& source, const AVOutputFormat& format,
                        const CodecRequest& request) {
  const bool isRaw = source.codec == AV_CODEC_ID_RAWVIDEO;
  if (isAlwaysEncoded(format) || keepsAnyRaw(format))
    return nearLossless(source, format, request);
  if (isRaw && losslessEncoding(source.pixelFormat, format))
    return nearLossless(source, format, request);
  const auto own = encoderFor(source.codec, source.pixelFormat);
  return own && !isRaw && carries(format, source.codec)
             ? choiceOf(*own, source, format, request)
             : otherDelivery(own.has_value(), source, format, request);
}

/// Whether chooseCodec finds a lossless encoding.
bool hasLossless(AVPixelFormat drawn, const AVOutputFormat& format) {
  return streamCodec(drawn, format, {}) || losslessEncoding(drawn, format) ||
         losslessEncoding(drawnFormat(drawn), format);
}

/// The profile that the options name by its number.
std::string profileText(const CodecChoice& choice) {
  Options options;
  readOptions(choice, options);
  const AVDictionaryEntry* const entry = av_dict_get(*options.get(), "profile", nullptr, 0);
  if (entry == nullptr || entry->value[0] < '0' || entry->value[0] > '9')
    return {};
  const char* const name = avcodec_profile_name(choice.codec->id, std::atoi(entry->value));
  return name != nullptr ? name : "";
}

/// What the other streams leave of the file's bit rate; 0 if that is unknown.
std::int64_t shareOfTheFile(MediaInput& input) {
  std::int64_t rate = input.file().bit_rate;
  for (unsigned i = 0; i < input.file().nb_streams; ++i)
    rate -= input.file().streams[i]->codecpar->bit_rate;
  return std::max<std::int64_t>(rate, 0);
}

}  // namespace

SourceVideo sourceVideo(MediaInput& input, const FrameKind& frames, AVPixelFormat drawn) {
  const AVCodecParameters& codec = *input.video().codecpar;
  SourceVideo source;
  source.codec = codec.codec_id;
  source.profile = codec.profile;
  source.pixelFormat = drawn;
  source.bitRate = codec.bit_rate > 0 ? codec.bit_rate : shareOfTheFile(input);
  source.reorders = codec.video_delay > 0;
  source.tag = codec.codec_tag;
  if (codec.codec_id == AV_CODEC_ID_MPEG2VIDEO || codec.codec_id == AV_CODEC_ID_H264)
    source.intra = lookForIntra(input);
  source.frames = frames;
  return source;
}

CodecChoice chooseDelivery(const OutputRequest& request, const SourceVideo& source,
                           const AVOutputFormat& format) {
  if (request.codec.asked)
    return askedDelivery(request.codec, source, format);
  if (request.viewingCopy)
    return viewingCopy(format, request.codec);
  return request.lossless ? losslessDelivery(source, format, request.codec)
                          : ownDelivery(source, format, request.codec);
}

CodecChoice chooseJoined(const CodecRequest& request, const SourceVideo& source,
                         const AVOutputFormat& format) {
  if (request.asked || isAlwaysEncoded(format) || hasLossless(source.pixelFormat, format))
    return chooseCodec(request, source.pixelFormat, format);
  CodecChoice choice = usualDelivery(source, format, request);
  choice.note = std::string("the video becomes ") + avcodec_get_name(choice.codec->id) + ": " +
                format.name + " files hold no lossless video";
  return choice;
}

std::vector<std::string> muxerOptions(const OutputRequest& request, const AVOutputFormat& format) {
  std::vector<std::string> options;
  if (request.viewingCopy && isQuickTimeFamily(format) && !isPipedOutput(request.path))
    options.emplace_back("movflags=+faststart");
  options.insert(options.end(), request.containerOptions.begin(), request.containerOptions.end());
  return options;
}

std::string deliveryText(const CodecChoice& choice, const AVOutputFormat& format) {
  std::string text = codecText(choice);
  for (const std::string& part :
       {profileText(choice), choice.options, tagText(choice.codec->id, format)})
    text += part.empty() ? "" : ", " + part;
  return text;
}

}  // namespace nkdraw::media
