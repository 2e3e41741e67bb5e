// SPDX-License-Identifier: BSD-2-Clause
#include "media/damage.h"

#include "media/failure.h"

#include <cstdio>

namespace nkdraw::media {

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

bool DamageList::report() const {
  for (const Damage& damage : frames_)
    std::fprintf(stderr, "nkdraw: damaged: %s, %s: %s\n", path_.c_str(),
                 describe(damage.index).c_str(), damage.why.c_str());
  if (!end_.empty())
    std::fprintf(stderr, "nkdraw: damaged: %s, its end: %s\n", path_.c_str(), end_.c_str());
  return !frames_.empty() || !end_.empty();
}

std::string DamageList::summary() const {
  const std::string count =
      std::to_string(frames_.size()) + (frames_.size() == 1 ? " frame" : " frames");
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
