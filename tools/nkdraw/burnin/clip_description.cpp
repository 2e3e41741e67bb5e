// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_description.h"

#include "cli/media_pieces.h"
#include "media/delivery.h"
#include "media/stream_facts.h"

#include <string>

namespace nkdraw::tool {
namespace {

/// By the StreamAction.
constexpr const char* kActions[] = {"burn", "copy", "convert", "chapters", "timecode", "leave-out"};

void describeInput(Description& to, MediaInput& input) {
  const std::int64_t frames = input.video().nb_frames;  // 0 if the file doesn't tell
  to.add("input", "/input",
         {{"path", input.path()},
          ": ",
          formatPiece(input),
          ", ",
          codecPiece(input),
          {"frames", orNull(frames), frames > 0 ? ", " + std::to_string(frames) + " frames" : ""}});
}

void describeMethod(Description& to, const ClipPlan& plan) {
  if (plan.job.inPlace) {
    to.add("method", "", {{"method", "in-place", "in place: the file's own frames are drawn on"}});
    to.add("", "", {{"picture", nullptr}});
    return;
  }
  to.add("method", "",
         {{"method", "transcode", "transcode: frames are decoded, drawn on and encoded"}});
  to.add("picture", "",
         {{"picture",
           {{"decoded", av_get_pix_fmt_name(plan.picture.decoded)},
            {"drawn", av_get_pix_fmt_name(plan.picture.drawn)}},
           pictureText(plan.picture)}});
}

void describeFrames(Description& to, const Job& job) {
  const bool upright = job.orientation.isUpright();
  to.add("frames", "/frames",
         {{"width", job.shown.width},
          "x",
          {"height", job.shown.height},
          {"turned", !upright, upright ? "" : " when shown upright"},
          ", ",
          ratePiece(job.frames.rate),
          ", ",
          {"interlaced", job.frames.interlaced,
           job.frames.interlaced ? "interlaced" : "progressive"}});
  if (job.inPlace)
    describeLayout(to, *job.layout);
  else
    to.add("", "", {{"layout", nullptr}});
}

void describeTimecode(Description& to, const Job& job) {
  const bool counts = countsAllFrames(job.timecode, job.frames.rate);
  to.add("timecode", "/timecode",
         {{"start", timecodeText(job.timecode, 0)},
          ", ",
          {"origin", job.timecode.origin},
          {"stored", counts,
           counts ? "" : "; not written to the file, which would count otherwise at this rate"}});
}

std::string corners(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  return std::to_string(left) + "," + std::to_string(top) + " to " + std::to_string(right - 1) +
         "," + std::to_string(bottom - 1);
}

void describeBox(Description& to, const TextBox& box) {
  to.add("burn in", "/boxes/-",
         {{"what", box.what},
          {"text", box.text, " \"" + box.text + "\": "},
          {"x", box.at.x, corners(box.at.x, box.at.y, box.right(), box.bottom())},
          {"y", box.at.y, ""},
          {"width", box.right() - box.at.x, ""},
          {"height", box.bottom() - box.at.y, ""},
          ", magnified ",
          {"magnification", box.magnification}});
}

void describeLayer(Description& to, const LayerBox& layer) {
  to.add("burn in", "/layers/-",
         {{"what", layer.what},
          ", ",
          {"source", layer.source},
          {"x", layer.at.x,
           ": " + corners(layer.at.x, layer.at.y, layer.at.x + layer.size.x,
                          layer.at.y + layer.size.y)},
          {"y", layer.at.y, ""},
          {"width", layer.size.x, ""},
          {"height", layer.size.y, ""}});
}

void describeRange(Description& to, FrameRange range, std::int64_t frames) {
  const Json last = range.isBounded() ? Json(range.last)
                    : frames > 0      ? Json(frames - 1)
                                      : Json(nullptr);
  to.add("written", "/written",
         {{"first", range.first, range.isWhole() ? "all frames" : "frames " + rangeText(range)},
          {"last", last, ""}});
}

/// The video itself needs no line.
void describeStreams(Description& to, MediaInput& input, const OutputPlan& output,
                     const std::string& place) {
  const std::string list = place + "/streams";
  to.addList(list);
  for (std::size_t i = 0; i < output.streams.size(); ++i) {
    const StreamPlan& stream = output.streams[i];
    const bool isVideo = stream.action == StreamAction::kBurn;
    to.add(isVideo ? "" : "stream " + std::to_string(i), list + "/-",
           {{"index", i, ""},
            {"description", describeStream(*input.file().streams[i])},
            ": ",
            {"action", kActions[static_cast<std::size_t>(stream.action)], planText(stream)},
            {"codec",
             stream.codec.codec != nullptr ? Json(avcodec_get_name(stream.codec.codec->id))
                                           : Json(nullptr),
             ""},
            {"why", stream.reason.empty() ? Json(nullptr) : Json(stream.reason), ""}});
  }
}

void describeOutput(Description& to, MediaInput& input, const OutputPlan& output,
                    const std::string& place) {
  const bool still = output.format == nullptr;
  describeStreams(to, input, output, place);
  to.add("codec", place,
         {encoderPiece(output.codec ? &*output.codec : nullptr,
                       still          ? "one picture"
                       : output.codec ? deliveryText(*output.codec, *output.format)
                                      : "unchanged")});
  to.add("output", place,
         {{"path", output.request.path},
          {"format", still ? Json(nullptr) : Json(output.format->name),
           still ? "" : ": " + std::string(output.format->name)}});
}

}  // namespace

void describe(Description& to, const Job& job, std::int64_t frames) {
  describeFrames(to, job);
  describeTimecode(to, job);
  to.addList("/boxes");
  for (const TextBox& box : job.plan.boxes)
    describeBox(to, box);
  to.addList("/layers");
  for (const LayerBox& layer : job.plan.layers)
    describeLayer(to, layer);
  describeRange(to, job.range, frames);
}

void describe(Description& to, MediaInput& input, const ClipPlan& plan) {
  describeInput(to, input);
  describeMethod(to, plan);
  describe(to, plan.job, input.video().nb_frames);
  for (std::size_t i = 0; i < plan.outputs.size(); ++i)
    describeOutput(to, input, plan.outputs[i], "/outputs/" + std::to_string(i));
  to.addList("/notes");
  for (const std::string& note : plan.notes)
    to.addText("note", "/notes/-", note);
}

}  // namespace nkdraw::tool
