// SPDX-License-Identifier: BSD-2-Clause
//
// The damaged frames of a clip, and what else is damaged in it: the run stops at the first one, or
// goes on and lists them at the end.
#pragma once

#include "media/libav.h"
#include "media/timecode_source.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace nkdraw::media {

enum class OnDamage {
  kStop,
  kContinue,  ///< a damaged frame stays as far as it was decoded, a lost one repeats the one before
};

class DamageList {
 public:
  /// `path` is the clip, for messages.
  explicit DamageList(std::string path) : path_(std::move(path)) {}

  /// What to do from now on.
  void setAction(OnDamage action) { action_ = action; }
  /// The first frame's timecode, for messages.
  void setTimecode(const TimecodeStart& timecode) { timecode_ = timecode; }
  [[nodiscard]] OnDamage action() const { return action_; }
  [[nodiscard]] bool goesOn() const { return action_ == OnDamage::kContinue; }

  /// "frame 17 (00:00:00:17)"
  [[nodiscard]] std::string describe(std::int64_t index) const;

  /// Frame `index` is damaged; `why` in a few words. Throws Failure if the run is to stop.
  void note(std::int64_t index, const std::string& why);
  /// A packet of another stream is damaged, at that time in microseconds, or AV_NOPTS_VALUE. Throws
  /// Failure if the run is to stop.
  void noteStream(const AVStream& stream, std::int64_t time, const std::string& why);
  /// Whether this frame is known to be damaged; of the last few thousand.
  [[nodiscard]] bool contains(std::int64_t index) const;
  /// The file ends too early; only for runs that go on.
  void noteEnd(const std::string& why) { end_ = why; }

  [[nodiscard]] bool isEmpty() const {
    return frameCount_ == 0 && packetCount_ == 0 && end_.empty();
  }

  /// Lists them on standard error, one a line. Returns whether there are any.
  [[nodiscard]] bool report() const;
  /// "in.mov (3 frames)"
  [[nodiscard]] std::string summary() const;

 private:
  struct Damage {
    std::int64_t index;
    std::string why;
  };

  std::string path_;
  OnDamage action_ = OnDamage::kStop;
  std::optional<TimecodeStart> timecode_;
  [[nodiscard]] bool isToldAgain(int stream, std::int64_t time, const std::string& text);

  // Of endless inputs only the first are named.
  std::vector<Damage> frames_;
  std::size_t frameCount_ = 0;
  std::set<std::int64_t> lastFrames_;  // their numbers
  std::vector<std::string> packets_;   // of other streams, in words
  std::size_t packetCount_ = 0;
  std::set<std::string> named_;               // the same as packets_
  std::map<int, std::int64_t> latestPacket_;  // the time of each stream's
  std::string end_;
};

/// Lists the damage of the clips. If there is any, throws the Failure that ends a run whose output
/// is complete all the same.
void reportDamage(std::initializer_list<const DamageList*> clips);

}  // namespace nkdraw::media
