// SPDX-License-Identifier: BSD-2-Clause
#include "media/damage.h"

#include "media/failure.h"

#include <cstdio>

namespace nkdraw::media {

void DamageList::begin(OnDamage action, const TimecodeStart& timecode) {
  action_ = action;
  timecode_ = timecode;
}

std::string DamageList::describe(std::int64_t index) const {
  return "frame " + std::to_string(index) +
         (timecode_ ? " at " + timecodeText(*timecode_, index) : "");
}

void DamageList::note(std::int64_t index, const std::string& why) {
  if (!goesOn())
    throw Failure(ExitCode::kProcessing, "a frame is damaged", path_ + ", " + describe(index),
                  why + "; give --on-damage continue to go on");
  frames_.push_back({index, why});
}

void DamageList::report() const {
  for (const Damage& damage : frames_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s: %s\n", path_.c_str(),
                 describe(damage.index).c_str(), damage.why.c_str());
  if (!end_.empty())
    std::fprintf(stderr, "nkdraw: damaged: %s, its end: %s\n", path_.c_str(), end_.c_str());
}

std::optional<std::string> DamageList::summary() const {
  if (frames_.empty() && end_.empty())
    return std::nullopt;
  std::string text = std::to_string(frames_.size()) + (frames_.size() == 1 ? " frame" : " frames");
  return end_.empty() ? text : text + " and the end";
}

}  // namespace nkdraw::media
