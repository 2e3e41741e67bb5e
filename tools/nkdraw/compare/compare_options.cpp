// SPDX-License-Identifier: BSD-2-Clause
#include "compare/compare_options.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"
#include "wipe/wipe_names.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Show two clips in one, or say where they differ.";

constexpr char kMore[] =
    "Both clips are shown frame by frame as 32-bit RGB; OUTPUT is encoded without loss, and "
    "without\n"
    "sound, unless --codec says otherwise. --report compares the decoded pictures themselves and\n"
    "needs no OUTPUT. Frames are compared up to the end of the shorter clip.\n"
    "\n"
    "Examples:\n"
    "  nkdraw compare a.mov b.mov --report differences.csv\n"
    "      How many pixels differ in each frame, and by how much.\n"
    "  nkdraw compare a.mov b.mov out.mov --mode difference --gain 8\n"
    "  nkdraw compare a.mov b.mov out.mov --mode split --split-x 400 --mark-split\n"
    "  nkdraw compare --list\n"
    "      All modes with their options.\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing; 129, 130 and 143\n"
    "interrupted. More in nkdraw(1).";

struct ChannelName {
  std::string_view name;
  std::uint32_t mask;  // of the byte in a pixel of BGRA
};
constexpr ChannelName kChannels[] = {{"mean", 0},
                                     {"blue", 0x000000FF},
                                     {"green", 0x0000FF00},
                                     {"red", 0x00FF0000},
                                     {"alpha", 0xFF000000}};

std::uint32_t readChannel(const std::string& text) {
  const auto* const row = std::ranges::find_if(
      kChannels, [&](const ChannelName& each) { return isSameName(each.name, text); });
  if (row == std::end(kChannels))
    badValue("--channel", text, "give red, green, blue, alpha or mean");
  return row->mask;
}

/// "0.3" or "30%"
double readAmount(const std::string& text) {
  std::string_view left = text;
  const auto number = left.starts_with('-') ? std::nullopt : takeNumber<double>(left);
  const double scale = take(left, '%') ? 100.0 : 1.0;
  // Written so that what is no number is refused, too.
  if (!number || !left.empty() || !(*number <= scale))
    badValue("--amount", text, "give 0 to 1, or 0% to 100%");
  return *number / scale;
}

Flip readFlip(const std::string& option, const std::string& text) {
  if (!text.empty() && text != "h" && text != "v" && text != "hv" && text != "vh")
    badValue(option, text, "give h (left to right), v (top to bottom) or hv");
  return {text.find('h') != std::string::npos, text.find('v') != std::string::npos};
}

/// A number from `least` to `most`, if the option was given.
template <class Number>
std::optional<Number> readGiven(const std::string& option, const std::optional<std::string>& text,
                                std::int64_t least, std::int64_t most) {
  if (!text)
    return std::nullopt;
  return static_cast<Number>(readNumber(
      option, *text, least, most, "give " + std::to_string(least) + " to " + std::to_string(most)));
}

/// A column or row; whether it lies in the frame shows when that is known.
std::optional<int> readPlace(const std::string& option, const std::optional<std::string>& text) {
  const auto place = text ? wholeNumber<int>(*text) : std::nullopt;
  if (text && !place)
    badValue(option, *text, "give a number of pixels");
  return place;
}

}  // namespace

void CompareArguments::addTo(CLI::App& command) {
  command.description(kDescription);
  command.footer(kMore);
  command.add_option("A", a_, "The first clip")->type_name("");
  command.add_option("B", b_, "The second clip, of the same size and rate")->type_name("");
  command.add_option("OUTPUT", output_, "The clip to write; may be left out with --report")
      ->type_name("");
  addModeTo(command);
  addLookTo(command);
  addWritingTo(command);
  command.add_flag("--list", list_, "List the modes, and which options each takes");
  command.add_flag("-v,--verbose", verbose_, "Say more, with FFmpeg's messages");
}

void CompareArguments::addModeTo(CLI::App& command) {
  constexpr char kGroup[] = "How the clips share the picture";
  command.add_option("--mode", mode_, "The mode (difference); see --list")
      ->type_name("NAME")
      ->group(kGroup);
  command.add_option("--split-x", splitX_, "split, crop: first column of the second, of the crop")
      ->type_name("X")
      ->group(kGroup);
  command.add_option("--split-y", splitY_, "split, crop with --vertical: the row")
      ->type_name("Y")
      ->group(kGroup);
  command.add_flag("--mark-split", markSplit_, "split: a grey line where the second begins")
      ->group(kGroup);
  command.add_option("--threshold", threshold_, "compare: the largest difference that is none (0)")
      ->type_name("N")
      ->group(kGroup);
  command.add_option("--gain", gain_, "difference: multiply it (1)")->type_name("N")->group(kGroup);
  command
      .add_option("--amount", amount_,
                  "fade: the first's share; wipe: how far it has come;\n"
                  "0 to 1 or 0% to 100% (50%)")
      ->type_name("SHARE")
      ->group(kGroup);
  command.add_option("--block", block_, "blocks: their size in pixels, 1 to 100 (16)")
      ->type_name("N")
      ->group(kGroup);
  command
      .add_option("--channel", channel_,
                  "grey: red, green, blue, alpha, or the mean of\nthe colours (mean)")
      ->type_name("NAME")
      ->group(kGroup);
  command.add_option("--wipe", wipe_, "wipe: the wipe (edge-horz); see nkdraw wipe --list")
      ->type_name("NAME|NUMBER")
      ->group(kGroup);
  command
      .add_flag("--horizontal", horizontal_,
                "interleave: columns in turn; usual for split, mirror\nand crop")
      ->group(kGroup);
  command
      .add_flag("--vertical", vertical_,
                "split, mirror, crop: one over the other; usual for\ninterleave")
      ->group(kGroup);
}

void CompareArguments::addLookTo(CLI::App& command) {
  constexpr char kGroup[] = "In every mode";
  command.add_flag("--swap", swap_, "Change the places of the clips")->group(kGroup);
  command
      .add_option("--flip-first", flipFirst_, "Mirror the first clip left to right, top to bottom")
      ->type_name("h|v|hv")
      ->group(kGroup);
  command.add_option("--flip-second", flipSecond_, "Mirror the second clip")
      ->type_name("h|v|hv")
      ->group(kGroup);
  command.add_option("--grid", grid_, "Draw a grid with cells of that size")
      ->type_name("PERCENT")
      ->group(kGroup);
  command.add_option("--grid-pixels", gridPixels_, "The same in pixels")
      ->type_name("X,Y")
      ->group(kGroup);
}

void CompareArguments::addWritingTo(CLI::App& command) {
  constexpr char kGroup[] = "What is written";
  command
      .add_option("--report", report_,
                  "A table: for each frame the pixels that differ, and\n"
                  "the largest difference of every channel")
      ->type_name("FILE.csv")
      ->group(kGroup);
  command
      .add_option("--codec", codec_,
                  "Encode with this encoder of FFmpeg (losslessly, by\nkind of file)")
      ->type_name("NAME[:KEY=VALUE...]")
      ->group(kGroup);
  command.add_flag("--overwrite", overwrite_, "Replace OUTPUT and the report if they exist")
      ->group(kGroup);
  command.add_flag("--dry-run", dryRun_, "Say what would be done and write nothing")->group(kGroup);
}

CompareOptions CompareArguments::read() const {
  CompareOptions options;
  options.a = a_;
  options.b = b_;
  options.overwrite = overwrite_;
  options.dryRun = dryRun_;
  options.list = list_;
  options.verbose = verbose_;
  if (list_)
    return options;
  if (a_.empty() || b_.empty())
    throw Failure(ExitCode::kUsage, "a file name is missing", "nkdraw compare",
                  "give A, B and OUTPUT; see nkdraw compare --help");
  if (output_.empty() && report_.empty())
    throw Failure(ExitCode::kUsage, "nothing to write", "nkdraw compare",
                  "give OUTPUT, or --report FILE.csv, or both");
  if (!output_.empty())
    options.output = output_;
  if (!report_.empty())
    options.report = report_;
  if (!codec_.empty())
    options.codec = codec_;
  readDisplay(options.display);
  return options;
}

void CompareArguments::readDisplay(MuxRequest& display) const {
  display.mode = &muxModeNamed(mode_);
  display.vertical = vertical_;
  display.horizontal = horizontal_;
  display.markSplit = markSplit_;
  display.swap = swap_;
  display.first = readFlip("--flip-first", flipFirst_);
  display.second = readFlip("--flip-second", flipSecond_);
  display.splitX = readPlace("--split-x", splitX_);
  display.splitY = readPlace("--split-y", splitY_);
  display.threshold = readGiven<std::uint32_t>("--threshold", threshold_, 0, 255);
  display.gain = readGiven<std::uint32_t>("--gain", gain_, 1, 255);
  display.block = readGiven<std::uint32_t>("--block", block_, 1, 100);
  display.gridPercent = readGiven<int>("--grid", grid_, 1, 100);
  if (!amount_.empty())
    display.amount = readAmount(amount_);
  if (!channel_.empty())
    display.channel = readChannel(channel_);
  if (!wipe_.empty())
    display.wipe = readWipe(wipe_, "--wipe");
  if (gridPixels_.empty())
    return;
  std::string_view left = gridPixels_;
  display.gridPixels = takePair(left, ',');
  if (!display.gridPixels || !left.empty())
    badValue("--grid-pixels", gridPixels_, "write X,Y in pixels");
}

}  // namespace nkdraw::tool
