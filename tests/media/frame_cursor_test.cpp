// SPDX-License-Identifier: BSD-2-Clause
//
// Walking along a clip by frame numbers, gaps included.
#include <media/frame_cursor.h>

#include <gtest/gtest.h>

#include <vector>

using namespace nkdraw::media;

namespace {

using Indices = std::vector<std::int64_t>;

/// Frames that are their own numbers.
class NumberFeed {
 public:
  using Unit = std::int64_t;
  explicit NumberFeed(Indices numbers) : numbers_(std::move(numbers)) {}

  bool next(Unit& unit, std::int64_t& index) {
    if (next_ == numbers_.size())
      return false;
    unit = index = numbers_[next_++];
    return true;
  }

 private:
  Indices numbers_;
  std::size_t next_ = 0;
};

Indices passed(FrameCursor<NumberFeed>& cursor, std::int64_t end) {
  Indices numbers;
  cursor.passUntil(end, [&](std::int64_t unit, std::int64_t index) {
    EXPECT_EQ(unit, index);
    numbers.push_back(index);
  });
  return numbers;
}

}  // namespace

TEST(FrameCursor, PassesFramesUpToAnEnd) {
  FrameCursor<NumberFeed> cursor(Indices{0, 1, 2, 3, 4});
  EXPECT_EQ(passed(cursor, 3), (Indices{0, 1, 2}));
  EXPECT_EQ(passed(cursor, 3), Indices{});
  EXPECT_TRUE(cursor.hasMore());
  EXPECT_EQ(passed(cursor, cursor.kEnd), (Indices{3, 4}));
  EXPECT_FALSE(cursor.hasMore());
}

TEST(FrameCursor, ShowsTheFrameBeforeAGap) {
  FrameCursor<NumberFeed> cursor(Indices{0, 1, 4, 5});
  for (const auto& [index, seen] : {std::pair{0, 0}, {1, 1}, {2, 1}, {3, 1}, {4, 4}, {5, 5}}) {
    ASSERT_NE(cursor.shownAt(index), nullptr) << index;
    EXPECT_EQ(*cursor.shownAt(index), seen) << index;
  }
  EXPECT_EQ(cursor.shownAt(6), nullptr);
}

TEST(FrameCursor, ShowsTheFrameBehindAGapThatItBeganIn) {
  FrameCursor<NumberFeed> cursor(Indices{0, 3, 4});
  EXPECT_EQ(passed(cursor, 2), Indices{0});
  ASSERT_NE(cursor.shownAt(2), nullptr);
  EXPECT_EQ(*cursor.shownAt(2), 3);
  EXPECT_EQ(*cursor.shownAt(4), 4);
}

TEST(FrameCursor, PassesOnWhatItHasNotShown) {
  FrameCursor<NumberFeed> cursor(Indices{0, 1, 2, 3, 4});
  EXPECT_EQ(*cursor.shownAt(1), 1);
  EXPECT_EQ(passed(cursor, cursor.kEnd), (Indices{2, 3, 4}));
}

TEST(FrameCursor, ShowsNothingOfAnEmptyClip) {
  FrameCursor<NumberFeed> cursor(Indices{});
  EXPECT_EQ(cursor.shownAt(0), nullptr);
}
