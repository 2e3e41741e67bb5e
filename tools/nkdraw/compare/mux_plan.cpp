// SPDX-License-Identifier: BSD-2-Clause
#include "compare/mux_plan.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <cmath>

namespace nkdraw::tool {
namespace {

constexpr std::uint32_t kBlockShift = 8;
constexpr std::uint32_t kUsualBlock = 16;
constexpr double kUsualAmount = 0.5;
constexpr int kWidestWipe = 65535;  // sizes are multiplied by positions in 32 bits

void checkTakes(const MuxRequest& request) {
  struct Given {
    bool given;
    unsigned takes;
    const char* option;
  };
  const Given all[] = {
      {request.splitX.has_value(), kTakesSplit, "--split-x"},
      {request.splitY.has_value(), kTakesSplit, "--split-y"},
      {request.markSplit, kTakesMark, "--mark-split"},
      {request.threshold.has_value(), kTakesThreshold, "--threshold"},
      {request.gain.has_value(), kTakesGain, "--gain"},
      {request.amount.has_value(), kTakesAmount, "--amount"},
      {request.block.has_value(), kTakesBlock, "--block"},
      {request.channel.has_value(), kTakesChannel, "--channel"},
      {request.wipe.has_value(), kTakesWipe, "--wipe"},
  };
  const auto refuse = [&](const char* option) {
    throw Failure(ExitCode::kUsage, "the mode does not take this option",
                  std::string(request.mode->name) + ", " + option,
                  "leave it out; see nkdraw compare --list");
  };
  for (const Given& each : all) {
    if (each.given && (request.mode->takes & each.takes) == 0)
      refuse(each.option);
  }
  if (request.mode->runs == MuxRuns::kOneWay && (request.vertical || request.horizontal))
    refuse(request.vertical ? "--vertical" : "--horizontal");
}

bool runsVertically(const MuxRequest& request) {
  return request.vertical || (request.mode->runs == MuxRuns::kVertically && !request.horizontal);
}

std::uint32_t wordOf(const MuxRequest& request) {
  struct Flag {
    bool on;
    std::uint32_t bit;
  };
  const bool otherWay = request.mode->runs != MuxRuns::kOneWay &&
                        runsVertically(request) != (request.mode->runs == MuxRuns::kVertically);
  const Flag flags[] = {
      {request.second.leftToRight, NKMuxFlipSecondHorz},
      {request.second.topToBottom, NKMuxFlipSecondVert},
      {request.markSplit, NKMuxMarkSplit},
      {otherWay, NKMuxOtherWay},
      {request.first.leftToRight, NKMuxFlipFirstHorz},
      {request.first.topToBottom, NKMuxFlipFirstVert},
      {request.swap, NKMuxSwap},
  };
  std::uint32_t word = request.mode->value;
  for (const Flag& flag : flags)
    word |= flag.on ? flag.bit : 0;
  return word;
}

std::uint32_t splitFor(const std::optional<int>& given, const char* option, int usual, int last,
                       bool used) {
  if (!given)
    return static_cast<std::uint32_t>(usual);
  if (!used)
    throw Failure(ExitCode::kUsage, "the split runs the other way", option,
                  "give the other one of --split-x and --split-y, or change the direction");
  if (*given < 0 || *given > last)
    throw Failure(ExitCode::kUsage, "the split lies outside the frame",
                  std::string(option) + " " + std::to_string(*given),
                  "give 0 to " + std::to_string(last));
  return static_cast<std::uint32_t>(*given);
}

/// A split may lie at the far edge, but not be marked there; a crop must leave half a frame.
void planSplit(MuxCall& call, const MuxRequest& request, int width, int height) {
  const bool isCrop = (request.mode->takes & kTakesMark) == 0;
  const auto last = [&](int size) {
    return isCrop ? size / 2 : size - (request.markSplit ? 1 : 0);
  };
  const auto usual = [&](int size) { return isCrop ? (size - size / 2) / 2 : size / 2; };
  const bool vertical = runsVertically(request);
  call.splitX = splitFor(request.splitX, "--split-x", usual(width), last(width), !vertical);
  call.splitY = splitFor(request.splitY, "--split-y", usual(height), last(height), vertical);
}

void planGrid(MuxCall& call, const MuxRequest& request, int width, int height) {
  if (request.gridPercent && request.gridPixels)
    throw Failure(ExitCode::kUsage, "options that exclude each other", "--grid and --grid-pixels",
                  "give one of them");
  if (request.gridPercent) {
    const int percent = *request.gridPercent;
    if (100 / percent > std::min(width, height))
      throw Failure(ExitCode::kUsage, "the grid has more cells than the frame has pixels",
                    "--grid " + std::to_string(percent),
                    "give more percent; the frame is " + std::to_string(width) + "x" +
                        std::to_string(height));
    call.gridType = NKGridPercent;
    call.gridX = static_cast<std::uint32_t>(percent);
  }
  if (request.gridPixels) {
    if (request.gridPixels->x < 1 || request.gridPixels->y < 1)
      badValue("--grid-pixels",
               std::to_string(request.gridPixels->x) + "," + std::to_string(request.gridPixels->y),
               "give a pixel or more each way");
    call.gridType = NKGridPixels;
    call.gridX = static_cast<std::uint32_t>(request.gridPixels->x);
    call.gridY = static_cast<std::uint32_t>(request.gridPixels->y);
  }
}

}  // namespace

MuxCall planMux(const MuxRequest& request, int width, int height) {
  checkTakes(request);
  if (request.vertical && request.horizontal)
    throw Failure(ExitCode::kUsage, "options that exclude each other",
                  "--horizontal and --vertical", "give one of them");
  const unsigned takes = request.mode->takes;
  if ((takes & kTakesWipe) != 0 && std::max(width, height) > kWidestWipe)
    throw Failure(ExitCode::kUsage, "the frames are too large for the mode",
                  std::string(request.mode->name), "choose another --mode");
  MuxCall call;
  call.mode = wordOf(request);
  call.wipe = request.wipe.value_or(1);
  if ((takes & kTakesAmount) != 0)
    call.amount =
        static_cast<std::uint32_t>(std::lround(request.amount.value_or(kUsualAmount) * NKMuxWhole));
  if ((takes & kTakesBlock) != 0)
    call.amount = request.block.value_or(kUsualBlock) << kBlockShift;
  // One argument of the call has three meanings.
  call.threshold = request.threshold.value_or(request.gain.value_or(request.channel.value_or(0)));
  if ((takes & kTakesSplit) != 0)
    planSplit(call, request, width, height);
  planGrid(call, request, width, height);
  return call;
}

}  // namespace nkdraw::tool
