// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnin.h"

#include "burnin/burnt_decoder.h"
#include "burnin/clip_description.h"
#include "burnin/clip_frames.h"
#include "burnin/clip_output.h"
#include "burnin/clip_patch.h"
#include "burnin/clip_plan.h"
#include "burnin/range_check.h"
#include "burnin/sequence_burnin.h"
#include "cli/note.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "media/failure.h"
#include "media/late_streams.h"
#include "media/output_file.h"
#include "media/still.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace nkdraw::tool {
namespace {

/// Reads and burns each frame once, and writes it into every output.
class ClipWriter {
 public:
  ClipWriter(MediaInput& input, const ClipPlan& plan, const BurninOptions& options)
      : input_(input),
        plan_(plan),
        progress_(expectedFrames(input, plan.job.range), options.progressForm()) {
    for (const OutputPlan& output : plan.outputs)
      outputs_.push_back(std::make_unique<ClipOutput>(input, plan, output, options.overwrite));
  }

  /// All outputs get their names, or none.
  void write() {
    for (const auto& output : outputs_) {
      if (output->plan().inPlace)
        packets_.emplace_back(*output, input_, plan_.job);
      else
        frames_.push_back(std::make_unique<FrameSink>(*output, input_, plan_));
    }
    read_.continues = plan_.job.inPlace ? burnPackets() : burnDecoded();
    checkRead(read_, input_, plan_.job.range);
    for (const auto& output : outputs_)
      output->finish();
    commitAll();
  }

 private:
  /// Another program may have taken a name in the meantime.
  void commitAll() {
    std::size_t named = 0;
    try {
      for (; named < outputs_.size(); ++named)
        outputs_[named]->commit();
    } catch (...) {
      while (named > 0)
        outputs_[--named]->withdraw();
      throw;
    }
  }

  /// Draws on the file's own frames, which are also decoded for outputs that encode them.
  bool burnPackets() {
    InPlaceFrames frames(input_, plan_.job);
    std::optional<BurntDecoder> decoder;
    if (!frames_.empty())
      decoder.emplace(input_, plan_,
                      [this](AVFrame& frame, std::int64_t index) { encode(frame, index); });
    const bool pastRange =
        burnRange(input_, plan_.job, frames, others_, [&](AVPacket& packet, std::int64_t index) {
          for (PacketSink& sink : packets_)
            sink.write(packet, index, frames);
          if (decoder)
            decoder->decode(packet, index);
          noteFrame(index);
        });
    if (decoder)
      decoder->finish();
    finishEncoding();
    return pastRange;
  }

  bool burnDecoded() {
    TranscodedFrames frames(plan_.job, plan_.picture.drawn);
    const bool pastRange =
        burnRange(input_, plan_.job, frames, others_, [&](AVFrame& frame, std::int64_t index) {
          encode(frame, index);
          noteFrame(index);
        });
    finishEncoding();
    return pastRange;
  }

  void encode(AVFrame& frame, std::int64_t index) {
    for (const auto& sink : frames_)
      sink->encode(frame, index);
  }

  void finishEncoding() {
    for (const auto& sink : frames_)
      sink->finish();
  }

  void noteFrame(std::int64_t index) {
    read_.note(index);
    progress_.advance();
  }

  MediaInput& input_;
  const ClipPlan& plan_;
  std::vector<std::unique_ptr<ClipOutput>> outputs_;
  std::vector<PacketSink> packets_;
  std::vector<std::unique_ptr<FrameSink>> frames_;
  Progress progress_;
  OtherPackets others_ = {[this](AVPacket& packet) {
                            for (const auto& output : outputs_)
                              output->writeOther(packet);
                          },
                          [this] {
                            return std::ranges::all_of(outputs_, [](const auto& output) {
                              return output->copier().audioIsThrough();
                            });
                          }};
  RangeRead read_;
};

/// Passes on the frames of the range, burnt. Returns whether the video continues past it.
bool burnStill(MediaInput& input, const ClipPlan& plan, const TakeFrame& take) {
  const OtherPackets none = {{}, [] { return true; }};
  if (!plan.job.inPlace) {
    TranscodedFrames frames(plan.job, plan.picture.drawn);
    return burnRange(input, plan.job, frames, none,
                     [&](AVFrame& frame, std::int64_t) { take(frame); });
  }
  AVStream& video = input.video();
  VideoDecoder decoder(*video.codecpar, video.time_base, input.path());
  InPlaceFrames frames(input, plan.job);
  const bool pastRange =
      burnRange(input, plan.job, frames, none,
                [&](AVPacket& packet, std::int64_t) { decoder.decode(&packet, take); });
  decoder.decode(nullptr, take);
  return pastRange;
}

void writeClipStill(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  const std::string& name = plan.output().request.path;
  OutputFile file(name, options.overwrite);
  RangeRead read;
  read.continues = burnStill(input, plan, [&](AVFrame& frame) {
    if (read.written == 0)
      writeStill(frame, file.temporary(), name, plan.job.orientation);
    read.note(plan.job.range.first);
  });
  checkRead(read, input, plan.job.range);
  file.commit();
}

/// Outputs must not replace what the run reads.
void checkOutputNames(const BurninOptions& options) {
  const OverlayRequest& overlay = options.overlay;
  for (const OutputRequest& output : options.outputs) {
    checkIsAnother(output.path, *options.input, "the output is the input");
    if (overlay.watermark)
      checkIsAnother(output.path, overlay.watermark->path, "the output is the watermark");
    if (overlay.captions && overlay.captions->file)
      checkIsAnother(output.path, *overlay.captions->file, "the output is the captions' file");
  }
}

/// Returns false if the file was to be patched and can't be.
bool burnFrom(MediaInput& input, const BurninOptions& options) {
  input.damage().setAction(options.onDamage);
  const ClipPlan plan = planClip(input, options);
  const bool sequence = !options.still && writesSequence(options.output());
  if (sequence)
    checkSequenceOutput(input, plan, options);
  for (const OutputRequest& output : options.outputs) {
    if (!sequence)
      checkOutput(output.path, options);
  }
  input.damage().setTimecode(plan.job.timecode);
  if (!announce(options, [&](Description& to) { describe(to, input, plan); }))
    return true;
  if (canPatch(input, plan, options))
    return writePatched(input, plan, options);
  if (options.still)
    writeClipStill(input, plan, options);
  else if (sequence)
    writeSequence(input, plan, options);
  else
    ClipWriter(input, plan, options).write();
  for (const std::string& note : plan.notes)
    printNote(note);
  if (!options.still && !sequence)
    printNote(lateStreams(input));
  if (!options.verbose)
    reportStreams(input, plan);
  reportDamage({&input.damage()});
  return true;
}

}  // namespace

void burnClip(const BurninOptions& options) {
  checkOutputNames(options);
  MediaInput input(*options.input, options.inputShape, readingFor(options));
  if (burnFrom(input, options))
    return;
  BurninOptions told = options;
  told.verbose = false;
  MediaInput whole(*options.input, options.inputShape);
  burnFrom(whole, told);
}

}  // namespace nkdraw::tool
