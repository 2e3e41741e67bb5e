// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_plan.h"

#include "cli/option_values.h"
#include "media/delivery.h"
#include "media/drawn_format.h"
#include "media/failure.h"
#include "media/gop_timecode.h"
#include "media/media_output.h"
#include "media/packet_rows.h"
#include "media/pipe_name.h"
#include "media/stream_facts.h"
#include "media/timecode_source.h"
#include "wipe/wipe_names.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace nkdraw::tool {
namespace {

constexpr int kShallow = 8;  // bits that the 8-bit layouts hold

const Layout* ownWipeLayout(MediaInput& input) {
  const AVCodecParameters& codec = *input.video().codecpar;
  return wipeLayoutOf(codec.codec_id, static_cast<AVPixelFormat>(codec.format));
}

/// The format that decoded frames are converted to: as in burn-in, except for RGB of more than 8
/// bits.
AVPixelFormat wipedFormat(AVPixelFormat source) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(source);
  if ((facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 || facts.comp[0].depth <= kShallow)
    return drawnFormat(source);
  return (facts.flags & AV_PIX_FMT_FLAG_ALPHA) != 0 ? AV_PIX_FMT_RGBA64LE : AV_PIX_FMT_RGB48LE;
}

/// The first clip's format, or the second's if that holds more of the same kind of colours.
AVPixelFormat commonFormat(AVPixelFormat a, AVPixelFormat b) {
  struct Family {
    std::array<AVPixelFormat, 4> formats;  // each can hold those before it; none ends the list
  };
  constexpr Family kFamilies[] = {
      {{AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P10, AV_PIX_FMT_NONE, AV_PIX_FMT_NONE}},
      {{AV_PIX_FMT_BGR0, AV_PIX_FMT_BGRA, AV_PIX_FMT_RGB48LE, AV_PIX_FMT_RGBA64LE}},
  };
  for (const Family& family : kFamilies) {
    const auto first = std::ranges::find(family.formats, a),
               second = std::ranges::find(family.formats, b);
    if (first != family.formats.end() && second != family.formats.end())
      return *std::max(first, second);
  }
  return a;
}

/// Whether packets of both clips can be in one stream unchanged.
bool isSameStorage(const AVCodecParameters& a, const AVCodecParameters& b) {
  return a.codec_tag == b.codec_tag && a.bits_per_coded_sample == b.bits_per_coded_sample &&
         a.extradata_size == b.extradata_size &&
         (a.extradata_size == 0 ||
          std::memcmp(a.extradata, b.extradata, static_cast<std::size_t>(a.extradata_size)) == 0);
}

void planFrames(WipePlan& plan, ClipPair& clips, const WipeOptions& options) {
  const Layout* const a = ownWipeLayout(clips.a);
  const Layout* const b = ownWipeLayout(clips.b);
  if (a != nullptr && a == b && !options.codec.asked) {
    plan.layout = a;
    plan.sameRows = isSameKind(*clips.a.file().iformat, *plan.format) &&
                    isSameKind(*clips.b.file().iformat, *plan.format) &&
                    isSameStorage(*clips.a.video().codecpar, *clips.b.video().codecpar);
    if (!plan.sameRows)
      checkKeeps(*plan.format, *a, options.codec.option);
    return;
  }
  plan.drawn =
      commonFormat(wipedFormat(decodedFormat(clips.a)), wipedFormat(decodedFormat(clips.b)));
  plan.layout = wipeLayoutOf(
      plan.drawn == AV_PIX_FMT_YUV422P10 ? AV_CODEC_ID_V210 : AV_CODEC_ID_RAWVIDEO, plan.drawn);
  plan.codec =
      chooseJoined(options.codec, sourceVideo(clips.a, clips.frames, plan.drawn), *plan.format);
}

void planTimes(WipePlan& plan, ClipPair& clips, const WipeOptions& options) {
  const AVRational rate = clips.frames.rate;
  plan.at = frameAt(options.at, timecodeOf(clips.a, rate), rate, clips.a.path(), "--at");
  plan.duration = framesIn(options.duration, rate, "--duration");
  if (plan.duration == 0)
    throw Failure(ExitCode::kUsage, "the transition is empty", "--duration " + options.duration,
                  "give one frame or more");
  // The library multiplies sizes by positions in 32 bits.
  const std::int64_t side = std::max(clips.frames.width, clips.frames.height);
  if (side * (plan.duration + 1) > 0xFFFFFFFFLL)
    throw Failure(ExitCode::kUsage, "the transition is too long", "--duration " + options.duration,
                  "give at most " + std::to_string(0xFFFFFFFFLL / side - 1) + " frames");
  const FrameCount a = countOf(clips.a);
  if (a.isBelow(plan.at + 1))
    throw Failure(ExitCode::kUsage, "--at lies beyond the end of the first clip",
                  frameText(plan.at, rate) + ", but " + clips.a.path() + " ends with frame " +
                      std::to_string(a.frames - 1),
                  "choose an earlier time");
  if (a.isBelow(plan.at + plan.duration))
    failTooShort(clips.a, plan.at + plan.duration);
  if (countOf(clips.b).isBelow(plan.duration))
    failTooShort(clips.b, plan.duration);
}

/// Sound is read beside the frames, which takes a file.
void checkSoundCanBeRead(ClipPair& clips, const AudioRequest& request) {
  for (MediaInput* const clip : {&clips.a, &clips.b}) {
    const bool hasSound =
        av_find_best_stream(&clip->file(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0) >= 0;
    if (request.mode != AudioMode::kNone && hasSound && isPipedInput(clip->path()))
      throw Failure(ExitCode::kUsage, "the sound of a pipe can't be joined", clip->path(),
                    "give a file, or " + request.silent);
  }
}

void planTimecode(WipePlan& plan, ClipPair& clips) {
  const AVRational rate = clips.frames.rate;
  const TimecodeStart timecode = timecodeOf(clips.a, rate);
  if (!countsAllFrames(timecode, rate))
    plan.timecodeTag = "";
  else if (timecode.known)
    plan.timecodeTag = timecodeText(timecode, 0);
  plan.timecode = {plan.timecodeTag.value_or(""), rate,
                   plan.codec ? plan.codec->codec->id : plan.layout->codec};
  if (plan.codec)
    writeGOPTimecode(*plan.codec, plan.timecode.text, rate);
  plan.note = foreseenLoss(*plan.format, plan.timecode);
}

}  // namespace

void failTooShort(const MediaInput& clip, std::int64_t needed) {
  throw Failure(ExitCode::kUsage, "a clip is too short for the transition",
                clip.path() + ", which needs " + std::to_string(needed) + " frames",
                "lower --duration or --at");
}

WipePlan planWipe(ClipPair& clips, const WipeOptions& options) {
  WipePlan plan;
  plan.word = options.word;
  plan.backwards = options.backwards;
  plan.way = options.classic ? WipeWay::kClassic : WipeWay::kExact;
  planTimes(plan, clips, options);
  plan.format = &formatFor(options.output, options.format);
  planFrames(plan, clips, options);
  checkSoundCanBeRead(clips, options.audio);
  plan.audio = planAudio(clips, options.audio, *plan.format);
  planTimecode(plan, clips);
  return plan;
}

}  // namespace nkdraw::tool
