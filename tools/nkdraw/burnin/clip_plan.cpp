// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_plan.h"

#include "burnin/layer_sources.h"
#include "burnin/range_check.h"
#include "burnin/sequence_burnin.h"
#include "media/canvas_lines.h"
#include "media/clip_facts.h"
#include "media/failure.h"
#include "media/first_look.h"
#include "media/frame_converter.h"
#include "media/image_sequence.h"
#include "media/picture_kind.h"
#include "media/range_signal.h"
#include "media/stream_codec.h"
#include "media/stream_facts.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace nkdraw::tool {
namespace {

TimeWindow windowOf(MediaInput& input, const Job& job) {
  constexpr AVRational kMicroseconds = {1, AV_TIME_BASE};
  AVStream& video = input.video();
  const std::int64_t fileStart =
      input.file().start_time != AV_NOPTS_VALUE ? input.file().start_time : 0;
  const std::int64_t videoStart =
      video.start_time != AV_NOPTS_VALUE
          ? av_rescale_q(video.start_time, video.time_base, kMicroseconds)
          : fileStart;
  if (job.range.isWhole())
    return {.shift = fileStart, .video = videoStart};
  const AVRational frameTime = av_inv_q(job.frames.rate);
  const std::int64_t first = videoStart + av_rescale_q(job.range.first, frameTime, kMicroseconds);
  const std::int64_t end = videoStart + av_rescale_q(job.range.last + 1, frameTime, kMicroseconds);
  return {.shift = first, .video = first, .first = first, .end = end};
}

const AVOutputFormat& outputFormat(const BurninOptions& options) {
  return writesSequence(options) ? sequenceFormat() : formatFor(options.output, options.format);
}

CodecChoice chooseCodec(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  const AVPixelFormat drawn = plan.picture.drawn;
  return writesSequence(options)
             ? sequenceCodec(options.delivery.codec, drawn, options.output)
             : chooseDelivery(options.delivery, sourceVideo(input, plan.job.frames, drawn),
                              *plan.format);
}

std::vector<StreamPlan> videoAlone(MediaInput& input) {
  const StreamPlan none = {
      StreamAction::kLeaveOut, "this kind of output holds one video alone", {}};
  std::vector<StreamPlan> streams(input.file().nb_streams, none);
  streams[static_cast<std::size_t>(input.video().index)] = {StreamAction::kBurn, {}, {}};
  return streams;
}

void planOutput(ClipPlan& plan, MediaInput& input, const BurninOptions& options) {
  const Job& job = plan.job;
  const bool counts = countsAllFrames(job.timecode, job.frames.rate);
  if (!counts)
    plan.timecodeTag = "";
  else if (job.timecode.known)
    plan.timecodeTag = timecodeText(job.timecode, job.range.first);
  if (!job.inPlace)
    plan.codec = chooseCodec(input, plan, options);
  plan.streams = holdsVideoAlone(*plan.format) ? videoAlone(input)
                                               : planStreams(input, *plan.format, options.streams);
  for (StreamPlan& stream : plan.streams) {
    if (!counts && stream.action == StreamAction::kTimecode)
      stream = {StreamAction::kLeaveOut, "files count timecode otherwise at this frame rate", {}};
  }
}

/// Whether the output holds frames as they are stored; a still is made from them.
bool staysInPlace(MediaInput& input, const Layout& layout, const AVOutputFormat* format,
                  const BurninOptions& options) {
  if (format == nullptr)
    return true;
  return options.delivery.leavesVideo() && !isAlwaysEncoded(*format) &&
         (isSameKind(*input.file().iformat, *format) || keeps(*format, layout));
}

/// What becomes of a range that the output can't tell.
void noteRange(ClipPlan& plan, MediaInput& input) {
  const Frame example = exampleOf(input, plan.picture.drawn);
  if (plan.first != nullptr)
    completeFrom(*plan.first, input.video(), *example);
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(plan.picture.drawn);
  const bool isYUV = (facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 && facts.nb_components >= 3;
  if (!isYUV || !usesFullRange(*example))
    return;
  const FullRange fate = fullRangeIn(*plan.codec->codec, *plan.format);
  if (fate == FullRange::kUntold)
    plan.notes.emplace_back("the full range is kept, but this kind of file does not tell players");
  if (fate == FullRange::kGivenUp)
    plan.notes.emplace_back("the full range becomes studio range: the output could not tell it");
}

FrameKind shownFrames(const Job& job) {
  FrameKind shown = job.frames;
  if (job.orientation.turned)
    std::swap(shown.width, shown.height);
  return shown;
}

}  // namespace

std::optional<TimecodeStart> recordTimecode(const BurninOptions& options, AVRational rate) {
  if (!options.recordTimecode)
    return std::nullopt;
  return timecodeFromText(*options.recordTimecode, rate, kRecordOption);
}

ClipPlan planClip(MediaInput& input, const BurninOptions& options) {
  ClipPlan plan;
  Job& job = plan.job;
  const Layout* const own = ownLayout(input);
  job.orientation = orientationOf(input.video());
  if (!options.still)
    plan.format = &outputFormat(options);
  job.inPlace = own != nullptr && job.orientation.isUpright() &&
                staysInPlace(input, *own, plan.format, options);
  if (!job.inPlace)
    plan.picture = formatsFor(decodedFormat(input));
  job.layout = job.inPlace ? own : &layoutOf(canvasKindFor(plan.picture.drawn).type);
  job.frames = framesOf(input, own);
  if (!job.inPlace) {
    plan.first = firstLook(input);
    job.frames.interlaced = isInterlaced(input.video(), plan.first.get());
  }
  job.frames.pairs = isYCbCr(job.layout->type);
  job.shown = shownFrames(job);
  job.timecode = options.startTimecode
                     ? timecodeFromText(*options.startTimecode, job.frames.rate, kStartOption)
                     : timecodeOf(input, job.frames.rate);
  job.range = options.range;
  job.libraryAlpha = options.libraryAlpha;
  checkRange(input, job.range);
  job.plan = planOverlay(options.overlay, job.shown, job.timecode,
                         recordTimecode(options, job.frames.rate));
  job.captions = captionsFor(job);
  job.sound = job.plan.request.meters ? soundOf(input) : nullptr;
  plan.window = windowOf(input, job);
  if (!options.still)
    planOutput(plan, input, options);
  plan.notes = formatNotes(plan.picture, plan.codec);
  std::ranges::copy(sequenceNotes(input), std::back_inserter(plan.notes));
  if (plan.codec && !writesSequence(options))
    noteRange(plan, input);
  if (plan.codec && !plan.codec->note.empty())
    plan.notes.push_back(plan.codec->note);
  if (plan.format != nullptr && !job.orientation.isUpright() && !tellsOrientation(*plan.format))
    plan.notes.emplace_back("this kind of file does not tell players how the picture is turned");
  return plan;
}

std::string rangeText(FrameRange range) {
  if (range.isWhole())
    return "all";
  return std::to_string(range.first) + (range.isBounded() && range.last != range.first
                                            ? " to " + std::to_string(range.last)
                                            : "");
}

void reportStreams(MediaInput& input, const ClipPlan& plan) {
  for (std::size_t i = 0; i < plan.streams.size(); ++i) {
    const StreamAction action = plan.streams[i].action;
    if (action == StreamAction::kConvert || action == StreamAction::kLeaveOut)
      std::fprintf(stderr, "nkdraw: note: stream %zu (%s) is %s\n", i,
                   describeStream(*input.file().streams[i]).c_str(),
                   planText(plan.streams[i]).c_str());
  }
}

}  // namespace nkdraw::tool
