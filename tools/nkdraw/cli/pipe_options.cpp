// SPDX-License-Identifier: BSD-2-Clause
#include "cli/pipe_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace nkdraw::tool {
namespace {

/// The broadcast rates that are usually abbreviated: 29.97 is 30000/1001.
AVRational exactRate(AVRational rate) {
  constexpr double kNear = 0.006;
  for (const int whole : {24, 30, 48, 60, 120}) {
    const AVRational exact = {whole * 1000, 1001};
    if (std::abs(av_q2d(rate) - av_q2d(exact)) < kNear)
      return exact;
  }
  return rate;
}

/// An empty value is an error, not a missing one.
std::string readName(const std::string& option, const std::optional<std::string>& text,
                     const std::string& advice) {
  if (text && text->empty())
    badValue(option, "", advice);
  return text.value_or("");
}

constexpr char kHeading[] = "Pipes: - is the standard input or output";

}  // namespace

void addFormatTo(CLI::App& command, std::optional<std::string>& format) {
  OptionGroup(command, kHeading)
      .add("--format", format, "NAME",
           "Kind of file to write: mov, avi, matroska, nut, y4m,\n"
           "rawvideo ... (by OUTPUT's suffix; nut for a pipe)");
}

void PipeArguments::addTo(CLI::App& command) {
  addFormatTo(command, format_);
  addInputTo(command);
}

void PipeArguments::addInputTo(CLI::App& command) {
  OptionGroup group(command, kHeading);
  group.add("--input-format", inputFormat_, "NAME",
            "Kind of file to read, where its content does not tell");
  group.add("--input-size", inputSize_, "WxH", "Frame size of raw video");
  group.add("--input-layout", inputLayout_, "NAME",
            "Its layout (--list-layouts), or pixel format of FFmpeg");
  group.add("--input-rate", inputRate_, "RATE",
            "Its frames a second (25), or those of an image sequence\nas an input (as its header "
            "says, or 24)");
}

InputShape PipeArguments::input() const {
  InputShape shape;
  shape.format = readName("--input-format", inputFormat_, "see ffmpeg -demuxers");
  shape.layout = readName("--input-layout", inputLayout_, "see nkdraw burnin --list-layouts");
  if (inputSize_) {
    std::string_view left = *inputSize_;
    const auto size = takePair(left, 'x');
    constexpr int kLargest = 16384;
    if (!size || !left.empty() || std::min(size->x, size->y) < 1 ||
        std::max(size->x, size->y) > kLargest)
      badValue("--input-size", *inputSize_, "write WxH, up to 16384x16384");
    shape.width = size->x;
    shape.height = size->y;
  }
  if (inputRate_)
    shape.rate = readRate("--input-rate", *inputRate_);
  return shape;
}

AVRational readRate(const std::string& option, const std::string& text) {
  constexpr int kLargestTerm = 1001000;
  AVRational rate = {};
  if (av_parse_ratio(&rate, text.c_str(), kLargestTerm, AV_LOG_QUIET, nullptr) < 0 ||
      rate.num <= 0 || rate.den <= 0)
    badValue(option, text, "write frames a second: 25, 29.97, 30000/1001");
  return exactRate(rate);
}

}  // namespace nkdraw::tool
