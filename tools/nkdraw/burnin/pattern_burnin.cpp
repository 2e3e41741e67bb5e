// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnin.h"

#include "burnin/clip_description.h"
#include "burnin/clip_plan.h"
#include "burnin/layer_sources.h"
#include "burnin/picture_burner.h"
#include "burnin/sequence_burnin.h"
#include "burnin/test_pattern.h"
#include "cli/media_pieces.h"
#include "cli/note.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "media/delivery.h"
#include "media/failure.h"
#include "media/gop_timecode.h"
#include "media/interrupt.h"
#include "media/kept_timecode.h"
#include "media/media_output.h"
#include "media/output_file.h"
#include "media/read_back.h"
#include "media/still.h"
#include "media/stream_codec.h"
#include "media/stream_facts.h"
#include "media/video_decoder.h"
#include "media/video_encoder.h"

#include <nkdraw/platform/media_names.h>

#include <algorithm>
#include <optional>

namespace nkdraw::tool {
namespace {

void checkPatternHas(const OverlayRequest& request) {
  if (request.meters)
    throw Failure(ExitCode::kUsage, "the test pattern has no sound", "--meters",
                  "leave it out, or name a clip");
  if (request.captions && !request.captions->file)
    throw Failure(ExitCode::kUsage, "the test pattern has no captions", "--captions",
                  "give --captions-file, or name a clip");
}

FrameKind patternFrames(const BurninOptions& options) {
  const PatternOptions& pattern = options.pattern;
  return {.width = pattern.width,
          .height = pattern.height,
          .rate = pattern.rate,
          .interlaced = false,
          .fileType = hzwFileNone,
          .sourceCode = options.layout->compression,
          .pairs = isYCbCr(options.layout->type)};
}

FrameRange patternRange(const BurninOptions& options) {
  const std::int64_t frames = options.pattern.frames;
  const FrameRange range = {options.range.first, std::min(options.range.last, frames - 1)};
  if (range.last < range.first)
    throw Failure(ExitCode::kUsage, "the pattern ends before the frames asked for",
                  std::to_string(frames) + " frames", "raise --pattern-frames");
  return range;
}

Job planPattern(const BurninOptions& options) {
  Job job;
  job.layout = options.layout;
  job.inPlace = true;
  job.frames = job.shown = patternFrames(options);
  job.timecode = options.startTimecode
                     ? timecodeFromText(*options.startTimecode, job.frames.rate, kStartOption)
                     : midnight(job.frames.rate);
  job.range = patternRange(options);
  job.libraryAlpha = options.libraryAlpha;
  checkPatternHas(options.overlay);
  job.plan = planOverlay(options.overlay, job.frames, job.timecode,
                         recordTimecode(options, job.frames.rate));
  job.captions = captionsFor(job);
  return job;
}

/// Draws the frames of the pattern, burns the overlay into them, and passes them on as packets.
class PatternSource {
 public:
  explicit PatternSource(const Job& job)
      : job_(job),
        pattern_(*job.layout, job.frames.width, job.frames.height),
        burner_(job, Storage::kPacked) {}

  /// The frames of the job's range as packets.
  void run(const TakePacket& take) {
    const Packet packet = makePacket();
    for (std::int64_t index = job_.range.first; index <= job_.range.last; ++index) {
      throwIfInterrupted();
      if (av_new_packet(packet.get(), static_cast<int>(pattern_.frameBytes())) < 0)
        throw std::bad_alloc();
      draw(packet->data, index);
      packet->pts = packet->dts = index - job_.range.first;
      packet->duration = 1;
      packet->flags = AV_PKT_FLAG_KEY;
      take(*packet);
      av_packet_unref(packet.get());
    }
  }

 private:
  void draw(std::uint8_t* canvas, std::int64_t index) {
    pattern_.draw(canvas, index);
    Picture picture;
    picture.planes[0] = canvas;
    picture.pitches[0] =
        static_cast<std::ptrdiff_t>(packedPitch(job_.layout->type, job_.frames.width));
    burner_.burn(picture, index, {});
  }

  const Job& job_;
  TestPattern pattern_;
  PictureBurner burner_;
};

/// The colour tags of the pattern.
template <class Owner>
void describeColours(const Job& job, Owner& owner, AVColorSpace& matrix) {
  if (!isYCbCr(job.layout->type))
    return;
  matrix = matrixForWidth(job.frames.width);
  const bool highDefinition = matrix == AVCOL_SPC_BT709;
  owner.color_range = AVCOL_RANGE_MPEG;
  owner.color_primaries = highDefinition ? AVCOL_PRI_BT709 : AVCOL_PRI_SMPTE170M;
  owner.color_trc = highDefinition ? AVCOL_TRC_BT709 : AVCOL_TRC_SMPTE170M;
}

/// Describes the pattern as a stream, for a decoder.
CodecParameters parametersOf(const Job& job) {
  auto codec = owned<CodecParameters>(avcodec_parameters_alloc());
  codec->codec_type = AVMEDIA_TYPE_VIDEO;
  codec->codec_id = job.layout->codec;
  codec->format = job.layout->pixelFormat;
  codec->width = job.frames.width;
  codec->height = job.frames.height;
  describeColours(job, *codec, codec->color_space);
  return codec;
}

/// The frames of the job's range, as a decoder returns them.
void decodePattern(const Job& job, const TakeFrame& take) {
  const CodecParameters codec = parametersOf(job);
  VideoDecoder decoder(*codec, av_inv_q(job.frames.rate), "the test pattern");
  PatternSource(job).run([&](AVPacket& packet) { decoder.decode(&packet, take); });
  decoder.decode(nullptr, take);
}

void writeRaw(const Job& job, const BurninOptions& options, MediaOutput& output, AVStream& stream) {
  describeRaw(stream, *job.layout, job.frames, output.format());
  describeColours(job, *stream.codecpar, stream.codecpar->color_space);
  output.begin(muxerOptions(options.output(), output.format()));
  Progress progress(job.range.last - job.range.first + 1, options.progressForm());
  PatternSource(job).run([&](AVPacket& packet) {
    packet.stream_index = stream.index;
    output.write(packet, av_inv_q(job.frames.rate));
    progress.advance();
  });
}

void writeEncoded(const Job& job, const CodecChoice& choice, const BurninOptions& options,
                  MediaOutput& output, AVStream& stream) {
  const Frame example = makeFrame();
  example->format = job.layout->pixelFormat;
  example->width = job.frames.width;
  example->height = job.frames.height;
  describeColours(job, *example, example->colorspace);
  VideoEncoder encoder(choice, *example, job.frames, output.format());
  encoder.describeTo(stream);
  output.begin(muxerOptions(options.output(), output.format()));
  const auto write = [&](AVPacket& packet) {
    packet.stream_index = stream.index;
    output.write(packet, encoder.timeBase());
  };
  Progress progress(job.range.last - job.range.first + 1, options.progressForm());
  std::int64_t next = 0;
  decodePattern(job, [&](AVFrame& frame) {
    encoder.encode(&frame, next++, write);
    progress.advance();
  });
  encoder.encode(nullptr, 0, write);
}

/// What is written: null and none for a still.
struct PatternOutput {
  const AVOutputFormat* format = nullptr;
  std::optional<CodecChoice> codec;
  OutputTimecode timecode;
  std::string note;  // of what the kind of file does not hold
};

void writePatternClip(const Job& job, const BurninOptions& options, const PatternOutput& plan) {
  const AVOutputFormat& format = *plan.format;
  const std::string& path = options.output().path;
  OutputFile file(path, options.overwrite);
  MediaOutput output(file.temporary(), format, path);
  AVStream& stream = output.addStream();
  if (countsAllFrames(job.timecode, job.frames.rate))
    av_dict_set(&stream.metadata, "timecode", timecodeText(job.timecode, job.range.first).c_str(),
                0);
  keepTimecodeTag(output, stream);
  if (plan.codec)
    writeEncoded(job, *plan.codec, options, output, stream);
  else
    writeRaw(job, options, output, stream);
  output.finish();
  checkReadable(file.temporary(), format, path);
  const std::string lost = foundLoss(file.temporary(), path, format, plan.timecode);
  file.commit();
  printNote(lost);
}

void writePatternStill(const Job& job, const BurninOptions& options) {
  OutputFile file(options.output().path, options.overwrite);
  decodePattern(
      job, [&](AVFrame& frame) { writeStill(frame, file.temporary(), options.output().path); });
  file.commit();
}

void planTimecode(PatternOutput& output, const Job& job) {
  const bool counts = countsAllFrames(job.timecode, job.frames.rate);
  const std::string first = counts ? timecodeText(job.timecode, job.range.first) : "";
  if (output.codec)
    writeGOPTimecode(*output.codec, first, job.frames.rate);
  output.timecode = {job.timecode.known ? first : "", job.frames.rate,
                     output.codec ? output.codec->codec->id : job.layout->codec};
  output.note = foreseenLoss(*output.format, output.timecode);
}

PatternOutput planOutput(const Job& job, const BurninOptions& options) {
  PatternOutput output;
  if (options.still)
    return output;
  if (writesSequence(options.output()))
    throw Failure(ExitCode::kUsage, "the test pattern is written as a clip", options.output().path,
                  "write .mov, and a sequence from that");
  output.format = &formatFor(options.output().path, options.output().format);
  const bool holdsRaw = containerOf(output.format->name) != 0 || keepsAnyRaw(*output.format);
  if (options.output().leavesVideo() && holdsRaw) {
    checkKeeps(*output.format, *job.layout, options.output().codec.option);
  } else {
    SourceVideo source;
    source.codec = job.layout->codec;
    source.pixelFormat = job.layout->pixelFormat;
    source.frames = job.frames;
    output.codec = chooseDelivery(options.output(), source, *output.format);
  }
  planTimecode(output, job);
  return output;
}

void describe(Description& to, const Job& job, const PatternOutput& output,
              const BurninOptions& options) {
  constexpr char kOutput[] = "/outputs/0";
  to.add("input", "", {{"input", nullptr, "test pattern"}});
  to.add("", "", {{"method", "in-place"}, {"picture", nullptr}});
  describe(to, job, options.pattern.frames);
  to.add("codec", kOutput,
         {encoderPiece(output.codec ? &*output.codec : nullptr,
                       options.still  ? "one picture"
                       : output.codec ? deliveryText(*output.codec, *output.format)
                                      : "uncompressed")});
  const Json format = output.format != nullptr ? Json(output.format->name) : Json(nullptr);
  to.add("output", kOutput, {{"path", options.output().path}, {"format", format, ""}});
  to.addList(std::string(kOutput) + "/streams");
  to.addList("/notes");
  if (!output.note.empty())
    to.addText("note", "/notes/-", output.note);
}

}  // namespace

void burnPattern(const BurninOptions& options) {
  const Job job = planPattern(options);
  const PatternOutput output = planOutput(job, options);
  checkOutput(options.output().path, options);
  if (!announce(options, [&](Description& to) { describe(to, job, output, options); }))
    return;
  if (options.still)
    writePatternStill(job, options);
  else
    writePatternClip(job, options, output);
  printNote(output.note);
}

}  // namespace nkdraw::tool
