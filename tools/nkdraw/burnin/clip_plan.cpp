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
#include "media/stream_facts.h"
#include "media/time_window.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace nkdraw::tool {
namespace {

/// Without frames at the beginning that can't be decoded, so that timecode tracks, which begin with
/// the file, agree with the picture.
TimeWindow windowOf(MediaInput& input, const Job& job) {
  const VideoStart& start = input.start();
  const std::int64_t told = input.file().start_time;
  const std::int64_t videoStart =
      start.shown != AV_NOPTS_VALUE
          ? av_rescale_q(start.shown, input.video().time_base, kMicroseconds)
          : (told != AV_NOPTS_VALUE ? told : 0);
  if (job.range.isWhole() && start.undecodable == 0)
    return {.shift = told != AV_NOPTS_VALUE ? std::min(told, videoStart) : videoStart,
            .video = videoStart};
  const AVRational frameTime = av_inv_q(job.frames.rate);
  const auto timeOf = [&](std::int64_t frame) {
    return videoStart + av_rescale_q(std::min(frame, kMostFrames), frameTime, kMicroseconds);
  };
  const std::int64_t first = timeOf(job.range.first), end = timeOf(job.range.end());
  return {.shift = first, .video = first, .first = first, .end = end};
}

FrameKind shownFrames(const Job& job) {
  FrameKind shown = job.frames;
  if (job.orientation.turned)
    std::swap(shown.width, shown.height);
  return shown;
}

/// How the frames are stored and drawn on.
void planPicture(ClipPlan& plan, MediaInput& input, const Layout* own) {
  Job& job = plan.job;
  job.orientation = orientationOf(input.video());
  job.inPlace = std::ranges::any_of(plan.outputs, &OutputPlan::inPlace);
  const bool encodes = !std::ranges::all_of(plan.outputs, &OutputPlan::inPlace);
  if (encodes)
    plan.picture = formatsFor(decodedFormat(input));
  job.layout = job.inPlace ? own : &layoutOf(canvasKindFor(plan.picture.drawn).type);
  job.frames = framesOf(input, own);
  if (encodes) {
    plan.first = firstLook(input);
    job.frames.interlaced = isInterlaced(input.video(), plan.first.get());
  }
  job.frames.pairs = isYCbCr(job.layout->type);
  job.shown = shownFrames(job);
}

/// What is burnt into which frames.
void planBurn(Job& job, MediaInput& input, const BurninOptions& options) {
  job.timecode = options.startTimecode
                     ? timecodeFromText(*options.startTimecode, job.frames.rate, kStartOption)
                     : timecodeOf(input, job.frames.rate);
  job.range = options.range;
  job.damage = &input.damage();
  job.libraryAlpha = options.libraryAlpha;
  checkRange(input, job.range);
  job.plan = planOverlay(options.overlay, job.shown, job.timecode,
                         recordTimecode(options, job.frames.rate));
  job.captions = captionsFor(job);
  job.sound = job.plan.request.meters ? soundOf(input) : nullptr;
}

void gatherNotes(ClipPlan& plan, MediaInput& input) {
  plan.notes = sequenceNotes(input);
  if (const std::int64_t count = input.start().undecodable; count > 0)
    plan.notes.push_back("the first " + (count == 1 ? "frame" : std::to_string(count) + " frames") +
                         " can't be decoded without what came before; numbers, timecode and sound "
                         "begin with the frame after");
  for (const OutputPlan& output : plan.outputs) {
    for (const std::string& note : output.notes)
      plan.notes.push_back(prefixOf(plan, output) + note);
  }
}

}  // namespace

std::optional<TimecodeStart> recordTimecode(const BurninOptions& options, AVRational rate) {
  if (!options.recordTimecode)
    return std::nullopt;
  return timecodeFromText(*options.recordTimecode, rate, kRecordOption);
}

std::string prefixOf(const ClipPlan& plan, const OutputPlan& output) {
  return plan.outputs.size() > 1 ? output.request.path + ": " : "";
}

ClipPlan planClip(MediaInput& input, const BurninOptions& options) {
  ClipPlan plan;
  const Layout* const own = ownLayout(input);
  plan.outputs = beginOutputs(input, own, options);
  planPicture(plan, input, own);
  planBurn(plan.job, input, options);
  plan.window = windowOf(input, plan.job);
  if (!countsAllFrames(plan.job.timecode, plan.job.frames.rate))
    plan.timecodeTag = "";
  else if (plan.job.timecode.known)
    plan.timecodeTag = timecodeText(plan.job.timecode, plan.job.range.first);
  for (OutputPlan& output : plan.outputs) {
    if (output.format != nullptr)
      planOutput(output, plan, input);
  }
  gatherNotes(plan, input);
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
  for (const OutputPlan& output : plan.outputs) {
    for (std::size_t i = 0; i < output.streams.size(); ++i) {
      const StreamPlan& stream = output.streams[i];
      if (stream.action == StreamAction::kConvert || stream.action == StreamAction::kLeaveOut)
        std::fprintf(stderr, "nkdraw: note: %sstream %zu (%s) is %s\n",
                     prefixOf(plan, output).c_str(), i,
                     describeStream(*input.file().streams[i]).c_str(), planText(stream).c_str());
    }
  }
}

}  // namespace nkdraw::tool
