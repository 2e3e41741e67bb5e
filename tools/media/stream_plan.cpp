// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_plan.h"

#include "media/audio_shape.h"
#include "media/chapters.h"
#include "media/container_streams.h"
#include "media/failure.h"
#include "media/kept_timecode.h"
#include "media/stream_facts.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr std::uint32_t kTimecodeTag = MKTAG('t', 'm', 'c', 'd');
constexpr std::uint32_t kTextTag = MKTAG('t', 'e', 'x', 't');
constexpr char kNoAudio[] = "--no-audio", kNoSubtitles[] = "--no-subtitles",
               kNoData[] = "--no-data";

/// One stream, and everything that decides about it.
struct Case {
  const AVStream& stream;
  MediaInput& input;
  const AVOutputFormat& format;
  const StreamRequest& request;

  [[nodiscard]] const AVCodecParameters& codec() const { return *stream.codecpar; }
  [[nodiscard]] std::string notKept() const {
    return std::string(format.name) + " files do not keep " + avcodec_get_name(codec().codec_id);
  }
};

StreamPlan leftOut(const char* option) {
  return {StreamAction::kLeaveOut, option};
}
StreamPlan copied() {
  return {StreamAction::kCopy, {}};
}
StreamPlan converted(const Case& each, const AVCodec& codec) {
  return {StreamAction::kConvert, each.notKept(), {&codec, AV_PIX_FMT_NONE, {}, {}}};
}

[[noreturn]] void refuse(const Case& each, const std::string& advice) {
  throw Failure(
      ExitCode::kUsage, "the output's kind of file does not hold a stream",
      "stream " + std::to_string(each.stream.index) + " (" + describeStream(each.stream) + ")",
      advice);
}

/// The file formats that hold the codec.
std::string keepingKinds(AVCodecID codec) {
  struct Kind {
    const char *format, *suffix;
  };
  std::string kinds;
  for (const auto& [name, suffix] :
       {Kind{"mov", ".mov"}, Kind{"matroska", ".mkv"}, Kind{"nut", ".nut"}, Kind{"avi", ".avi"},
        Kind{"mpegts", ".ts"}}) {
    const AVOutputFormat* const format = av_guess_format(name, nullptr, nullptr);
    if (format != nullptr && keepsCodec(*format, codec))
      kinds += (kinds.empty() ? "write " : " or ") + std::string(suffix);
  }
  return kinds.empty() ? kinds : kinds + ", or ";
}

void checkIsSound(const Case& each) {
  if (each.codec().sample_rate <= 0)
    throw Failure(ExitCode::kInput, "no sound was found in a stream", each.input.path(),
                  "stream " + std::to_string(each.stream.index) + " (" +
                      describeStream(each.stream) +
                      "); the input may be incomplete, or leave it out with " + kNoAudio);
}

/// Says what is lost of the samples. Throws Failure if the encoder does not take the channels.
StreamPlan encoded(const Case& each, StreamPlan plan) {
  static_cast<void>(shapeFor(each.codec(), *plan.codec.codec, each.format));
  if (const int bits = fewerBits(*plan.codec.codec, each.codec()); bits > 0)
    plan.reason += ", which leaves " + std::to_string(bits) + " bits";
  return plan;
}

StreamPlan planSound(const Case& each) {
  const CodecRequest& audio = each.request.audio;
  if (each.request.noAudio)
    return leftOut(kNoAudio);
  checkIsSound(each);
  const bool staysAAC = each.request.keepAAC && each.codec().codec_id == AV_CODEC_ID_AAC &&
                        keepsStream(each.format, each.codec());
  if (audio.asked && *audio.asked != "copy" && !staysAAC)
    return encoded(each, {StreamAction::kConvert, audio.option,
                          namedEncoder(audio, AVMEDIA_TYPE_AUDIO, each.format)});
  if (keepsStream(each.format, each.codec()))
    return copied();
  const AVCodec* const usual = usualSoundEncoder(each.format, each.codec());
  if (audio.asked || usual == nullptr || avcodec_find_decoder(each.codec().codec_id) == nullptr)
    refuse(each, keepingKinds(each.codec().codec_id) + "choose another " + audio.option +
                     ", or leave it out with " + kNoAudio);
  StreamPlan plan = converted(each, *usual);
  plan.codec.option = audio.option;
  return encoded(each, plan);
}

bool isText(AVCodecID codec) {
  const AVCodecDescriptor* const facts = avcodec_descriptor_get(codec);
  return facts != nullptr && (facts->props & AV_CODEC_PROP_TEXT_SUB) != 0 &&
         avcodec_find_decoder(codec) != nullptr;
}

StreamPlan planSubtitles(const Case& each) {
  if (each.request.noSubtitles)
    return leftOut(kNoSubtitles);
  if (keepsCodec(each.format, each.codec().codec_id))
    return copied();
  const AVCodec* const text = usualTextEncoder(each.format);
  if (text == nullptr || !isText(each.codec().codec_id))
    refuse(each, keepingKinds(each.codec().codec_id) + "leave it out with " + kNoSubtitles);
  return converted(each, *text);
}

/// MP4 and related formats; FFmpeg's QuickTime muxer accepts cover pictures and drops them.
bool keepsCovers(const AVOutputFormat& format) {
  const std::string_view name = format.name;
  return name == "mp4" || name == "ipod";
}

StreamPlan planCover(const Case& each) {
  if (each.request.noData)
    return leftOut(kNoData);
  if (!keepsCovers(each.format))
    refuse(each, std::string("a cover picture: write .mp4, or leave it out with ") + kNoData);
  return copied();
}

StreamPlan planVideo(const Case& each) {
  if ((each.stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
    return planCover(each);
  if (!keepsCodec(each.format, each.codec().codec_id))
    refuse(each, keepingKinds(each.codec().codec_id) + "take the stream out of the input first");
  return copied();
}

/// QuickTime stores the names of chapters in a stream.
bool isOfChapters(const Case& each) {
  return each.codec().codec_tag == kTextTag && each.codec().codec_id == AV_CODEC_ID_BIN_DATA &&
         each.input.file().nb_chapters > 0;
}

StreamPlan planData(const Case& each) {
  const AVCodecParameters& codec = each.codec();
  if (codec.codec_tag == kTimecodeTag &&
      (holdsTimecode(each.format) || each.request.timecodeInVideo))
    return {StreamAction::kTimecode, {}};
  if (codec.codec_tag == kTimecodeTag)
    return {StreamAction::kLeaveOut, std::string(each.format.name) + " files hold no timecode"};
  if (isOfChapters(each))
    return {StreamAction::kChapters,
            holdsChapters(each.format) ? "" : "left out with the chapters"};
  if (each.request.noData)
    return leftOut(kNoData);
  const bool fits = isSameKind(*each.input.file().iformat, each.format) &&
                    codec.codec_id != AV_CODEC_ID_NONE &&
                    avformat_query_codec(&each.format, codec.codec_id, FF_COMPLIANCE_NORMAL) != 0;
  if (!fits)
    refuse(each, std::string("leave it out with ") + kNoData);
  return copied();
}

StreamPlan planAttachment(const Case& each) {
  if (each.request.noData)
    return leftOut(kNoData);
  if (!isSameKind(*each.input.file().iformat, each.format))
    refuse(each, std::string("leave it out with ") + kNoData);
  return copied();
}

struct Kind {
  AVMediaType type;
  StreamPlan (*plan)(const Case&);
};
constexpr Kind kKinds[] = {{AVMEDIA_TYPE_AUDIO, planSound},
                           {AVMEDIA_TYPE_SUBTITLE, planSubtitles},
                           {AVMEDIA_TYPE_VIDEO, planVideo},
                           {AVMEDIA_TYPE_ATTACHMENT, planAttachment}};

StreamPlan planOf(const Case& each) {
  if (&each.stream == &each.input.video())
    return {StreamAction::kBurn, {}};
  const auto* const kind = std::ranges::find(kKinds, each.codec().codec_type, &Kind::type);
  return kind != std::end(kKinds) ? kind->plan(each) : planData(each);
}

}  // namespace

std::vector<StreamPlan> planStreams(MediaInput& input, const AVOutputFormat& format,
                                    const StreamRequest& request) {
  std::vector<StreamPlan> plans;
  for (unsigned i = 0; i < input.file().nb_streams; ++i)
    plans.push_back(planOf({*input.file().streams[i], input, format, request}));
  return plans;
}

std::string planText(const StreamPlan& plan) {
  switch (plan.action) {
    case StreamAction::kBurn:
      return "drawn on";
    case StreamAction::kCopy:
      return "copied";
    case StreamAction::kConvert:
      return std::string("converted to ") + avcodec_get_name(plan.codec.codec->id) + ": " +
             plan.reason;
    case StreamAction::kChapters:
      return plan.reason.empty() ? "kept as chapters" : plan.reason;
    case StreamAction::kTimecode:
      return "kept as the video's timecode";
    case StreamAction::kLeaveOut:
      break;
  }
  return "left out: " + plan.reason;
}

}  // namespace nkdraw::media
