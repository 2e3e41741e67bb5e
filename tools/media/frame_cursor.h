// SPDX-License-Identifier: BSD-2-Clause
//
// Walks through a clip by frame numbers. A number without a frame shows the frame before it.
#pragma once

#include <cstdint>
#include <limits>
#include <utility>

namespace nkdraw::media {

template <class Feed>
class FrameCursor {
 public:
  using Unit = typename Feed::Unit;
  static constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();

  /// Makes the feed from these arguments, and reads its first frame.
  template <class... Arguments>
  explicit FrameCursor(Arguments&&... arguments) : feed_(std::forward<Arguments>(arguments)...) {
    fetch();
  }

  [[nodiscard]] Feed& feed() { return feed_; }
  /// Whether there are frames not yet shown.
  [[nodiscard]] bool hasMore() const { return ahead_; }

  /// Passes on the frames not yet shown whose number is below `end`, in order, with their numbers.
  template <class Take>
  void passUntil(std::int64_t end, Take take) {
    for (; ahead_ && nextIndex_ < end; fetch())
      take(next_, nextIndex_);
  }

  /// The frame shown at `index`, valid until the next call; null past the end of the clip.
  [[nodiscard]] Unit* shownAt(std::int64_t index) {
    while (ahead_ && nextIndex_ <= index) {
      std::swap(shown_, next_);
      shownIndex_ = nextIndex_;
      fetch();
    }
    if (shownIndex_ < 0)
      return ahead_ ? &next_ : nullptr;
    return ahead_ || shownIndex_ >= index ? &shown_ : nullptr;
  }

 private:
  void fetch() { ahead_ = feed_.next(next_, nextIndex_); }

  Feed feed_;
  Unit shown_, next_;
  std::int64_t shownIndex_ = -1, nextIndex_ = 0;
  bool ahead_ = false;
};

}  // namespace nkdraw::media
