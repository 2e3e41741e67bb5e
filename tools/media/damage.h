// SPDX-License-Identifier: BSD-2-Clause
//
// Damaged frames of a clip: the run stops at the first one, or goes on and lists them at the end.
#pragma once

#include "media/timecode_source.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

enum class OnDamage {
  kStop,
  kContinue,  ///< a damaged frame stays as far as it was decoded, a lost one repeats the one before
};

class DamageList {
 public:
  explicit DamageList(std::string path) : path_(std::move(path)) {}

  /// What to do from now on, and the first frame's timecode for messages.
  void begin(OnDamage action, const TimecodeStart& timecode);
  [[nodiscard]] bool goesOn() const { return action_ == OnDamage::kContinue; }

  /// Frame `index` is damaged; `why` in a few words. Throws Failure if the run is to stop.
  void note(std::int64_t index, const std::string& why);
  /// The file ends too early.
  void noteEnd(const std::string& why) { end_ = why; }

  /// Tells the user on standard error, one frame a line.
  void report() const;
  /// "3 frames", or none if all is well.
  [[nodiscard]] std::optional<std::string> summary() const;

 private:
  struct Damage {
    std::int64_t index;
    std::string why;
  };
  [[nodiscard]] std::string describe(std::int64_t index) const;

  std::string path_;
  OnDamage action_ = OnDamage::kStop;
  std::optional<TimecodeStart> timecode_;
  std::vector<Damage> frames_;
  std::string end_;
};

}  // namespace nkdraw::media
