// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/output_plan.h"

#include "burnin/clip_plan.h"
#include "burnin/sequence_burnin.h"
#include "media/chapters.h"
#include "media/clip_facts.h"
#include "media/failure.h"
#include "media/first_look.h"
#include "media/format_match.h"
#include "media/frame_converter.h"
#include "media/gop_timecode.h"
#include "media/image_sequence.h"
#include "media/layouts.h"
#include "media/media_output.h"
#include "media/picture_kind.h"
#include "media/range_signal.h"
#include "media/stream_codec.h"
#include "media/stream_facts.h"

namespace nkdraw::tool {
namespace {

/// Whether the output holds frames as they are stored; a still is made from them.
bool staysInPlace(MediaInput& input, const Layout& layout, const OutputPlan& output) {
  if (output.format == nullptr)
    return true;
  return output.request.leavesVideo() && !isAlwaysEncoded(*output.format) &&
         (isSameKind(*input.file().iformat, *output.format) || keeps(*output.format, layout));
}

CodecChoice chooseCodec(MediaInput& input, const ClipPlan& plan, const OutputPlan& output) {
  const OutputRequest& request = output.request;
  const auto [decoded, drawn] = plan.picture;
  if (request.lossless && !losesNothing(decoded, drawn))
    throw Failure(ExitCode::kUsage, "such frames can't be drawn on without loss",
                  av_get_pix_fmt_name(decoded), "leave out --lossless");
  return writesSequence(request)
             ? sequenceCodec(request.codec, drawn, request.path)
             : chooseDelivery(request, sourceVideo(input, plan.job.frames, drawn), *output.format);
}

std::vector<StreamPlan> videoAlone(MediaInput& input) {
  const StreamPlan none = {
      StreamAction::kLeaveOut, "this kind of output holds one video alone", {}};
  std::vector<StreamPlan> streams(input.file().nb_streams, none);
  streams[static_cast<std::size_t>(input.video().index)] = {StreamAction::kBurn, {}, {}};
  return streams;
}

void planTimecode(OutputPlan& output, const ClipPlan& plan, MediaInput& input) {
  output.timecode = {plan.timecodeTag.value_or(""), plan.job.frames.rate,
                     output.codec ? output.codec->codec->id : input.video().codecpar->codec_id};
  if (output.codec)
    output.request.streams.timecodeInVideo =
        writeGOPTimecode(*output.codec, output.timecode.text, output.timecode.rate);
  const std::string lost = writesSequence(output.request)
                               ? lostPictureTimecode(output)
                               : foreseenLoss(*output.format, output.timecode);
  if (!lost.empty())
    output.notes.push_back(lost);
}

void planStreamsOf(OutputPlan& output, const Job& job, MediaInput& input) {
  output.streams = holdsVideoAlone(*output.format)
                       ? videoAlone(input)
                       : planStreams(input, *output.format, output.request.streams);
  if (countsAllFrames(job.timecode, job.frames.rate))
    return;
  for (StreamPlan& stream : output.streams) {
    if (stream.action == StreamAction::kTimecode)
      stream = {StreamAction::kLeaveOut, "files count timecode otherwise at this frame rate", {}};
  }
}

/// What becomes of a range that the output can't tell.
void noteRange(OutputPlan& output, const ClipPlan& plan, MediaInput& input) {
  const Frame example = exampleOf(input, plan.picture.drawn);
  if (plan.first != nullptr)
    completeFrom(*plan.first, input.video(), *example);
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(plan.picture.drawn);
  const bool isYUV = (facts.flags & AV_PIX_FMT_FLAG_RGB) == 0 && facts.nb_components >= 3;
  if (!isYUV || !usesFullRange(*example))
    return;
  const FullRange fate = fullRangeIn(*output.codec->codec, *output.format);
  if (fate == FullRange::kUntold)
    output.notes.emplace_back(
        "the full range is kept, but this kind of file does not tell players");
  if (fate == FullRange::kGivenUp)
    output.notes.emplace_back("the full range becomes studio range: the output could not tell it");
}

}  // namespace

std::vector<OutputPlan> beginOutputs(MediaInput& input, const Layout* own,
                                     const BurninOptions& options) {
  const bool drawable = own != nullptr && orientationOf(input.video()).isUpright();
  std::vector<OutputPlan> outputs;
  for (const OutputRequest& request : options.outputs) {
    OutputPlan& output = outputs.emplace_back();
    output.request = request;
    if (!options.still)
      output.format =
          writesSequence(request) ? &sequenceFormat() : &formatFor(request.path, request.format);
    output.inPlace = drawable && staysInPlace(input, *own, output);
  }
  return outputs;
}

void planOutput(OutputPlan& output, const ClipPlan& plan, MediaInput& input) {
  if (!output.inPlace) {
    output.codec = chooseCodec(input, plan, output);
    output.notes = formatNotes(plan.picture, output.codec);
    if (!writesSequence(output.request))
      noteRange(output, plan, input);
    if (!output.codec->note.empty())
      output.notes.push_back(output.codec->note);
  }
  planTimecode(output, plan, input);
  planStreamsOf(output, plan.job, input);
  if (const auto lost = lostChapters(input.file(), plan.window, *output.format))
    output.notes.push_back(*lost);
  if (!plan.job.orientation.isUpright() && !tellsOrientation(*output.format))
    output.notes.emplace_back("this kind of file does not tell players how the picture is turned");
}

}  // namespace nkdraw::tool
