// SPDX-License-Identifier: BSD-2-Clause
#include "media/timecode_source.h"

#include "media/failure.h"
#include "media/stream_timecode.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

namespace nkdraw::media {
namespace {

struct DropPair {
  TimecodeType drop, nonDrop;
};
constexpr DropPair kDropPairs[] = {{TimecodeType::k29_97Drop, TimecodeType::k29_97},
                                   {TimecodeType::k59_94Drop, TimecodeType::k59_94},
                                   {TimecodeType::k119_88Drop, TimecodeType::k119_88}};

TimecodeType usualType(AVRational rate) {
  return static_cast<TimecodeType>(hzwGetTCType(av_q2d(rate)));
}

bool asksForDrop(const std::string& text) {
  return text.find_first_of(";.") != std::string::npos;
}

/// The type that counts at this rate, with or without drop-frame; none if this rate can't drop.
std::optional<TimecodeType> typeFor(AVRational rate, bool drop) {
  const TimecodeType usual = usualType(rate);
  const auto* const pair =
      std::ranges::find_if(kDropPairs, [&](DropPair each) { return each.drop == usual; });
  if (pair != std::end(kDropPairs))
    return drop ? pair->drop : pair->nonDrop;
  return drop ? std::nullopt : std::optional(usual);
}

const char* tagOf(const AVDictionary* tags) {
  const AVDictionaryEntry* const entry = av_dict_get(tags, "timecode", nullptr, 0);
  return entry != nullptr ? entry->value : nullptr;
}

/// An unreadable tag counts as none. A drop-frame tag at a rate that can't drop counts without
/// dropping.
std::optional<TimecodeStart> fromTag(const char* tag, AVRational rate, const char* origin) {
  if (tag == nullptr)
    return std::nullopt;
  const TimecodeType type =
      typeFor(rate, asksForDrop(tag)).value_or(typeFor(rate, false).value_or(usualType(rate)));
  const auto frame = parseTimecode(tag, type);
  if (!frame)
    return std::nullopt;
  return TimecodeStart{type, *frame, origin, true};
}

}  // namespace

TimecodeStart timecodeFromText(const std::string& text, AVRational rate,
                               const std::string& origin) {
  const bool drop = asksForDrop(text);
  const auto type = typeFor(rate, drop);
  if (!type)
    throw Failure(ExitCode::kUsage, "no drop-frame timecode at this frame rate", text,
                  "write ':' before the frames");
  const auto frame = parseTimecode(text, *type);
  if (!frame)
    throw Failure(ExitCode::kUsage, "not a timecode at this frame rate", text,
                  "write HH:MM:SS:FF, or HH:MM:SS;FF for drop-frame");
  return {*type, *frame, origin, true};
}

TimecodeStart timecodeOf(MediaInput& input, AVRational rate) {
  const AVFormatContext& file = input.file();
  if (auto start = fromTag(tagOf(input.video().metadata), rate, "the video's tag"))
    return *start;
  for (const AVStream* const stream : std::span(file.streams, file.nb_streams)) {
    if (auto start = fromTag(tagOf(stream->metadata), rate, "the timecode track"))
      return *start;
  }
  if (auto start = fromTag(tagOf(file.metadata), rate, "the file's tag"))
    return *start;
  const StreamTimecode found = streamTimecode(input);
  if (auto start = fromTag(found.text.c_str(), rate, found.origin.c_str()))
    return *start;
  return midnight(rate);
}

TimecodeStart midnight(AVRational rate) {
  return {usualType(rate), 0, "none in the file: from midnight", false};
}

bool countsAllFrames(const TimecodeStart& start, AVRational rate) {
  constexpr double kSecondsPerDay = 86400.0;
  return std::lround(framesPerDay(start.type) / kSecondsPerDay) == std::lround(av_q2d(rate));
}

std::string timecodeText(const TimecodeStart& start, std::int64_t index) {
  char text[16] = {};
  TcForm(static_cast<std::uint32_t>(start.frame + index), static_cast<std::uint32_t>(start.type),
         text);
  return text;
}

std::int64_t FrameClock::indexOf(std::int64_t time) {
  std::int64_t index = next_;
  if (time != AV_NOPTS_VALUE) {
    if (first_ == AV_NOPTS_VALUE)
      first_ = time;
    index = std::max<std::int64_t>(av_rescale_q(time - first_, timeBase_, av_inv_q(rate_)), 0);
  }
  next_ = index + 1;
  return index;
}

}  // namespace nkdraw::media
