// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/captions.h>

#include <algorithm>
#include <iterator>

namespace {

TEST(Captions, AreNotOfferedForFramesThatTheLibraryDoesNotDrawIn) {
  HZWVIDEO video{};
  EXPECT_EQ(ccBurnOpen(nullptr), nullptr);
  EXPECT_EQ(ccBurnOpen(&video), nullptr);
  video.biWidth = video.biHeight = 64;
  video.biBitCount = 32;
  nkCaptionBurner* const burner = ccBurnOpen(&video);
  EXPECT_NE(burner, nullptr);
  ccBurnClose(burner);
  video.biCompression = 0x61616161;
  EXPECT_EQ(ccBurnOpen(&video), nullptr);
}

TEST(Captions, ANullBurnerDoesNothing) {
  char pixels[] = {1, 2, 3, 4};
  const std::uint8_t captions[] = {0xFC, 0x94, 0x2C};
  QFRAME frame{7, 8, pixels, captions, sizeof captions};
  EXPECT_EQ(ccBurnSetCCType(nullptr, 1), 0u);
  EXPECT_EQ(ccBurnSetCCDisplay(nullptr, 1), 0u);
  EXPECT_EQ(ccBurnAddCCData(nullptr, &frame), 0u);
  EXPECT_EQ(ccBurnIn(nullptr, &frame), 0u);
  EXPECT_EQ(ccBurnClose(nullptr), 0u);
  const char unchanged[] = {1, 2, 3, 4};
  EXPECT_TRUE(std::equal(std::begin(pixels), std::end(pixels), std::begin(unchanged)));
}

}  // namespace
