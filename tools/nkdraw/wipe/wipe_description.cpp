// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/wipe_description.h"

#include "cli/media_pieces.h"
#include "cli/option_values.h"
#include "media/clip_facts.h"
#include "media/stream_facts.h"
#include "wipe/left_out.h"
#include "wipe/wipe_names.h"

#include <nkdraw/constants.h>

#include <optional>
#include <string>

namespace nkdraw::tool {
namespace {

constexpr char kOutput[] = "/outputs/0";

void describeTransition(Description& to, ClipPair& clips, const WipePlan& plan) {
  const std::uint32_t number = plan.word & NKWipeLastNumber;
  const bool swapped = (plan.word & NKWipeSwap) != 0, isClassic = plan.way == WipeWay::kClassic;
  to.add("wipe", "/wipe",
         {{"name", wipeText(number)},
          {"number", number, ""},
          {"swapped", swapped, swapped ? ", inputs swapped" : ""},
          {"backwards", plan.backwards, plan.backwards ? ", backwards" : ""},
          {"classic", isClassic, isClassic ? ", classic" : ""}});
  to.add("from", "/transition",
         {{"first", plan.at, frameText(plan.at, clips.frames.rate)},
          ", for ",
          {"frames", plan.duration},
          " frames"});
}

/// There is no line if the file doesn't tell how long it is.
void describeLength(Description& to, ClipPair& clips, const WipePlan& plan) {
  const FrameCount b = countOf(clips.b);
  const bool known = b.frames > 0;
  const std::int64_t frames = plan.at + b.frames;
  to.add(known ? "written" : "", "/written",
         {{"first", 0, ""},
          {"last", known ? Json(frames - 1) : Json(nullptr), ""},
          {"exact", known && b.exact, b.exact ? "" : "about "},
          std::to_string(frames) + " frames"});
}

void describeTrack(Description& to, const AudioTrackPlan& track, AudioMode mode) {
  const auto piece = [](const char* key, std::optional<int> stream) {
    return Piece(key, stream ? Json(*stream) : Json(nullptr),
                 stream ? "stream " + std::to_string(*stream) : "silence");
  };
  const bool isCut = mode == AudioMode::kCut;
  to.add("sound", "/sound/-",
         {piece("a", track.a),
          {"mode", isCut ? "cut" : "crossfade", isCut ? ", cut to " : ", faded into "},
          piece("b", track.b),
          ": ",
          {"encoder", track.codec.codec->name}});
}

void describeLeftOut(Description& to, MediaInput& clip, const WipePlan& plan) {
  for (const AVStream* const stream : leftOutOf(clip, plan)) {
    const std::string text = describeStream(*stream);
    to.add("left out", "/left_out/-",
           {"stream ",
            {"index", stream->index},
            " of ",
            {"path", clip.path()},
            {"description", text, " (" + text + ")"}});
  }
}

void describeFrames(Description& to, ClipPair& clips, const WipePlan& plan) {
  for (MediaInput* const clip : {&clips.a, &clips.b})
    to.add("input", "/inputs/-",
           {{"path", clip->path()}, ": ", formatPiece(*clip), ", ", codecPiece(*clip)});
  const bool inPlace = plan.isInPlace();
  to.add("method", "",
         {{"method", inPlace ? "in-place" : "transcode",
           inPlace ? "in place: frames outside the transition are copied"
                   : "transcode: frames are decoded, wiped and encoded"}});
  to.add("frames", "/frames",
         {{"width", clips.frames.width},
          "x",
          {"height", clips.frames.height},
          ", ",
          ratePiece(clips.frames.rate)});
  describeLayout(to, *plan.layout);
}

}  // namespace

void describe(Description& to, ClipPair& clips, const WipePlan& plan, const WipeOptions& options) {
  describeFrames(to, clips, plan);
  describeTransition(to, clips, plan);
  describeLength(to, clips, plan);
  to.addList("/sound");
  for (const AudioTrackPlan& track : plan.audio)
    describeTrack(to, track, options.audio.mode);
  to.addList("/left_out");
  for (MediaInput* const clip : {&clips.a, &clips.b})
    describeLeftOut(to, *clip, plan);
  to.add("codec", kOutput,
         {encoderPiece(plan.codec ? &*plan.codec : nullptr,
                       plan.codec ? codecText(*plan.codec) : "unchanged")});
  to.add("output", kOutput, {{"path", options.output}, ": ", {"format", plan.format->name}});
  to.addList("/notes");
  for (const std::string& note : {plan.note, plan.codec ? plan.codec->note : std::string()}) {
    if (!note.empty())
      to.addText("note", "/notes/-", note);
  }
}

}  // namespace nkdraw::tool
