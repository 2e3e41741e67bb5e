// SPDX-License-Identifier: BSD-2-Clause
//
// What an overlay starts with, and what Create takes over.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace {

using namespace nkdraw::test;

TEST(OverlaySettings, StartAsDocumented) {
  const Overlay o;
  EXPECT_EQ(o.Enabled, 0U);
  EXPECT_EQ(o.FillBackground, 1U);
  EXPECT_EQ(o.AudioEnable, 0U);
  EXPECT_EQ(o.AudioX, 20);
  EXPECT_EQ(o.AudioY, 100);
  EXPECT_EQ(o.AudioChannels, 2U);
  EXPECT_EQ(o.VChipEnable, 0U);
  EXPECT_EQ(o.CaptionsEnable, 0U);
  EXPECT_EQ(o.CaptionSource, 0U);
  EXPECT_EQ(o.TimeCodeLTCEnable, 0U);
  EXPECT_EQ(o.TimeCodeLUBEnable, 0U);
  EXPECT_EQ(o.TimeCodeVITCEnable, 0U);
  EXPECT_EQ(o.TimeCodeVUBEnable, 0U);
  EXPECT_EQ(o.TimeCodeVsyncEnable, 0U);
  EXPECT_EQ(o.TimeCodeLTCFrameEnable, 0U);
  EXPECT_EQ(o.TimeCodeVITCFrameEnable, 0U);
  EXPECT_EQ(o.timeCodeType, 4U);
  EXPECT_EQ(o.TimeCodeX, 20);
  EXPECT_EQ(o.TimeCodeY, 300);
  EXPECT_EQ(o.TimeCodeSize, 2U);
  EXPECT_EQ(o.WatermarkEnable, 0U);
  EXPECT_EQ(o.WatermarkX, 400);
  EXPECT_EQ(o.WatermarkY, 400);
  EXPECT_EQ(o.WatermarkOpacity, 50U);
  EXPECT_EQ(o.watermarkPath, nullptr);
  EXPECT_EQ(o.SourceFormatEnable, 0U);
  EXPECT_EQ(o.SourceFormatX, 20);
  EXPECT_EQ(o.SourceFormatY, 600);
  for (int slot = 0; slot < 10; ++slot) {
    EXPECT_EQ(o.CustomTextEnabled[slot], 0U);
    EXPECT_EQ(o.CustomTextX[slot], 500);
    EXPECT_EQ(o.CustomTextY[slot], 30 * slot);
    EXPECT_EQ(o.CustomText[slot], nullptr);
  }
  EXPECT_EQ(o.surface, nullptr);
  const BITMAPINFO noHeader{};
  EXPECT_EQ(std::memcmp(&o.videoHeader, &noHeader, sizeof noHeader), 0);
  EXPECT_EQ(sizeof o.videoHeader, 44U);
  EXPECT_EQ(o.ownedText, nullptr);
  EXPECT_EQ(o.iniPath, nullptr);
  EXPECT_EQ(o.iniFile, nullptr);
  EXPECT_EQ(o.captionHandle, nullptr);
  EXPECT_EQ(o.watermarkLayout, 0U);
  EXPECT_EQ(o.watermark10, nullptr);
  EXPECT_EQ(o.watermark8, nullptr);
  EXPECT_EQ(o.watermarkRGBA, nullptr);
  EXPECT_EQ(o.frameLayout, 0U);
  const HZWVIDEO noVideo{};
  const HZWSYSTEM noSystem{};
  EXPECT_EQ(std::memcmp(&o.video, &noVideo, sizeof noVideo), 0);
  EXPECT_EQ(std::memcmp(&o.system, &noSystem, sizeof noSystem), 0);
}

TEST(OverlaySettings, HaveOneFieldForEachOfTheTenTexts) {
  static_assert(std::extent_v<decltype(Overlay::CustomTextEnabled)> == 10);
  static_assert(std::extent_v<decltype(Overlay::CustomTextX)> == 10);
  static_assert(std::extent_v<decltype(Overlay::CustomTextY)> == 10);
  static_assert(std::extent_v<decltype(Overlay::CustomText)> == 10);
  static_assert(std::extent_v<decltype(Overlay::meterHistory), 0> == 32);
  static_assert(std::extent_v<decltype(Overlay::meterHistory), 1> == 100);
}

TEST(OverlayCreate, KeepsTheWholeRecordsAndTheHeadOfTheHeader) {
  HZWVIDEO video{};
  HZWSYSTEM system{};
  Random random(109);
  for (std::size_t i = 0; i < sizeof video; ++i)
    reinterpret_cast<std::uint8_t*>(&video)[i] = static_cast<std::uint8_t>(random.word());
  for (std::size_t i = 0; i < sizeof system; ++i)
    reinterpret_cast<std::uint8_t*>(&system)[i] = static_cast<std::uint8_t>(random.word());
  Overlay o;
  std::memset(o.meterHistory, 0x55, sizeof o.meterHistory);
  EXPECT_EQ(o.Create(&video, &system), 0U);
  EXPECT_EQ(std::memcmp(&o.video, &video, 1428), 0);
  EXPECT_EQ(std::memcmp(&o.system, &system, 356), 0);
  EXPECT_EQ(std::memcmp(&o.videoHeader, &video, 44), 0);
  EXPECT_EQ(o.frameLayout, video.biCompression);
  for (const auto& row : o.meterHistory) {
    for (const std::int32_t level : row)
      ASSERT_EQ(level, 0);
  }
  EXPECT_EQ(o.surface, nullptr);
  EXPECT_EQ(o.captionHandle, nullptr);
}

TEST(OverlayCreate, TakesTheTimecodeTypeFromTheFrameRate) {
  const struct {
    std::uint32_t rate, scale;
  } kRates[] = {{30000, 1001}, {25, 1},       {24, 1}, {60000, 1001}, {50, 1},
                {30, 1},       {24000, 1001}, {30, 0}, {0, 0},        {0, 1}};
  for (const auto& row : kRates) {
    HZWVIDEO video = videoOf(kStreams[0]);
    video.frameRate = row.rate;
    video.frameScale = row.scale;
    const HZWSYSTEM system{};
    Overlay o;
    o.timeCodeType = 99;
    EXPECT_EQ(o.Create(&video, &system), 0U);
    EXPECT_EQ(o.timeCodeType, hzwGetTCType(static_cast<double>(row.rate) / row.scale))
        << row.rate << "/" << row.scale;
  }
}

TEST(OverlayCreate, LeavesTheSettingsAlone) {
  Overlay o;
  o.Enabled = 1;
  o.TimeCodeSize = 3;
  o.TimeCodeY = 301;
  o.setText(4, "text");
  HZWVIDEO video = videoOf(kStreams[0]);
  video.scanFlags = 0x100;
  const HZWSYSTEM system{};
  o.Create(&video, &system);
  EXPECT_EQ(o.Enabled, 1U);
  EXPECT_EQ(o.TimeCodeSize, 3U);
  EXPECT_EQ(o.TimeCodeY, 301);
  EXPECT_STREQ(o.CustomText[4], "text");
}

TEST(OverlaySettings, TheWatermarkPathIsThePointerThatWasGiven) {
  Overlay o;
  const char path[] = "logo.png";
  o.SetWatermarkPath(path);
  EXPECT_EQ(o.watermarkPath, path);
  o.SetWatermarkPath(nullptr);
  EXPECT_EQ(o.watermarkPath, nullptr);
}

}  // namespace
