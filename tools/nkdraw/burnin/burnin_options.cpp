// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnin_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "media/failure.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] =
    "Burn timecode, clock, source format, texts, a watermark, captions and meters into a video.";
constexpr unsigned kLargestSize = 20;

constexpr char kMore[] =
    "Uncompressed video (v210, UYVY, YUY2, YVYU, 24- and 32-bit RGB) is drawn on in place: pixels\n"
    "outside the texts stay as they are, bit for bit. Other video is decoded, drawn on and\n"
    "encoded in its own codec unless --codec, --lossless or --viewing-copy says otherwise. Sound\n"
    "and all else is copied, or converted where the file can't hold it.\n"
    "\n"
    "Examples:\n"
    "  nkdraw burnin reel.mov burnt.mov\n"
    "      The file's own timecode, at the lower left.\n"
    "  nkdraw burnin --clock --text 96,54,\"Reel 7\" reel.mov burnt.mov\n"
    "      Timecode, wall clock and a text whose upper left corner is at 96,54.\n"
    "  nkdraw burnin --start-timecode '10:00:00;00' --viewing-copy in.mov out.mp4\n"
    "      A viewing copy that starts at ten o'clock, drop-frame.\n"
    "  nkdraw burnin --still 100 reel.mov frame100.png\n"
    "  nkdraw burnin --layout v210 --pattern-size 1280x720 bars.mov\n"
    "      A moving test pattern with timecode.\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing, 5 done, but frames of the\n"
    "input are damaged; 129, 130 and 143 interrupted; 141 nobody reads the\n"
    "output's pipe. More in nkdraw(1).";

/// Printable ASCII: there is no way to draw the other glyphs, and control codes have no meaningful
/// ones.
bool canBeDrawn(char character) {
  return character >= ' ' && character <= '~';
}

PlacedText readText(const std::string& argument) {
  std::string_view left = argument;
  const auto at = takePair(left, ',');
  if (!at || !take(left, ',') || left.empty())
    badValue("--text", argument, "write X,Y,TEXT, for example 96,54,\"Reel 7\"");
  if (!std::ranges::all_of(left, canBeDrawn))
    badValue("--text", argument, "use printable ASCII characters");
  if (left.size() > kLongestText)
    badValue("--text", argument.substr(0, 40) + "...",
             "use at most " + std::to_string(kLongestText) + " characters");
  return {*at, std::string(left)};
}

}  // namespace

void BurninArguments::addTo(CLI::App& command) {
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("INPUT", input_, "", "The clip; left out with --layout");
  plain.add("OUTPUT", output_, "", "The clip to write; its suffix says what kind of file");
  addOverlayTo(command);
  addLookTo(command);
  layers_.addTo(command);
  addWritingTo(command);
  outputs_.addTo(command);
  sequences_.addTo(command);
  damage_.addTo(command);
  OptionGroup(command, "What is burnt in")
      .addFlag("--mark-damage", markDamage_,
               "DAMAGED in the middle of damaged and repeated frames;\n"
               "with --on-damage continue");
  pipes_.addInputTo(command);
  addPatternTo(command);
  plain.addFlag("--list-layouts", listLayouts_, "List the layouts that are drawn on in place");
  plain.addFlag("-v,--verbose", run_.verbose, "Say more, with FFmpeg's messages");
}

void BurninArguments::addOverlayTo(CLI::App& command) {
  OptionGroup group(command, "What is burnt in");
  group.addFlag("--ltc", ltc_, "The row with the timecode (on by default)");
  group.addFlag("--no-ltc", noLtc_, "Leave it out");
  group.addFlag("--vitc", vitc_, "A second row with the timecode, for VITC");
  group.add(kRecordOption, recordTimecode_, "HH:MM:SS:FF",
            "A row with a second timecode, instead of the VITC row;\n"
            "the first frame's. The rows are then labelled");
  group.addFlag("--clock", clock_, "A row with the time of day");
  group.addFlag("--frame-number", frameNumber_, "A row with the number of the frame, from 0");
  group.addFlag("--format-line", formatLine_, "A line that names the source's format");
  group.add("--text", texts_, "X,Y,TEXT",
            "A text with its upper left corner at that pixel, up to\n"
            "ten times");
  group.add(kStartOption, startTimecode_, "HH:MM:SS:FF",
            "The first frame's timecode, instead of the file's;\n"
            "';' before the frames counts drop-frame");
}

void BurninArguments::addLookTo(CLI::App& command) {
  OptionGroup group(command, "How it looks");
  group.add("--position", position_, "X,Y",
            "Upper left corner of the timecode rows (lower left of\nthe frame by default)");
  group.add("--timecode-size", size_, "N",
            "Magnification of the timecode rows' 8 by 10 pixel\n"
            "characters, 1 to 20 (by the frame's height: 4 at 1080)");
  group.add("--text-size", textSize_, "N",
            "The same for format line and texts (by the frame's\n"
            "height: 3 at 1080)");
  group.addOldName("--size", size_);
  group.addFlag("--fill", fill_, "A black box behind the texts (on by default)");
  group.addFlag("--no-fill", noFill_, "Leave it out");
  group.addFlag("--keep-alpha", keepAlpha_,
                "In place, keep the alpha that is drawn: 0 in boxes, 255\n"
                "in characters (all that is drawn becomes opaque)");
}

void BurninArguments::addWritingTo(CLI::App& command) {
  OptionGroup group(command, "What is written");
  group.add("--frames", frames_, "FROM-TO",
            "These frames only, counted from 0, with the sound that\nbelongs to them");
  group.add("--still", still_, "N", "Frame N as a picture: .png, .tif, .dpx or .jpg");
  addProgress(group, run_);
  group.addFlag("--overwrite", run_.overwrite, "Replace OUTPUT if it exists");
  addDryRun(group, run_);
}

void BurninArguments::addPatternTo(CLI::App& command) {
  OptionGroup group(command, "Test pattern");
  group.add("--layout", layout_, "NAME", "Burn into a test pattern in this layout");
  group.add("--pattern-size", patternSize_, "WxH", "Its frame size (1920x1080)");
  group.add("--pattern-rate", patternRate_, "RATE", "Its frames a second (25)");
  group.add("--pattern-frames", patternFrames_, "N", "How many frames it has (250)");
}

BurninOptions BurninArguments::read() const {
  BurninOptions options;
  static_cast<RunOptions&>(options) = run_;
  options.listLayouts = listLayouts_;
  options.libraryAlpha = keepAlpha_;
  if (listLayouts_)
    return options;
  checkRun(options);
  readFiles(options);
  readOverlay(options.overlay);
  readRange(options);
  readOutputs(options);
  readPattern(options);
  if (startTimecode_ && startTimecode_->empty())
    badValue(kStartOption, "", "write HH:MM:SS:FF, or HH:MM:SS;FF for drop-frame");
  options.startTimecode = startTimecode_;
  if (recordTimecode_ && recordTimecode_->empty())
    badValue(kRecordOption, "", "write HH:MM:SS:FF, or HH:MM:SS;FF for drop-frame");
  options.recordTimecode = recordTimecode_;
  options.overlay.vitc = options.overlay.vitc || recordTimecode_;
  options.overlay.markDamage = markDamage_;
  if (markDamage_ && options.onDamage != OnDamage::kContinue)
    throw Failure(ExitCode::kUsage, "an option without what it is for", "--mark-damage",
                  "give --on-damage continue");
  if (damage_.given() && !options.input)
    throw Failure(ExitCode::kUsage, "the test pattern is never damaged", "--on-damage",
                  "leave it out");
  return options;
}

void BurninArguments::readFiles(BurninOptions& options) const {
  if (!input_)
    throw Failure(ExitCode::kUsage, "no files named", "nkdraw burnin",
                  "give INPUT and OUTPUT; see nkdraw burnin --help");
  const bool several = outputs_.namesAny();
  if (!output_ && !layout_ && !several)
    throw Failure(ExitCode::kUsage, "only one file named", *input_,
                  "give INPUT and OUTPUT, or --layout for a test pattern");
  if (several && layout_)
    throw Failure(ExitCode::kUsage, "the test pattern is written to one file", "--output",
                  "leave it out, and name that file alone");
  if (input_->empty())
    throw Failure(ExitCode::kUsage, "a file name is empty", "nkdraw burnin",
                  "give INPUT and OUTPUT");
  if (output_ || several)
    options.input = input_;
  options.inputShape = pipes_.input();
  options.onDamage = damage_.read();
}

void BurninArguments::readOutputs(BurninOptions& options) const {
  const bool hasStreams = options.input && !options.still;
  options.outputs = outputs_.read(options.input ? output_ : input_, options.still, hasStreams);
  const std::string& name = options.output().path;
  options.inputShape.startNumber = sequences_.startNumber(*input_, name);
  for (const OutputRequest& output : options.outputs)
    checkPictureName(output.path, options.still);
}

void BurninArguments::readOverlay(OverlayRequest& overlay) const {
  if ((ltc_ && noLtc_) || (fill_ && noFill_))
    throw Failure(ExitCode::kUsage, "options that exclude each other",
                  ltc_ && noLtc_ ? "--ltc and --no-ltc" : "--fill and --no-fill",
                  "give one of them");
  const OverlaySettings settings = layers_.settings();
  overlay = settings.request;
  overlay.ltc = (overlay.ltc || ltc_) && !noLtc_;
  overlay.vitc = overlay.vitc || vitc_;
  overlay.clock = overlay.clock || clock_;
  overlay.frameNumber = frameNumber_;
  overlay.formatLine = overlay.formatLine || formatLine_;
  readLook(overlay);
  readTexts(overlay);
  layers_.apply(settings, overlay);
  const bool hasRows =
      overlay.ltc || overlay.vitc || overlay.clock || overlay.frameNumber || recordTimecode_;
  if (hasRows && overlay.size && (*overlay.size < 1 || *overlay.size > kLargestSize))
    throw Failure(ExitCode::kUsage, "the settings have no size that rows can have",
                  "TimeCodeSize " + std::to_string(*overlay.size),
                  "give --timecode-size N, 1 to 20");
  if (!hasRows && !overlay.formatLine && overlay.texts.empty() && !overlay.watermark &&
      !overlay.captions && !overlay.meters)
    throw Failure(ExitCode::kUsage, "nothing to burn in", noLtc_ ? "--no-ltc" : "--settings",
                  "ask for a row, the format line, a text or another layer");
}

void BurninArguments::readLook(OverlayRequest& overlay) const {
  overlay.fill = (overlay.fill || fill_) && !noFill_;
  const auto readSize = [](const char* option, const std::optional<std::string>& text,
                           std::optional<unsigned>& size) {
    if (text)
      size = static_cast<unsigned>(
          readNumber(option, *text, 1, kLargestSize, "write a whole number from 1 to 20"));
  };
  readSize("--timecode-size", size_, overlay.size);
  readSize("--text-size", textSize_, overlay.textSize);
  if (position_)
    overlay.position = readPoint("--position", *position_);
}

void BurninArguments::readTexts(OverlayRequest& overlay) const {
  if (texts_.size() > kMostTexts)
    throw Failure(ExitCode::kUsage, "too many texts", std::to_string(texts_.size()),
                  "give --text at most ten times");
  if (!texts_.empty())
    overlay.texts.clear();
  for (const std::string& text : texts_)
    overlay.texts.push_back(readText(text));
}

void BurninArguments::readStill(BurninOptions& options) const {
  if (still_) {
    if (frames_)
      badValue("--frames", *frames_, "leave it out: --still names the frame");
    options.still = true;
    const std::int64_t frame = readNumber("--still", *still_, 0, kMostFrames,
                                          "write the number of a frame, counted from 0");
    options.range = {frame, frame};
  }
}

void BurninArguments::readRange(BurninOptions& options) const {
  readStill(options);
  if (!frames_)
    return;
  std::string_view left = *frames_;
  const auto first = takeNumber<std::int64_t>(left);
  const auto last = take(left, '-') ? takeNumber<std::int64_t>(left) : std::nullopt;
  if (!first || !last || !left.empty() || *first < 0 || *last < *first)
    badValue("--frames", *frames_, "write FROM-TO, counted from 0, for example 100-199");
  options.range = {std::min(*first, kMostFrames), std::min(*last, kMostFrames)};
}

void BurninArguments::readPattern(BurninOptions& options) const {
  const bool any = layout_ || patternSize_ || patternRate_ || patternFrames_;
  if (any && options.input)
    throw Failure(ExitCode::kUsage, "the test pattern's options don't go with an input",
                  *options.input, "leave out --layout and --pattern-...");
  if (layout_) {
    options.layout = layoutNamed(*layout_);
    if (options.layout == nullptr)
      badValue("--layout", *layout_, "see nkdraw burnin --list-layouts");
  }
  readPatternShape(options.pattern);
}

void BurninArguments::readPatternShape(PatternOptions& pattern) const {
  if (patternSize_) {
    std::string_view left = *patternSize_;
    const auto size = takePair(left, 'x');
    constexpr int kSmallest = 32, kLargest = 16384;
    if (!size || !left.empty() || std::min(size->x, size->y) < kSmallest ||
        std::max(size->x, size->y) > kLargest)
      badValue("--pattern-size", *patternSize_, "write WxH, 32x32 to 16384x16384");
    pattern.width = size->x;
    pattern.height = size->y;
  }
  if (patternRate_)
    pattern.rate = readRate("--pattern-rate", *patternRate_);
  if (patternFrames_)
    pattern.frames = readNumber("--pattern-frames", *patternFrames_, 1, kMostFrames,
                                "write how many frames, 1 or more");
}

}  // namespace nkdraw::tool
