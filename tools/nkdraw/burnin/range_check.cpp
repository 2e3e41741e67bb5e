// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/range_check.h"

#include "media/failure.h"
#include "media/time_window.h"

#include <algorithm>
#include <string>

namespace nkdraw::tool {
namespace {

[[noreturn]] void failAtEnd(const MediaInput& input, const std::string& end) {
  throw Failure(ExitCode::kInput, "the video ends before the frames asked for", input.path(),
                end + "frames count from 0; see nkdraw burnin --dry-run");
}

/// No frame has this number or a higher one; 0 if the file doesn't tell. Frames are numbered by
/// their time, so a clip with gaps has higher numbers than frames.
std::int64_t boundOf(MediaInput& input) {
  // Where times may jump, the length is an estimate.
  if ((input.file().iformat->flags & AVFMT_TS_DISCONT) != 0)
    return 0;
  const AVStream& video = input.video();
  const AVRational frameTime = av_inv_q(input.frameRate());
  std::int64_t byTime = 0;
  if (video.duration > 0)
    byTime = av_rescale_q_rnd(video.duration, video.time_base, frameTime, AV_ROUND_UP);
  else if (input.file().duration > 0)
    byTime = av_rescale_q_rnd(input.file().duration, kMicroseconds, frameTime, AV_ROUND_UP);
  return byTime > 0 ? std::max(byTime, video.nb_frames) + 1 : 0;
}

}  // namespace

std::int64_t expectedFrames(MediaInput& input, const FrameRange& range) {
  const std::int64_t count = input.frameCount();
  if (!range.isBounded())
    return std::max<std::int64_t>(count - range.first, 0);
  const std::int64_t last = count > 0 ? std::min(range.last, count - 1) : range.last;
  return std::max<std::int64_t>(last - range.first + 1, 0);
}

void checkRange(MediaInput& input, const FrameRange& range) {
  const std::int64_t bound = boundOf(input);
  if (bound > 0 && range.isBounded() && range.last >= bound)
    failAtEnd(input, "");
}

void checkRead(const RangeRead& read, MediaInput& input, const FrameRange& range) {
  const std::string asked = range.first == range.last
                                ? std::to_string(range.first)
                                : std::to_string(range.first) + " to " + std::to_string(range.last);
  if (!read.continues && range.isBounded() && read.last < range.last)
    failAtEnd(input, read.written > 0 ? "its last frame is " + std::to_string(read.last) + "; "
                                      : std::string());
  if (read.written > 0)
    return;
  if (range.isWhole())
    throw Failure(ExitCode::kInput, "no frames in the video", input.path(),
                  "check it with ffprobe");
  throw Failure(ExitCode::kInput, "no frame has the number " + asked, input.path(),
                "frames are numbered by their time, and the video has a gap there");
}

}  // namespace nkdraw::tool
