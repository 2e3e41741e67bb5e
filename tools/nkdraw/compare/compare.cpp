// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"
#include "cli/media_pieces.h"
#include "cli/note.h"
#include "cli/progress.h"
#include "cli/run_options.h"
#include "compare/compare_options.h"
#include "compare/difference_report.h"
#include "compare/mux_display.h"
#include "media/clip_pair.h"
#include "media/delivery.h"
#include "media/failure.h"
#include "media/frame_converter.h"
#include "media/frame_cursor.h"
#include "media/media_output.h"
#include "media/output_file.h"
#include "media/pipe_name.h"
#include "media/read_back.h"
#include "media/video_encoder.h"
#include "media/video_feed.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace nkdraw::tool {
namespace {

/// The pixels as on a screen: RGB without alpha.
constexpr AVPixelFormat kShown = AV_PIX_FMT_BGR0;

struct ComparePlan {
  MuxCall call;
  const AVOutputFormat* format = nullptr;  // null if there is no output
  std::optional<CodecChoice> codec;
};

/// Pictures of both clips, which have the codec of neither.
SourceVideo shownVideo(const ClipPair& clips) {
  SourceVideo shown;
  shown.pixelFormat = kShown;
  shown.frames = clips.frames;
  return shown;
}

ComparePlan planCompare(ClipPair& clips, const CompareOptions& options) {
  ComparePlan plan;
  plan.call = planMux(options.display, clips.frames.width, clips.frames.height);
  if (options.output) {
    plan.format = &formatFor(*options.output, options.format);
    plan.codec = chooseJoined(options.codec, shownVideo(clips), *plan.format);
  }
  return plan;
}

/// The output clip, which shows both inputs.
class DisplayClip {
 public:
  DisplayClip(ClipPair& clips, const ComparePlan& plan, const std::string& path, bool overwrite)
      : file_(path, overwrite),
        format_(*plan.format),
        output_(file_.temporary(), format_, path),
        stream_(output_.addStream()),
        toFirst_(AV_PIX_FMT_BGRA, clips.a.interlaced()),
        toSecond_(AV_PIX_FMT_BGRA, clips.b.interlaced()),
        display_(plan.call, clips.frames.width, clips.frames.height),
        encoder_(*plan.codec, *example(clips), clips.frames, format_) {
    encoder_.describeTo(stream_);
    output_.begin();
  }

  void add(AVFrame& a, AVFrame& b, std::int64_t index) {
    AVFrame& first = toFirst_.convert(a);
    const std::uint8_t* const shown = display_.show(first, toSecond_.convert(b));
    const Frame frame = makeFrame(kShown, first.width, first.height);
    if (av_frame_copy_props(frame.get(), &first) < 0)
      throw std::bad_alloc();
    const auto pitch = static_cast<std::ptrdiff_t>(first.width) * 4;
    for (int y = 0; y < first.height; ++y)
      std::memcpy(frame->data[0] + std::ptrdiff_t{frame->linesize[0]} * y, shown + pitch * y,
                  static_cast<std::size_t>(pitch));
    encoder_.encode(frame.get(), index, take_);
  }

  void finish() {
    encoder_.encode(nullptr, 0, take_);
    output_.finish();
    checkReadable(file_.temporary(), format_, file_.path());
    file_.commit();
  }

 private:
  /// The shape of the clips and the colours of RGB.
  static Frame example(ClipPair& clips) {
    Frame shape = exampleOf(clips.a, kShown);
    shape->color_range = AVCOL_RANGE_UNSPECIFIED;
    shape->colorspace = AVCOL_SPC_UNSPECIFIED;
    return shape;
  }

  OutputFile file_;
  const AVOutputFormat& format_;
  MediaOutput output_;
  AVStream& stream_;
  FrameConverter toFirst_, toSecond_;
  MuxDisplay display_;
  VideoEncoder encoder_;
  TakePacket take_ = [this](AVPacket& packet) {
    packet.stream_index = stream_.index;
    output_.write(packet, encoder_.timeBase());
  };
};

/// How many frames there were, and which clip has more; null if neither.
struct Compared {
  std::int64_t frames;
  const MediaInput* longer;
};

/// Passes on both clips' frames up to the end of the shorter one.
template <class Take>
Compared forEachPair(ClipPair& clips, Take take) {
  FrameCursor<DecodedFeed> a(clips.a, clips.frames), b(clips.b, clips.frames);
  for (std::int64_t index = 0;; ++index) {
    Frame* const first = a.shownAt(index);
    Frame* const second = b.shownAt(index);
    if (first != nullptr && second != nullptr)
      take(**first, **second, index);
    else if (index == 0)
      throw Failure(ExitCode::kInput, "no frames in the video",
                    (first == nullptr ? clips.a : clips.b).path(), "check it with ffprobe");
    else if (first != nullptr)
      return {index, &clips.a};
    else
      return {index, second != nullptr ? &clips.b : nullptr};
  }
}

void describeReport(Description& to, ClipPair& clips, const CompareOptions& options) {
  if (!options.report)
    return to.add("", "", {{"report", nullptr}});
  const AVPixelFormat as = comparedFormat(decodedFormat(clips.a), decodedFormat(clips.b));
  to.add("report", "/report",
         {{"path", *options.report}, ": compared as ", {"pixel_format", av_get_pix_fmt_name(as)}});
}

void describeDisplay(Description& to, const ComparePlan& plan, const CompareOptions& options) {
  to.addList("/outputs");
  to.addList("/notes");
  if (!options.output)
    return to.add("", "", {{"mode", nullptr}});
  constexpr char kOutput[] = "/outputs/0";
  const MuxMode& mode = *options.display.mode;
  to.add("mode", "/mode",
         {{"name", std::string(mode.name)}, ": ", {"description", std::string(mode.description)}});
  to.add("codec", kOutput, {encoderPiece(&*plan.codec, codecText(*plan.codec))});
  to.add("output", kOutput, {{"path", *options.output}, ": ", {"format", plan.format->name}});
  if (!plan.codec->note.empty())
    to.addText("note", "/notes/-", plan.codec->note);
}

void describe(Description& to, ClipPair& clips, const ComparePlan& plan,
              const CompareOptions& options) {
  for (MediaInput* const clip : {&clips.a, &clips.b})
    to.add("input", "/inputs/-",
           {{"path", clip->path()},
            ": ",
            formatPiece(*clip),
            ", ",
            codecPiece(*clip),
            ", ",
            {"pixel_format", av_get_pix_fmt_name(decodedFormat(*clip))}});
  to.add("frames", "/frames",
         {{"width", clips.frames.width},
          "x",
          {"height", clips.frames.height},
          ", ",
          ratePiece(clips.frames.rate)});
  describeReport(to, clips, options);
  describeDisplay(to, plan, options);
}

/// The outputs must not be the inputs, or each other.
void checkNames(const CompareOptions& options) {
  if (options.report && *options.report != kStandardOutput) {
    for (const std::string& input : {options.a, options.b})
      checkIsAnother(*options.report, input, "the report is an input");
    checkOutput(*options.report, options);
  }
  if (options.output)
    checkOutput(*options.output, options);
  if (options.output && options.report &&
      (*options.output == *options.report || isSameFile(*options.output, *options.report)))
    throw Failure(ExitCode::kUsage, "the report is the output", *options.report,
                  "choose another name");
}

/// Writes the requested outputs.
Compared writeComparison(ClipPair& clips, const ComparePlan& plan, const CompareOptions& options) {
  std::optional<DisplayClip> display;
  std::optional<DifferenceReport> report;
  if (options.output)
    display.emplace(clips, plan, *options.output, options.overwrite);
  if (options.report)
    report.emplace(*options.report, options.overwrite, clips);
  const auto compare = [&] {
    Progress progress(std::min(countOf(clips.a).frames, countOf(clips.b).frames),
                      options.progressForm());
    return forEachPair(clips, [&](AVFrame& a, AVFrame& b, std::int64_t index) {
      if (report)
        report->add(a, b, index);
      if (display)
        display->add(a, b, index);
      progress.advance();
    });
  };
  const Compared compared = compare();
  if (display)
    display->finish();
  if (report)
    report->finish(options.output && isPipedOutput(*options.output) ? stderr : stdout);
  return compared;
}

void compareClips(const CompareOptions& options) {
  ClipPair clips(options.a, options.b, options.output.value_or(""), options.inputShape);
  clips.beginDamage(options.onDamage);
  const ComparePlan plan = planCompare(clips, options);
  checkNames(options);
  if (!announce(options, [&](Description& to) { describe(to, clips, plan, options); }))
    return;
  const Compared compared = writeComparison(clips, plan, options);
  if (compared.longer != nullptr)
    std::fprintf(stderr, "nkdraw: %s is longer: the first %lld frames were compared\n",
                 compared.longer->path().c_str(), static_cast<long long>(compared.frames));
  if (plan.codec)
    printNote(plan.codec->note);
  reportDamage({&clips.a.damage(), &clips.b.damage()});
}

void compareOrList(const CompareOptions& options) {
  if (options.list)
    listMuxModes();
  else
    compareClips(options);
}

}  // namespace

std::unique_ptr<Command> addCompare(CLI::App& app) {
  return std::make_unique<SubCommand<CompareArguments, compareOrList>>(app, "compare");
}

}  // namespace nkdraw::tool
