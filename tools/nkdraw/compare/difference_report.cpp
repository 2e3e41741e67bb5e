// SPDX-License-Identifier: BSD-2-Clause
#include "compare/difference_report.h"

#include "media/failure.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace nkdraw::tool {
namespace {

std::string counted(std::int64_t number, const char* thing) {
  return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

}  // namespace

AVPixelFormat comparedFormat(AVPixelFormat a, AVPixelFormat b) {
  return a == b && FrameComparer::takes(a) ? a : AV_PIX_FMT_BGRA;
}

DifferenceReport::DifferenceReport(const std::string& path, bool overwrite, ClipPair& clips)
    : path_(path),
      table_(path == kStandardOutput ? std::cout : stored_),
      rate_(clips.frames.rate),
      timecode_(timecodeOf(clips.a, rate_)),
      convertA_(comparedFormat(decodedFormat(clips.a), decodedFormat(clips.b)), false),
      convertB_(comparedFormat(decodedFormat(clips.a), decodedFormat(clips.b)), false),
      comparer_(comparedFormat(decodedFormat(clips.a), decodedFormat(clips.b))) {
  if (path != kStandardOutput)
    stored_.open(file_.emplace(path, overwrite).temporary());
  table_ << "frame,timecode,seconds,pixels,largest";
  for (const std::string& channel : comparer_.channels())
    table_ << ",largest_" << channel;
  table_ << '\n';
}

void DifferenceReport::add(AVFrame& a, AVFrame& b, std::int64_t index) {
  const Difference difference = comparer_.compare(convertA_.convert(a), convertB_.convert(b));
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.6f",
                static_cast<double>(index) * rate_.den / rate_.num);
  table_ << index << ',' << timecodeText(timecode_, index) << ',' << seconds << ','
         << difference.pixels << ',' << difference.largestOfAll();
  for (std::size_t i = 0; i < comparer_.channels().size(); ++i)
    table_ << ',' << difference.largest[i];
  table_ << '\n';
  checkWritten();
  ++frames_;
  framesThatDiffer_ += difference.pixels > 0 ? 1 : 0;
  pixels_ += difference.pixels;
  largest_ = std::max(largest_, difference.largestOfAll());
}

void DifferenceReport::finish(std::FILE* summary) {
  stored_.close();
  table_.flush();
  checkWritten();
  if (file_)
    file_->commit();
  std::FILE* const to = file_ ? summary : stderr;
  const std::string compared = counted(frames_, "frame") + " compared";
  if (framesThatDiffer_ == 0)
    std::fprintf(to, "%s, no pixel differs\n", compared.c_str());
  else
    std::fprintf(to, "%s, differences in %s: %s in all, by at most %u\n", compared.c_str(),
                 counted(framesThatDiffer_, "frame").c_str(), counted(pixels_, "pixel").c_str(),
                 largest_);
}

void DifferenceReport::checkWritten() {
  if (!table_)
    throw Failure(ExitCode::kOutput, "the report can't be written", path_, "is the disk full?");
}

}  // namespace nkdraw::tool
