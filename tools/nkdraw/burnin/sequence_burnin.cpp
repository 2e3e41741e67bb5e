// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/sequence_burnin.h"

#include "burnin/clip_frames.h"
#include "burnin/range_check.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "media/clip_facts.h"
#include "media/dpx_header.h"
#include "media/failure.h"
#include "media/frame_converter.h"
#include "media/image_sequence.h"
#include "media/read_back.h"
#include "media/sequence_output.h"
#include "media/video_encoder.h"

#include <cstdint>
#include <limits>
#include <span>

namespace nkdraw::tool {
namespace {

/// Of the first picture that is written. Pictures keep their numbers, and frames of other clips
/// theirs.
std::int64_t firstNumber(const MediaInput& input, const FrameRange& range,
                         const BurninOptions& options) {
  if (input.pictures())
    return input.pictures()->first + range.first;
  return options.inputShape.startNumber.value_or(range.first);
}

/// Without what says how YCbCr is stored, since pictures hold RGB.
void forgetYCbCr(AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  if ((av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) == 0)
    return;
  frame.color_range = AVCOL_RANGE_UNSPECIFIED;
  frame.colorspace = AVCOL_SPC_UNSPECIFIED;
}

/// What each picture's header tells, if it is a DPX file.
DPXFacts headerFor(MediaInput& input, const ClipPlan& plan) {
  DPXFacts facts;
  if (input.pictures())
    facts = readDPX(pictureName(input.path(), input.pictures()->first));
  facts.timecode.reset();
  facts.rate = plan.job.frames.rate;
  return facts;
}

class SequenceWriter {
 public:
  SequenceWriter(MediaInput& input, const ClipPlan& plan, const BurninOptions& options)
      : input_(input),
        plan_(plan),
        output_(plan.output()),
        first_(firstNumber(input, plan.job.range, options)),
        file_(options.output().path, options.overwrite),
        header_(headerFor(input, plan)),
        toPicture_(output_.codec->pixelFormat, plan.job.frames.interlaced),
        progress_(expectedFrames(input, plan.job.range), options.progressForm()) {}

  void write() {
    const Job& job = plan_.job;
    const Frame example = exampleOf(input_, output_.codec->pixelFormat);
    forgetYCbCr(*example);
    // Encoders of pictures take interlacing for an order of rows in the file.
    FrameKind pictures = job.frames;
    pictures.interlaced = false;
    VideoEncoder encoder(*output_.codec, *example, pictures, *output_.format);
    const auto take = [&](AVPacket& packet) { writePicture(packet); };
    TranscodedFrames frames(job, plan_.picture.drawn);
    const OtherPackets none = {{}, [] { return true; }};
    read_.continues = burnRange(input_, job, frames, none, [&](AVFrame& frame, std::int64_t index) {
      AVFrame& picture = toPicture_.convert(frame);
      forgetYCbCr(picture);
      indexes_.push_back(index);
      encoder.encode(&picture, read_.written, take);
      noteFrame(index);
    });
    encoder.encode(nullptr, 0, take);
    finish();
  }

 private:
  void writePicture(const AVPacket& packet) {
    const std::span<const std::uint8_t> bytes(packet.data, static_cast<std::size_t>(packet.size));
    const std::int64_t number = first_ + packet.pts;
    if (output_.codec->codec->id != AV_CODEC_ID_DPX)
      return file_.write(number, bytes);
    DPXFacts facts = header_;
    const std::int64_t index = indexes_[static_cast<std::size_t>(packet.pts)];
    if (plan_.timecodeTag && !plan_.timecodeTag->empty())
      facts.timecode = timecodeText(plan_.job.timecode, index);
    file_.write(number, withFacts(bytes, facts));
  }

  void noteFrame(std::int64_t index) {
    read_.note(index);
    progress_.advance();
  }

  void finish() {
    checkRead(read_, input_, plan_.job.range);
    for (const std::int64_t number : {first_, first_ + read_.written - 1})
      checkReadable(file_.temporary(number), *output_.format, file_.nameOf(number));
    file_.commit();
  }

  MediaInput& input_;
  const ClipPlan& plan_;
  const OutputPlan& output_;
  std::int64_t first_;
  SequenceOutput file_;
  DPXFacts header_;
  FrameConverter toPicture_;
  Progress progress_;
  RangeRead read_;
  std::vector<std::int64_t> indexes_;  // of the frames, by their order
};

}  // namespace

bool writesSequence(const OutputRequest& output) {
  return !output.format && isSequenceName(output.path);
}

std::vector<std::string> sequenceNotes(const MediaInput& input) {
  std::vector<std::string> notes;
  if (!input.pictures())
    return notes;
  const PictureRun& pictures = *input.pictures();
  if (pictures.rate.num == 0)
    notes.push_back("the pictures tell no frame rate; " + rateText(kUsualSequenceRate) +
                    ", unless --input-rate says another");
  if (pictures.gap)
    notes.push_back("the sequence ends at a gap: there is no " +
                    pictureName(input.path(), pictures.end()));
  return notes;
}

std::string lostPictureTimecode(const OutputPlan& output) {
  const OutputTimecode& timecode = output.timecode;
  if (timecode.codec != AV_CODEC_ID_DPX || timecode.text.empty() || countsInDPX(timecode.rate))
    return {};
  return "the pictures hold no timecode: DPX counts up to 30 frames a second";
}

void checkSequenceOutput(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  const FrameRange& range = plan.job.range;
  const std::int64_t first = firstNumber(input, range, options);
  const std::int64_t count = expectedFrames(input, range);
  const std::int64_t last = count > 0 ? first + count - 1 : std::numeric_limits<int>::max();
  if (last > std::numeric_limits<int>::max())
    throw Failure(ExitCode::kUsage, "the pictures' numbers are too large", options.output().path,
                  "give a lower --start-number");
  if (input.pictures())
    checkIsAnother(pictureName(options.output().path, first), pictureName(input.path(), first),
                   "the output is the input");
  checkSequence(options.output().path, first, last, options.overwrite);
}

void writeSequence(MediaInput& input, const ClipPlan& plan, const BurninOptions& options) {
  SequenceWriter(input, plan, options).write();
}

}  // namespace nkdraw::tool
