// SPDX-License-Identifier: BSD-2-Clause
#include "clip_burnin.h"

#include "clip_facts.h"
#include "clip_plan.h"
#include "converting_road.h"
#include "failure.h"
#include "native_road.h"
#include "output_file.h"
#include "progress.h"
#include "raw_stream.h"
#include "still.h"

#include <algorithm>

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

void checkWritten(std::int64_t written, MediaInput& input, const FrameRange& range) {
  if (written > 0)
    return;
  if (range.isWhole())
    throw Failure(ExitCode::kInput, "no frames in the video", input.path(),
                  "check it with ffprobe");
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
    if (plan_.job.inPlace)
      writeInPlace();
    else
      writeConverted();
    checkWritten(written_, input_, plan_.job.range);
    output_.finish();
    file_.commit();
  }

 private:
  void writeInPlace() {
    NativeRoad road(input_, plan_.job);
    AVStream& video = copier_.video();
    if (isSameKind(*input_.file().iformat, *plan_.format)) {
      copyCodec(input_.video(), video, *plan_.format);
    } else {
      road.makePlain();
      copyCodec(input_.video(), video, *plan_.format);
      describeRaw(video, *plan_.job.layout, plan_.job.frames, *plan_.format);
    }
    output_.begin();
    road.run(
        [this](AVPacket& packet) {
          copier_.writeVideo(packet);
          noteFrame();
        },
        [this](AVPacket& packet) { copier_.write(packet); },
        [this] { return copier_.audioIsThrough(); });
  }

  void writeConverted() {
    const Frame example = exampleOf(input_, plan_.drawn);
    VideoEncoder encoder(*plan_.codec, *example, plan_.job.frames, *plan_.format);
    encoder.describeTo(copier_.video());
    output_.begin();
    const auto take = [&](AVPacket& packet) { copier_.writeEncoded(packet, encoder.timeBase()); };
    ConvertingRoad road(input_, plan_.job, plan_.drawn);
    std::int64_t next = 0;
    road.run(
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
};

void writeClipStill(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  OutputFile file(options.output, options.overwrite);
  std::int64_t written = 0;
  const auto take = [&](AVFrame& picture) {
    if (written++ == 0)
      writeStill(picture, file.temporary(), options.output);
  };
  const auto done = [] { return true; };
  if (plan.job.inPlace) {
    AVStream& video = input.video();
    VideoDecoder decoder(*video.codecpar, video.time_base, input.path());
    NativeRoad(input, plan.job)
        .run([&](AVPacket& packet) { decoder.decode(&packet, take); }, noOther, done);
    decoder.decode(nullptr, take);
  } else {
    ConvertingRoad(input, plan.job, plan.drawn)
        .run([&](AVFrame& picture, std::int64_t) { take(picture); }, noOther, done);
  }
  checkWritten(written, input, plan.job.range);
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
