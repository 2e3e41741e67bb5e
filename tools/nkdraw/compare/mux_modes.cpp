// SPDX-License-Identifier: BSD-2-Clause
#include "compare/mux_modes.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace nkdraw::tool {
namespace {

constexpr auto kOneWay = MuxRuns::kOneWay;
constexpr auto kHorizontally = MuxRuns::kHorizontally;
constexpr auto kVertically = MuxRuns::kVertically;

constexpr MuxMode kModes[] = {
    {"plain", NKMuxPlain, kOneWay, 0, "the first picture"},
    {"second", NKMuxSecond, kOneWay, 0, "the second picture"},
    {"red-blue", NKMuxRedBlue, kOneWay, 0, "red of the first, blue of the second, no green"},
    {"red-cyan", NKMuxRedCyan, kOneWay, 0, "red of the first, green and blue of the second"},
    {"yellow-blue", NKMuxYellowBlue, kOneWay, 0, "red and green of the first, blue of the second"},
    {"green-magenta", NKMuxGreenMagenta, kOneWay, 0,
     "green of the first, red and blue of the second"},
    {"interleave", NKMuxInterleave, kVertically, 0, "rows, or columns, of both in turn"},
    {"average", NKMuxAverage, kOneWay, 0, "half of each"},
    {"difference", NKMuxDifference, kOneWay, kTakesGain,
     "grey where they are equal, brighter where the first is"},
    {"over-under", NKMuxOverUnder, kOneWay, 0,
     "every other row of the first over those of the second"},
    {"side-by-side", NKMuxSideBySide, kOneWay, 0, "both squeezed to half their width"},
    {"split", NKMuxSplit, kHorizontally, kTakesSplit | kTakesMark,
     "the first up to a column, or a row"},
    {"mirror", NKMuxMirror, kHorizontally, 0, "half of the first, the mirrored half of the second"},
    {"compare", NKMuxCompare, kOneWay, kTakesThreshold,
     "black, or with --swap white, where they differ"},
    {"fade", NKMuxFade, kOneWay, kTakesAmount, "a mixture, --amount of it the first"},
    {"wipe", NKMuxWipe, kOneWay, kTakesAmount | kTakesWipe,
     "a numbered wipe that has come to --amount"},
    {"checker", NKMuxChecker, kOneWay, 0, "pixels of both in turn, like a chess board"},
    {"blocks", NKMuxBlocks, kOneWay, kTakesBlock, "blocks of both in turn, like a chess board"},
    {"quarter", NKMuxQuarterPair, kOneWay, 0, "both at half their size on black"},
    {"crop", NKMuxCropPair, kHorizontally, kTakesSplit,
     "half of each, uncut in the other direction"},
    {"grey", NKMuxGrey, kOneWay, kTakesChannel, "one channel of the first as grey"},
};
static_assert(std::ranges::is_sorted(kModes, {}, &MuxMode::value));

struct OptionName {
  unsigned takes;
  std::string_view name;
};
constexpr OptionName kOptions[] = {
    {kTakesSplit, "--split-x --split-y"}, {kTakesMark, "--mark-split"},
    {kTakesThreshold, "--threshold"},     {kTakesGain, "--gain"},
    {kTakesAmount, "--amount"},           {kTakesBlock, "--block"},
    {kTakesChannel, "--channel"},         {kTakesWipe, "--wipe"},
};

std::string optionsOf(const MuxMode& mode) {
  std::string names;
  if (mode.runs != MuxRuns::kOneWay)
    names += mode.runs == MuxRuns::kHorizontally ? " --vertical" : " --horizontal";
  for (const OptionName& option : kOptions) {
    if ((mode.takes & option.takes) != 0)
      names.append(" ").append(option.name);
  }
  return names;
}

}  // namespace

std::span<const MuxMode> muxModes() {
  return kModes;
}

const MuxMode& muxModeNamed(const std::string& name) {
  const auto* const row = std::ranges::find_if(
      kModes, [&](const MuxMode& each) { return isSameName(each.name, name); });
  if (row == std::end(kModes))
    badValue("--mode", name, "see nkdraw compare --list");
  return *row;
}

void listMuxModes() {
  for (const MuxMode& mode : kModes) {
    std::printf("%-14s %7u  %s\n", std::string(mode.name).c_str(), mode.value,
                std::string(mode.description).c_str());
    if (const std::string options = optionsOf(mode); !options.empty())
      std::printf("%23s%s\n", "", options.c_str());
  }
}

}  // namespace nkdraw::tool
