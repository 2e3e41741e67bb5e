// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_burnin.h"

#include "burnin/clip_plan.h"
#include "burnin/converting_road.h"
#include "burnin/native_road.h"
#include "cli/progress.h"
#include "media/clip_facts.h"
#include "media/failure.h"
#include "media/output_file.h"
#include "media/raw_stream.h"
#include "media/still.h"

#include <algorithm>
#include <cstdlib>

namespace nkdraw::tool {
namespace {

/// Frames that will be written, as far as that is known.
std::int64_t expectedFrames(MediaInput& input, const FrameRange& range) {
  const std::int64_t count = input.frameCount();
  if (!range.isBounded())
    return count;
  const std::int64_t last = count > 0 ? std::min(range.last, count - 1) : range.last;
  return std::max<std::int64_t>(last - range.first + 1, 0);
}

/// `pastRange`: whether the video goes on behind the range.
void checkWritten(std::int64_t written, bool pastRange, MediaInput& input,
                  const FrameRange& range) {
  if (written > 0)
    return;
  if (range.isWhole())
    throw Failure(ExitCode::kInput, "no frames in the video", input.path(),
                  "check it with ffprobe");
  if (pastRange)
    throw Failure(ExitCode::kInput, "no frame has the number " + rangeText(range), input.path(),
                  "frames are numbered by their time, and the video has a gap there");
  throw Failure(ExitCode::kInput, "the video ends before the frames asked for", input.path(),
                "frames count from 0; see nkdraw burnin --dry-run");
}

void noOther(AVPacket& /*packet*/) {}

class ClipWriter {
 public:
  ClipWriter(MediaInput& input, const ClipPlan& plan, const BurninOptions& options)
      : input_(input),
        plan_(plan),
        file_(options.output, options.overwrite),
        output_(file_.temporary(), *plan.format, options.output),
        copier_(input, output_, plan.fates, plan.window, plan.timecodeTag),
        progress_(expectedFrames(input, plan.job.range)) {}

  void write() {
    const bool pastRange = plan_.job.inPlace ? writeInPlace() : writeConverted();
    checkWritten(written_, pastRange, input_, plan_.job.range);
    output_.finish();
    file_.commit();
  }

 private:
  bool writeInPlace() {
    NativeRoad road(input_, plan_.job);
    AVStream& video = copier_.video();
    const bool sameKind = isSameKind(*input_.file().iformat, *plan_.format);
    if (sameKind) {
      copyCodec(input_.video(), video, *plan_.format);
    } else {
      road.makePlain();
      copyCodec(input_.video(), video, *plan_.format);
      describeRaw(video, *plan_.job.layout, plan_.job.frames, *plan_.format);
    }
    output_.begin();
    return road.run(
        [&](AVPacket& packet, std::int64_t index) {
          if (!sameKind && isOnTheGrid(packet, index))
            writeByNumber(packet, index);
          else
            copier_.writeVideo(packet);
          noteFrame();
        },
        [this](AVPacket& packet) { copier_.write(packet); },
        [this] { return copier_.audioIsThrough(); });
  }

  /// Whether the packet's time is that of its number, as closely as the input's clock can tell, and
  /// no packet before has it.
  bool isOnTheGrid(const AVPacket& packet, std::int64_t index) const {
    const AVStream& video = input_.video();
    if (packet.pts == AV_NOPTS_VALUE || video.start_time == AV_NOPTS_VALUE || index < next_)
      return false;
    const std::int64_t exact =
        video.start_time + av_rescale_q(index, av_inv_q(plan_.job.frames.rate), video.time_base);
    return std::abs(packet.pts - exact) <= 1;
  }

  /// Gives the packet the exact time, which the milliseconds of Matroska don't have.
  void writeByNumber(AVPacket& packet, std::int64_t index) {
    next_ = index + 1;
    packet.pts = packet.dts = index - plan_.job.range.first;
    packet.duration = 1;
    copier_.writeEncoded(packet, av_inv_q(plan_.job.frames.rate));
  }

  bool writeConverted() {
    const Frame example = exampleOf(input_, plan_.drawn);
    VideoEncoder encoder(*plan_.codec, *example, plan_.job.frames, *plan_.format);
    encoder.describeTo(copier_.video());
    if (!plan_.job.frames.interlaced)  // progressive, or the file doesn't say
      copier_.video().codecpar->field_order = input_.video().codecpar->field_order;
    output_.begin();
    const auto take = [&](AVPacket& packet) { copier_.writeEncoded(packet, encoder.timeBase()); };
    ConvertingRoad road(input_, plan_.job, plan_.drawn);
    std::int64_t next = 0;
    const bool pastRange = road.run(
        [&](AVFrame& picture, std::int64_t index) {
          // Two frames at one time are written one after the other.
          const std::int64_t place = std::max(index - plan_.job.range.first, next);
          next = place + 1;
          encoder.encode(&picture, place, take);
          noteFrame();
        },
        [this](AVPacket& packet) { copier_.write(packet); },
        [this] { return copier_.audioIsThrough(); });
    encoder.encode(nullptr, 0, take);
    return pastRange;
  }

  void noteFrame() {
    ++written_;
    progress_.advance();
  }

  MediaInput& input_;
  const ClipPlan& plan_;
  OutputFile file_;
  MediaOutput output_;
  StreamCopier copier_;
  Progress progress_;
  std::int64_t written_ = 0;
  std::int64_t next_ = 0;  // the least number that no frame has yet
};

void writeClipStill(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  OutputFile file(options.output, options.overwrite);
  std::int64_t written = 0;
  const auto take = [&](AVFrame& picture) {
    if (written++ == 0)
      writeStill(picture, file.temporary(), options.output);
  };
  const auto done = [] { return true; };
  bool pastRange = false;
  if (plan.job.inPlace) {
    AVStream& video = input.video();
    VideoDecoder decoder(*video.codecpar, video.time_base, input.path());
    pastRange = NativeRoad(input, plan.job)
                    .run([&](AVPacket& packet, std::int64_t) { decoder.decode(&packet, take); },
                         noOther, done);
    decoder.decode(nullptr, take);
  } else {
    pastRange = ConvertingRoad(input, plan.job, plan.drawn)
                    .run([&](AVFrame& picture, std::int64_t) { take(picture); }, noOther, done);
  }
  checkWritten(written, pastRange, input, plan.job.range);
  file.commit();
}

}  // namespace

void burnClip(const BurninOptions& options) {
  if (isSameFile(*options.input, options.output))
    throw Failure(ExitCode::kUsage, "the output is the input", options.output,
                  "choose another name");
  MediaInput input(*options.input);
  const ClipPlan plan = planClip(input, options);
  checkOutputName(options.output, options.overwrite);
  if (options.dryRun || options.verbose)
    describe(options.dryRun ? stdout : stderr, input, plan, options);
  if (options.dryRun)
    return;
  if (options.still)
    writeClipStill(input, plan, options);
  else
    ClipWriter(input, plan, options).write();
}

}  // namespace nkdraw::tool
