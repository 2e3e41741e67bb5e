// SPDX-License-Identifier: BSD-2-Clause
//
// The table of differences between two clips.
#pragma once

#include "cli/using_media.h"
#include "compare/frame_difference.h"
#include "media/clip_pair.h"
#include "media/frame_converter.h"
#include "media/output_file.h"
#include "media/timecode_source.h"

#include <cstdio>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>

namespace nkdraw::tool {

/// The format in which the frames of two clips are compared: their own, or BGRA if the formats
/// differ or can't be compared as numbers.
[[nodiscard]] AVPixelFormat comparedFormat(AVPixelFormat a, AVPixelFormat b);

/// The name of standard output.
inline constexpr char kStandardOutput[] = "-";

/// Writes a line for each frame: its number, timecode and time, the pixels that differ, the largest
/// difference overall and in each channel.
class DifferenceReport {
 public:
  /// "-" is standard output. Throws Failure if `path` can't be written.
  DifferenceReport(const std::string& path, bool overwrite, ClipPair& clips);

  void add(AVFrame& a, AVFrame& b, std::int64_t index);
  /// Renames the file to its final name, and prints a summary on `summary`, or on standard error if
  /// the report is on standard output.
  void finish(std::FILE* summary);

 private:
  void checkWritten();

  std::optional<OutputFile> file_;  // none: standard output
  std::string path_;
  std::ofstream stored_;
  std::ostream& table_;
  AVRational rate_;
  TimecodeStart timecode_;
  FrameConverter convertA_, convertB_;
  FrameComparer comparer_;
  std::int64_t frames_ = 0, framesThatDiffer_ = 0, pixels_ = 0;
  std::uint32_t largest_ = 0;
};

}  // namespace nkdraw::tool
