// SPDX-License-Identifier: BSD-2-Clause
#include "media/clip_pair.h"

#include "media/failure.h"
#include "media/output_file.h"
#include "media/pipe_name.h"
#include "media/timecode_source.h"

#include <cmath>
#include <initializer_list>

namespace nkdraw::media {
namespace {

// Files round rates; the two nearest rates in use are a thousandth apart.
constexpr double kSameRate = 1e-4;

std::string sizeText(const FrameKind& frames) {
  return std::to_string(frames.width) + "x" + std::to_string(frames.height);
}

/// "a.mov has ONE, b.mov OTHER"
std::string both(const MediaInput& a, const std::string& one, const MediaInput& b,
                 const std::string& other) {
  return a.path() + " has " + one + ", " + b.path() + " " + other;
}

const std::string& checkedSecond(const std::string& first, const std::string& second) {
  if (isPipedInput(first) && (first == second || isSameFile(first, second)))
    throw Failure(ExitCode::kUsage, "both clips are the same pipe", first, "give a file for one");
  return second;
}

}  // namespace

ClipPair::ClipPair(const std::string& first, const std::string& second, const std::string& output,
                   const InputShape& shape)
    : a(first, isPipedInput(first) || !isPipedInput(second) ? shape : InputShape{}),
      b(checkedSecond(first, second),
        isPipedInput(second) || !isPipedInput(first) ? shape : InputShape{}),
      frames(framesOf(a, ownLayout(a))) {
  for (const std::string& input : {first, second}) {
    if (!output.empty() && isSameFile(input, output))
      throw Failure(ExitCode::kUsage, "the output is an input", output, "choose another name");
  }
  const FrameKind other = framesOf(b, ownLayout(b));
  if (frames.width != other.width || frames.height != other.height)
    throw Failure(ExitCode::kInput, "the clips differ in their frame size",
                  both(a, sizeText(frames), b, sizeText(other)), "scale one of them first");
  const double rate = av_q2d(frames.rate);
  if (std::abs(rate - av_q2d(other.rate)) > rate * kSameRate)
    throw Failure(ExitCode::kInput, "the clips differ in their frame rate",
                  both(a, rateText(frames.rate), b, rateText(other.rate)),
                  "convert one of them first");
}

void ClipPair::beginDamage(OnDamage action) {
  for (MediaInput* const clip : {&a, &b}) {
    clip->damage().setAction(action);
    clip->damage().setTimecode(timecodeOf(*clip, frames.rate));
  }
}

FrameCount countOf(MediaInput& input) {
  return {input.frameCount(), input.video().nb_frames > 0};
}

}  // namespace nkdraw::media
