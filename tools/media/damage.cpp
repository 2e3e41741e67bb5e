// SPDX-License-Identifier: BSD-2-Clause
#include "media/damage.h"

#include "media/failure.h"
#include "media/stream_facts.h"
#include "media/time_window.h"

#include <cstdio>

namespace nkdraw::media {
namespace {

constexpr std::size_t kMostNamed = 1000;
constexpr std::size_t kMostKnown = 4096;  // more than are on their way from decoder to output

/// Says that there are more than were named.
void reportMore(const std::string& path, std::size_t named, std::size_t count) {
  if (count > named)
    std::fprintf(stderr, "nkdraw: damaged: %s, and %zu more\n", path.c_str(), count - named);
}

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
  ++frameCount_;
  if (frames_.size() < kMostNamed)
    frames_.push_back({index, why});
  lastFrames_.insert(index);
  if (lastFrames_.size() > kMostKnown)
    lastFrames_.erase(lastFrames_.begin());
}

/// Each output may tell of a packet, one after the other in each stream.
bool DamageList::isToldAgain(int stream, std::int64_t time, const std::string& text) {
  const auto latest = latestPacket_.find(stream);
  const bool isLater =
      time == AV_NOPTS_VALUE || latest == latestPacket_.end() || time > latest->second;
  if (time != AV_NOPTS_VALUE && isLater)
    latestPacket_[stream] = time;
  return packets_.size() < kMostNamed ? named_.contains(text) : !isLater;
}

void DamageList::noteStream(const AVStream& stream, std::int64_t time, const std::string& why) {
  const std::string text = placeText(stream, time) + ": " + why;
  if (!goesOn())
    throw Failure(ExitCode::kProcessing, "a packet of the input is damaged", path_,
                  text + "; give --on-damage continue to go on");
  if (isToldAgain(stream.index, time, text))
    return;
  ++packetCount_;
  if (packets_.size() < kMostNamed) {
    packets_.push_back(text);
    named_.insert(text);
  }
}

bool DamageList::contains(std::int64_t index) const {
  return lastFrames_.contains(index);
}

bool DamageList::report() const {
  for (const Damage& damage : frames_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s: %s\n", path_.c_str(),
                 describe(damage.index).c_str(), damage.why.c_str());
  reportMore(path_, frames_.size(), frameCount_);
  for (const std::string& packet : packets_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s\n", path_.c_str(), packet.c_str());
  reportMore(path_, packets_.size(), packetCount_);
  if (!end_.empty())
    std::fprintf(stderr, "nkdraw: damaged: %s, its end: %s\n", path_.c_str(), end_.c_str());
  return !frames_.empty() || !packets_.empty() || !end_.empty();
}

std::string DamageList::summary() const {
  std::string count = counted(frameCount_, "frame");
  if (!packets_.empty())
    count += ", " + counted(packetCount_, "packet") + " of other streams";
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
