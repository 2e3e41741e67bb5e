// SPDX-License-Identifier: BSD-2-Clause
#include "compare/compare_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"
#include "wipe/wipe_names.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Show two clips in one, or say where they differ.";

constexpr char kMore[] =
    "Both clips are shown frame by frame as 32-bit RGB. OUTPUT has no sound; it is encoded "
    "without\n"
    "loss where it can hold that, else by its usual codec, or by --codec. --report compares the\n"
    "decoded frames themselves and needs no OUTPUT. Frames are compared up to the end of the\n"
    "shorter clip.\n"
    "\n"
    "Examples:\n"
    "  nkdraw compare a.mov b.mov --report differences.csv\n"
    "      How many pixels differ in each frame, and by how much.\n"
    "  nkdraw compare a.mov b.mov out.mov --mode difference --gain 8\n"
    "  nkdraw compare a.mov b.mov out.mov --mode split --split-x 400 --mark-split\n"
    "  nkdraw compare --list\n"
    "      All modes with their options.\n"
    "\n"
    "Exit status: 0 done, 1 usage, 2 input, 3 output, 4 processing, 5 done, but frames of the\n"
    "input are damaged; 129, 130 and 143 interrupted; 141 nobody reads the\n"
    "output's pipe. More in nkdraw(1).";

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
  // Written so that not-a-number is refused too.
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

/// A column or row; whether it lies in the frame is checked when the frame size is known.
std::optional<int> readPlace(const std::string& option, const std::optional<std::string>& text) {
  const auto place = text ? wholeNumber<int>(*text) : std::nullopt;
  if (text && !place)
    badValue(option, *text, "give a number of pixels");
  return place;
}

}  // namespace

void CompareArguments::addTo(CLI::App& command) {
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("A", plain_.a, "", "The first clip");
  plain.add("B", plain_.b, "", "The second clip, of the same size and rate");
  plain.add("OUTPUT", output_, "", "The clip to write; may be left out with --report");
  addModeTo(command);
  addLookTo(command);
  addWritingTo(command);
  damage_.addTo(command);
  pipes_.addTo(command);
  plain.addFlag("--list", plain_.list, "List the modes, and which options each takes");
  plain.addFlag("-v,--verbose", plain_.verbose, "Say more, with FFmpeg's messages");
}

void CompareArguments::addModeTo(CLI::App& command) {
  OptionGroup group(command, "How the clips share the picture");
  group.add("--mode", mode_, "NAME", "The mode (difference); see --list");
  group.add("--split-x", splitX_, "X", "split, crop: first column of the second, of the crop");
  group.add("--split-y", splitY_, "Y", "split, crop with --vertical: the row");
  group.addFlag("--mark-split", plain_.display.markSplit,
                "split: a grey line where the second begins");
  group.add("--threshold", threshold_, "N", "compare: the largest difference that is none (0)");
  group.add("--gain", gain_, "N", "difference: multiply it (1)");
  group.add("--amount", amount_, "SHARE",
            "fade: the first's share; wipe: how far it has come;\n"
            "0 to 1 or 0% to 100% (50%)");
  group.add("--block", block_, "N", "blocks: their size in pixels, 1 to 100 (16)");
  group.add("--channel", channel_, "NAME",
            "grey: red, green, blue, alpha, or the mean of\nthe colours (mean)");
  group.add("--wipe", wipe_, "NAME|NUMBER", "wipe: the wipe (edge-horz); see nkdraw wipe --list");
  group.addFlag("--horizontal", plain_.display.horizontal,
                "interleave: columns in turn; usual for split, mirror\nand crop");
  group.addFlag("--vertical", plain_.display.vertical,
                "split, mirror, crop: one over the other; usual for\ninterleave");
}

void CompareArguments::addLookTo(CLI::App& command) {
  OptionGroup group(command, "In every mode");
  group.addFlag("--swap", plain_.display.swap, "Change the places of the clips");
  group.add("--flip-first", flipFirst_, "h|v|hv",
            "Mirror the first clip left to right, top to bottom");
  group.add("--flip-second", flipSecond_, "h|v|hv", "Mirror the second clip");
  group.add("--grid", grid_, "PERCENT", "Draw a grid with cells of that size");
  group.add("--grid-pixels", gridPixels_, "X,Y", "The same in pixels");
}

void CompareArguments::addWritingTo(CLI::App& command) {
  OptionGroup group(command, "What is written");
  group.add("--report", report_, "FILE.csv|-",
            "A table: for each frame the pixels that differ, and\n"
            "the largest difference of every channel");
  group.add(
      "--codec", codec_, "NAME[:KEY=VALUE...]",
      "Encode with this encoder of FFmpeg (losslessly, by\nkind of file; else its usual codec)");
  addProgress(group, plain_);
  group.addFlag("--overwrite", plain_.overwrite, "Replace OUTPUT and the report if they exist");
  addDryRun(group, plain_);
}

CompareOptions CompareArguments::read() const {
  CompareOptions options = plain_;
  if (options.list)
    return options;
  checkRun(options);
  if (options.a.empty() || options.b.empty())
    throw Failure(ExitCode::kUsage, "a file name is missing", "nkdraw compare",
                  "give A, B and OUTPUT; see nkdraw compare --help");
  options.inputShape = pipes_.input();
  options.format = pipes_.format();
  options.onDamage = damage_.read();
  options.output = given(output_);
  options.report = given(report_);
  if (!options.output && !options.report)
    throw Failure(ExitCode::kUsage, "nothing to write", "nkdraw compare",
                  "give OUTPUT, or --report FILE.csv, or both");
  options.codec.asked = given(codec_);
  readDisplay(options.display);
  return options;
}

void CompareArguments::readDisplay(MuxRequest& display) const {
  display.mode = &muxModeNamed(mode_);
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
  if (!gridPixels_.empty())
    display.gridPixels = readPoint("--grid-pixels", gridPixels_);
}

}  // namespace nkdraw::tool
