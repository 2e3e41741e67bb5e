// SPDX-License-Identifier: BSD-2-Clause
#include "media/image_sequence.h"

#include "media/failure.h"
#include "media/picture_kind.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <vector>

namespace nkdraw::media {
namespace {

namespace fs = std::filesystem;

constexpr char kFormat[] = "image2";

/// A file name around the number.
struct Pattern {
  std::string_view head, tail;
  std::size_t digits;  // at least
};

/// None if the name is not that of a sequence.
std::optional<Pattern> patternOf(std::string_view name) {
  const std::size_t percent = name.find('%');
  if (percent == std::string_view::npos || name.find('%', percent + 1) != std::string_view::npos)
    return std::nullopt;
  const char* const end = name.data() + name.size();
  const char* const from = name.data() + percent + 1;
  constexpr int kMostDigits = 10;
  int digits = 0;
  const char* const type = std::from_chars(from, end, digits).ptr;
  if (type == end || *type != 'd' || digits < 0 || digits > kMostDigits)
    return std::nullopt;
  return Pattern{name.substr(0, percent), {type + 1, end}, static_cast<std::size_t>(digits)};
}

std::string nameOf(const Pattern& pattern, std::int64_t number) {
  const std::string text = std::to_string(number);
  const std::size_t zeros = pattern.digits - std::min(pattern.digits, text.size());
  return std::string(pattern.head) + std::string(zeros, '0') + text + std::string(pattern.tail);
}

/// The number of the picture with this name, if it belongs to the sequence.
std::optional<std::int64_t> numberOf(const Pattern& pattern, std::string_view name) {
  const bool fits = name.size() > pattern.head.size() + pattern.tail.size() &&
                    name.starts_with(pattern.head) && name.ends_with(pattern.tail);
  if (!fits)
    return std::nullopt;
  const char* const from = name.data() + pattern.head.size();
  const char* const end = name.data() + name.size() - pattern.tail.size();
  int number = 0;  // FFmpeg has no larger ones
  const auto [rest, error] = std::from_chars(from, end, number);
  if (error != std::errc() || rest != end || number < 0 || nameOf(pattern, number) != name)
    return std::nullopt;
  return number;
}

/// In ascending order.
std::vector<std::int64_t> numbersFrom(std::int64_t first, const std::string& path) {
  const std::string sequence = fs::path(path).filename().string();
  const Pattern pattern = patternOf(sequence).value();
  const fs::path folder = fs::path(path).parent_path();
  std::vector<std::int64_t> numbers;
  std::error_code error;
  for (fs::directory_iterator each(folder.empty() ? "." : folder, error), end;
       !error && each != end; each.increment(error)) {
    const auto number = numberOf(pattern, each->path().filename().string());
    if (number && *number >= first)
      numbers.push_back(*number);
  }
  std::ranges::sort(numbers);
  return numbers;
}

}  // namespace

bool isSequenceName(const std::string& path) {
  return pictureKindOf(path) != nullptr &&
         patternOf(fs::path(path).filename().string()).has_value();
}

std::string pictureName(const std::string& path, std::int64_t number) {
  const std::string name = fs::path(path).filename().string();
  return fs::path(path).replace_filename(nameOf(patternOf(name).value(), number)).string();
}

PictureRun findPictures(const std::string& path, std::optional<std::int64_t> first) {
  const std::vector<std::int64_t> numbers = numbersFrom(first.value_or(0), path);
  PictureRun run;
  if (numbers.empty() || (first && numbers.front() != *first))
    return run;
  run.first = numbers.front();
  while (static_cast<std::size_t>(run.count) < numbers.size() &&
         numbers[static_cast<std::size_t>(run.count)] == run.end())
    ++run.count;
  run.gap = static_cast<std::size_t>(run.count) < numbers.size();
  return run;
}

std::optional<std::int64_t> lowestPicture(const std::string& path, std::int64_t first) {
  const std::vector<std::int64_t> numbers = numbersFrom(first, path);
  return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

const AVInputFormat* sequenceDemuxer(const PictureRun& pictures, AVRational rate,
                                     Options& options) {
  const AVRational used = rate.num > 0 ? rate : kUsualSequenceRate;
  options.set("framerate", (std::to_string(used.num) + "/" + std::to_string(used.den)).c_str());
  options.set("pattern_type", "sequence");
  options.set("start_number", std::to_string(pictures.first).c_str());
  options.set("start_number_range", "1");
  return av_find_input_format(kFormat);
}

std::string sequenceUrl(const std::string& path) {
  std::string url = "file:";
  const std::size_t name = path.size() - fs::path(path).filename().string().size();
  for (std::size_t i = 0; i < path.size(); ++i)
    url += path[i] == '%' && i < name ? "%%" : std::string(1, path[i]);
  return url;
}

const AVOutputFormat& sequenceFormat() {
  const AVOutputFormat* const format = av_guess_format(kFormat, nullptr, nullptr);
  if (format == nullptr)
    throw Failure(ExitCode::kProcessing, "no image sequences", "FFmpeg", "install a full FFmpeg");
  return *format;
}

}  // namespace nkdraw::media
