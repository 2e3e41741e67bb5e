// SPDX-License-Identifier: BSD-2-Clause
//
// Frames to wipe, and progress of every kind.
#pragma once

#include "wipe_reference.h"

#include <tests/support/frame.h>

#include <gtest/gtest.h>

#include <ostream>

namespace nkdraw {

/// For the messages of failed assertions.
inline std::ostream& operator<<(std::ostream& stream, const WipeTask& t) {
  return stream << "wipe " << t.wipe << " of " << t.width << 'x' << t.height << " in layout "
                << t.pixelType << ", pitches " << t.pitchA << ' ' << t.pitchB << ", progress "
                << t.position << " of " << t.rangeStart << " to " << t.rangeEnd << ", rectangle "
                << t.left << ' ' << t.right << ' ' << t.top << ' ' << t.bottom;
}

}  // namespace nkdraw

namespace nkdraw::test {

struct Progress {
  std::uint32_t start, end, position;
};

/// Inside a range, at its ends and beyond it; of short and of long ranges, which may wrap.
inline Progress anyProgress(Random& random) {
  const std::uint32_t ranges[] = {
      1, 2, 3, 10, 100, 65536, 0x80000000, 0xFFFFFFFF, random.word() | 1};
  const std::uint32_t range = ranges[random.word() % std::size(ranges)];
  const std::uint32_t positions[] = {0,         range,     range - 1,    range + 1,
                                     range / 2, 3 * range, random.word()};
  const std::uint32_t inside = random.word() % range;
  const std::uint32_t position =
      random.flag() ? inside : positions[random.word() % std::size(positions)];
  const std::uint32_t start = random.flag() ? 0 : random.word();
  return {start, start + range, position};
}

/// The frames of one wipe, full of noise, with guards around them.
class NoiseFrames {
 public:
  /// Every frame has room for `height` rows of the larger pitch.
  NoiseFrames(std::uint32_t width, std::uint32_t height, std::uint32_t pitchA, std::uint32_t pitchB,
              std::uint32_t seed)
      : a(std::size_t{height} * std::max(pitchA, pitchB), seed),
        b(a.bytes().size(), seed + 1),
        dst(a.bytes().size(), seed + 2) {
    task.pitchA = pitchA;
    task.pitchB = pitchB;
    task.pitchDst = 0xDEADBEEF;
    task.width = task.right = width;
    task.height = task.bottom = height;
  }

  void setProgress(const Progress& progress) {
    task.rangeStart = progress.start;
    task.rangeEnd = progress.end;
    task.position = progress.position;
  }
  void setRectangle(std::uint32_t left, std::uint32_t right, std::uint32_t top,
                    std::uint32_t bottom) {
    task.left = left;
    task.right = right;
    task.top = top;
    task.bottom = bottom;
  }

  /// Draws once with `reference` and once with `draw`, and compares all bytes.
  template <class Reference, class Draw>
  void expectTheSame(Reference reference, Draw draw) {
    expectTheSameOnto(dst, reference, draw);
    ASSERT_TRUE(a.untouched()) << task;
    ASSERT_TRUE(b.untouched()) << task;
  }
  /// `target` may be one of the inputs; these are restored afterwards.
  template <class Reference, class Draw>
  void expectTheSameOnto(Frame& target, Reference reference, Draw draw) {
    const Frame before = target;
    task.srcA = a.data();
    task.srcB = b.data();
    task.dst = target.data();
    reference(task);
    const Frame wanted = target;
    target = before;
    task.srcA = a.data();
    task.srcB = b.data();
    task.dst = target.data();
    draw(task);
    const bool same = wanted.all() == target.all();
    target = before;
    ASSERT_TRUE(same) << task;
  }

  WipeTask task{};
  Frame a, b, dst;
};

/// Frames of a random small size and random pitches of whole rows.
inline NoiseFrames anyFrames(Random& random, std::uint32_t pixelBytes, int largest = 12) {
  const auto width = static_cast<std::uint32_t>(random.between(1, largest));
  const auto height = static_cast<std::uint32_t>(random.between(1, largest));
  const auto pitch = [&] { return width * pixelBytes + (random.flag() ? 0 : random.word() % 20); };
  const std::uint32_t pitchA = pitch(), pitchB = random.flag() ? pitchA : pitch();
  return {width, height, pitchA, pitchB, random.word() % 1000};
}

inline void setAnyRectangle(Random& random, NoiseFrames& frames) {
  const auto upTo = [&](std::uint32_t most) { return random.word() % (most + 1); };
  const std::uint32_t left = upTo(frames.task.width), top = upTo(frames.task.height);
  frames.setRectangle(left, left + upTo(frames.task.width - left), top,
                      top + upTo(frames.task.height - top));
}

}  // namespace nkdraw::test
