// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnin.h"

#include "burnin/clip_description.h"
#include "burnin/clip_frames.h"
#include "burnin/clip_plan.h"
#include "burnin/range_check.h"
#include "burnin/sequence_burnin.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "media/clip_facts.h"
#include "media/failure.h"
#include "media/first_look.h"
#include "media/light_levels.h"
#include "media/output_file.h"
#include "media/read_back.h"
#include "media/still.h"
#include "media/stream_facts.h"
#include "media/video_encoder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace nkdraw::tool {
namespace {

class ClipWriter {
 public:
  ClipWriter(MediaInput& input, const ClipPlan& plan, const BurninOptions& options)
      : input_(input),
        plan_(plan),
        delivery_(options.delivery),
        file_(options.output, options.overwrite),
        output_(file_.temporary(), *plan.format, options.output),
        copier_(input, output_, plan.streams, plan.window, plan.timecodeTag),
        progress_(expectedFrames(input, plan.job.range), options.progressForm()) {}

  void write() {
    read_.continues = plan_.job.inPlace ? writeInPlace() : writeTranscoded();
    checkRead(read_, input_, plan_.job.range);
    copier_.finish();
    output_.finish();
    checkReadable(file_.temporary(), *plan_.format, file_.path());
    file_.commit();
  }

 private:
  bool writeInPlace() {
    InPlaceFrames frames(input_, plan_.job);
    AVStream& video = copier_.video();
    const bool sameKind = isSameKind(*input_.file().iformat, *plan_.format);
    copyCodec(input_.video(), video, *plan_.format);
    if (!sameKind) {
      frames.makePlain();
      describeRaw(video, *plan_.job.layout, plan_.job.frames, *plan_.format);
    }
    output_.begin(muxerOptions(delivery_, *plan_.format));
    return burnRange(input_, plan_.job, frames, others_, [&](AVPacket& packet, std::int64_t index) {
      if (!sameKind && isOnTheGrid(packet, index))
        writeByNumber(packet, index);
      else
        copier_.writeVideo(packet);
      noteFrame(index);
    });
  }

  /// Whether the packet's time is the exact time of its number, within the precision of the input's
  /// time base, and no earlier packet has this time.
  bool isOnTheGrid(const AVPacket& packet, std::int64_t index) const {
    const AVStream& video = input_.video();
    if (packet.pts == AV_NOPTS_VALUE || video.start_time == AV_NOPTS_VALUE || index < next_)
      return false;
    const std::int64_t exact =
        video.start_time + av_rescale_q(index, av_inv_q(plan_.job.frames.rate), video.time_base);
    return std::abs(packet.pts - exact) <= 1;
  }

  /// Gives the packet its exact time, which Matroska rounds to milliseconds.
  void writeByNumber(AVPacket& packet, std::int64_t index) {
    next_ = index + 1;
    packet.pts = packet.dts = index - plan_.job.range.first;
    packet.duration = 1;
    copier_.writeEncoded(packet, av_inv_q(plan_.job.frames.rate));
  }

  bool writeTranscoded() {
    const Frame example = exampleOf(input_, plan_.picture.drawn);
    if (plan_.first != nullptr)
      completeFrom(*plan_.first, input_.video(), *example);
    VideoEncoder encoder(*plan_.codec, *example, plan_.job.frames, *plan_.format);
    encoder.describeTo(copier_.video());
    copier_.video().codecpar->field_order =
        fieldOrderFor(input_.video(), plan_.first.get(), plan_.codec->codec->id);
    if (plan_.first != nullptr)
      copyLightLevels(*plan_.first, copier_.video());
    output_.begin(muxerOptions(delivery_, *plan_.format));
    const auto take = [&](AVPacket& packet) { copier_.writeEncoded(packet, encoder.timeBase()); };
    TranscodedFrames frames(plan_.job, plan_.picture.drawn);
    FramePlaces places;
    const bool pastRange =
        burnRange(input_, plan_.job, frames, others_, [&](AVFrame& frame, std::int64_t index) {
          encoder.encode(&frame, places.placeOf(index - plan_.job.range.first), take);
          noteFrame(index);
        });
    encoder.encode(nullptr, 0, take);
    return pastRange;
  }

  void noteFrame(std::int64_t index) {
    read_.note(index);
    progress_.advance();
  }

  MediaInput& input_;
  const ClipPlan& plan_;
  const OutputRequest& delivery_;
  OutputFile file_;
  MediaOutput output_;
  StreamCopier copier_;
  Progress progress_;
  OtherPackets others_ = {[this](AVPacket& packet) { copier_.write(packet); },
                          [this] { return copier_.audioIsThrough(); }};
  RangeRead read_;
  std::int64_t next_ = 0;  // the lowest number that is still free
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
  OutputFile file(options.output, options.overwrite);
  RangeRead read;
  read.continues = burnStill(input, plan, [&](AVFrame& frame) {
    if (read.written == 0)
      writeStill(frame, file.temporary(), options.output, plan.job.orientation);
    read.note(plan.job.range.first);
  });
  checkRead(read, input, plan.job.range);
  file.commit();
}

}  // namespace

void burnClip(const BurninOptions& options) {
  checkIsAnother(options.output, *options.input, "the output is the input");
  MediaInput input(*options.input, options.inputShape);
  input.damage().setAction(options.onDamage);
  const ClipPlan plan = planClip(input, options);
  if (writesSequence(options))
    checkSequenceOutput(input, plan, options);
  else
    checkOutput(options.output, options);
  input.damage().setTimecode(plan.job.timecode);
  if (!announce(options, [&](Description& to) { describe(to, input, plan, options); }))
    return;
  if (options.still)
    writeClipStill(input, plan, options);
  else if (writesSequence(options))
    writeSequence(input, plan, options);
  else
    ClipWriter(input, plan, options).write();
  for (const std::string& note : plan.notes)
    std::fprintf(stderr, "nkdraw: note: %s\n", note.c_str());
  if (!options.verbose)
    reportStreams(input, plan);
  reportDamage({&input.damage()});
}

}  // namespace nkdraw::tool
