// SPDX-License-Identifier: BSD-2-Clause
#include "media/damage.h"

#include "media/failure.h"
#include "media/stream_facts.h"
#include "media/time_window.h"

#include <algorithm>
#include <cstdio>

namespace nkdraw::media {
namespace {

/// "3 frames"
std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// "stream 1 (audio, aac), 0.480 s"
std::string placeText(const AVStream& stream, std::int64_t time) {
  char moment[32] = "";
  if (time != AV_NOPTS_VALUE)
    std::snprintf(moment, sizeof moment, ", %.3f s",
                  static_cast<double>(time) * av_q2d(kMicroseconds));
  return "stream " + std::to_string(stream.index) + " (" + describeStream(stream) + ")" + moment;
}

}  // namespace

std::string DamageList::describe(std::int64_t index) const {
  return "frame " + std::to_string(index) +
         (timecode_ ? " (" + timecodeText(*timecode_, index) + ")" : "");
}

void DamageList::note(std::int64_t index, const std::string& why) {
  if (!goesOn())
    throw Failure(ExitCode::kProcessing, "a frame is damaged", path_,
                  describe(index) + ": " + why + "; give --on-damage continue to go on");
  frames_.push_back({index, why});
}

void DamageList::noteStream(const AVStream& stream, std::int64_t time, const std::string& why) {
  const std::string text = placeText(stream, time) + ": " + why;
  if (!goesOn())
    throw Failure(ExitCode::kProcessing, "a packet of the input is damaged", path_,
                  text + "; give --on-damage continue to go on");
  if (std::ranges::find(packets_, text) == packets_.end())  // each output may tell it
    packets_.push_back(text);
}

bool DamageList::contains(std::int64_t index) const {
  return std::ranges::any_of(frames_, [&](const Damage& each) { return each.index == index; });
}

bool DamageList::report() const {
  for (const Damage& damage : frames_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s: %s\n", path_.c_str(),
                 describe(damage.index).c_str(), damage.why.c_str());
  for (const std::string& packet : packets_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s\n", path_.c_str(), packet.c_str());
  if (!end_.empty())
    std::fprintf(stderr, "nkdraw: damaged: %s, its end: %s\n", path_.c_str(), end_.c_str());
  return !frames_.empty() || !packets_.empty() || !end_.empty();
}

std::string DamageList::summary() const {
  std::string count = counted(frames_.size(), "frame");
  if (!packets_.empty())
    count += ", " + counted(packets_.size(), "packet") + " of other streams";
  return path_ + " (" + count + (end_.empty() ? ")" : " and the end)");
}

void reportDamage(std::initializer_list<const DamageList*> clips) {
  std::string damaged;
  for (const DamageList* const clip : clips) {
    if (clip->report())
      damaged += (damaged.empty() ? "" : ", ") + clip->summary();
  }
  if (!damaged.empty())
    throw Failure(ExitCode::kDamaged, "the input is damaged", damaged,
                  "the output is written all the same, look at these frames");
}

}  // namespace nkdraw::media
