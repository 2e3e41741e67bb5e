// SPDX-License-Identifier: BSD-2-Clause
//
// Where an overlay's texts go by default, and which rows they touch.
#include <burnin/overlay_plan.h>
#include <media/failure.h>

#include <gtest/gtest.h>

using namespace nkdraw::tool;

TEST(Places, DefaultToTheLowerLeftInEverySize) {
  struct Expected {
    int width, height;
    bool interlaced;
    unsigned size;
    Point at;
  };
  // A twentieth of the frame as margin; size by height, less where the frame is narrow.
  const Expected kExpected[] = {
      {3840, 2160, false, 8, {192, 1970}}, {1920, 1080, false, 4, {96, 984}},
      {1920, 1080, true, 4, {96, 984}},    {1280, 720, false, 3, {64, 652}},
      {720, 576, false, 2, {36, 526}},     {720, 576, true, 2, {36, 526}},
      {640, 360, false, 2, {32, 320}},     {320, 180, false, 1, {16, 160}},
      {320, 180, true, 2, {16, 150}},      {88, 11, false, 1, {0, 0}},
      {100, 1080, false, 1, {4, 1014}},
  };
  for (const Expected& each : kExpected) {
    FrameKind frames;
    frames.width = each.width;
    frames.height = each.height;
    frames.interlaced = each.interlaced;
    const OverlayPlan plan = planOverlay({}, frames, midnight({25, 1}));
    EXPECT_EQ(plan.timecodeSize, each.size) << each.width;
    EXPECT_EQ(plan.timecodeAt.x, each.at.x) << each.width;
    EXPECT_EQ(plan.timecodeAt.y, each.at.y) << each.width;
  }
}

TEST(Places, AreRefusedWhenTheFrameIsTooSmallForAnyText) {
  FrameKind frames;
  frames.width = 87;
  frames.height = 100;
  EXPECT_THROW((void)planOverlay({}, frames, midnight({25, 1})), Failure);
  frames.width = 88;
  frames.height = 10;
  EXPECT_THROW((void)planOverlay({}, frames, midnight({25, 1})), Failure);
}

TEST(Places, GiveTheRowsThatAreTouchedWithoutOverlaps) {
  FrameKind frames;
  frames.width = 640;
  frames.height = 480;
  OverlayRequest request;
  request.clock = true;
  request.position = Point{0, 200};
  request.size = 2;
  request.textSize = 3;
  request.texts = {{{0, 230}, "A"}, {{0, 0}, "B"}, {{0, 449}, "C"}};
  const auto rows = planOverlay(request, frames, midnight({25, 1})).rows();
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].first, 0);
  EXPECT_EQ(rows[0].end, 31);
  EXPECT_EQ(rows[1].first, 200);
  EXPECT_EQ(rows[1].end, 261);
  EXPECT_EQ(rows[2].first, 449);
  EXPECT_EQ(rows[2].end, 480);
}
