// SPDX-License-Identifier: BSD-2-Clause
//
// The audio meters, against a plain reference.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr int kWidth = 480, kHeight = 400;

struct Meters {
  Overlay overlay;
  BurnFrame frame;

  explicit Meters(const Stream& stream) : frame(1, kWidth, kHeight) {
    const HZWVIDEO video = videoOf(stream, kWidth, kHeight);
    const HZWSYSTEM system{};
    overlay.Create(&video, &system);
    overlay.BurnIn(&frame.record, nullptr, nullptr, 0);  // disabled: makes the surface alone
    overlay.surface->SetCanvas(frame.record.frameBuffer, video.biHeight, video.biWidth, 0);
    frame.frame.remember();
  }
};

/// The panel as it is described: lines of single colours.
void drawPlainly(NKDraw& surface, int x0, int y0, const std::uint32_t* levels,
                 const std::uint32_t* peaks) {
  surface.SetColorRGBA(0.0, 0.0, 0.0, 1.0, true);
  for (int y = y0; y < y0 + 200; ++y)
    surface.Line(x0, y, x0 + 280, y);
  surface.SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
  const char* const scale[] = {"  0", "-10", "-20", "-30"};
  for (int i = 0; i < 4; ++i) {
    tagRECT rect = {x0 + 10, y0 + 10 + 45 * i, x0 + 30, y0 + 20 + 45 * i};
    surface.DrawText(scale[i], 3, &rect, 0x400);
  }
  const int rowLevels[15] = {99999, 56235, 39811, 28184, 22388, 15849, 11221, 7944,
                             6310,  4467,  3163,  2239,  1779,  1259,  892};
  for (int channel = 0; channel < 8; ++channel) {
    const int left = x0 + 40 + 30 * channel;
    const auto valueOf = [channel](const std::uint32_t* words) {
      return static_cast<int>(channel % 2 == 0 ? words[channel / 2] & 0xFFFF
                                               : words[channel / 2] >> 16);
    };
    for (int row = 0; levels != nullptr && row < 15; ++row) {
      if (valueOf(levels) < rowLevels[row])
        continue;
      const double red = row < 6 ? 1.9 : 1.0, green = row < 3 ? 1.0 : 1.9;
      surface.SetColorRGBA(red, green, 1.0, 1.0, true);
      for (int y = y0 + 10 + 12 * row; y < y0 + 20 + 12 * row; ++y)
        surface.Line(left, y, left + 20, y);
    }
    if (peaks == nullptr || valueOf(peaks) < 631)
      continue;
    surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    const double part = (std::log10(static_cast<double>(valueOf(peaks))) * 20.0 - 56.0) / 41.0;
    const int top = static_cast<int>((200.0 - part * 200.0) + (y0 + 10));
    for (int y = top; y < top + 3; ++y)
      surface.Line(left, y, left + 20, y);
  }
}

void expectPlain(const Stream& stream, int x, int y, const std::uint32_t* levels,
                 const std::uint32_t* peaks) {
  Meters got(stream), wanted(stream);
  got.overlay.AudioX = x;
  got.overlay.AudioY = y;
  EXPECT_EQ(got.overlay.drawAudMeters(levels, peaks), 0U);
  drawPlainly(*wanted.overlay.surface, x, y, levels, peaks);
  ASSERT_EQ(got.frame.frame.all(), wanted.frame.frame.all()) << stream.name;
  EXPECT_TRUE(got.frame.frame.guardsIntact());
}

TEST(Meters, DrawPanelScaleSegmentsAndPeaksInEveryLayout) {
  std::mt19937 random(3);
  for (const Stream& stream : kStreams) {
    for (int i = 0; i < 6; ++i) {
      std::uint32_t levels[4], peaks[4];
      for (auto* const words : {levels, peaks}) {
        for (int word = 0; word < 4; ++word)
          words[word] = static_cast<std::uint32_t>(random());
      }
      expectPlain(stream, 20 + 31 * i, 100 + 17 * i, levels, peaks);
    }
    expectPlain(stream, 20, 100, nullptr, nullptr);
  }
}

TEST(Meters, LightARowFromItsLevelOn) {
  constexpr std::uint32_t kFrom[] = {892,  1259,  1779,  2239,  3163,  4467,  6310,
                                     7944, 11221, 15849, 22388, 28184, 39811, 56235};
  for (int row = 14; row >= 1; --row) {
    for (const int more : {-1, 0, 1}) {
      Meters meters(kStreams[0]);
      const std::uint32_t level = kFrom[14 - row] + static_cast<std::uint32_t>(more);
      const std::uint32_t levels[4] = {level, 0, 0, 0};
      meters.overlay.drawAudMeters(levels, nullptr);
      const auto at = [&](int line) {
        return meters.frame.frame[(110 + 12 * line + 5) * kWidth * 4 + 65 * 4] != 0;
      };
      EXPECT_EQ(at(row), more >= 0) << row << " at " << level;
      EXPECT_FALSE(at(row - 1)) << row << " at " << level;
    }
  }
}

TEST(Meters, NeverLightTheTopRowAndShowPeaksFrom631) {
  const std::uint32_t full[4] = {0xFFFF, 0, 0, 0};
  Meters meters(kStreams[0]);
  meters.overlay.drawAudMeters(full, nullptr);
  EXPECT_EQ(meters.frame.frame[115 * kWidth * 4 + 65 * 4], 0);
  EXPECT_NE(meters.frame.frame[127 * kWidth * 4 + 65 * 4], 0);

  for (const std::uint32_t peak : {630U, 631U}) {
    Meters column(kStreams[0]), none(kStreams[0]);
    const std::uint32_t peaks[4] = {peak, 0, 0, 0};
    column.overlay.drawAudMeters(nullptr, peaks);
    none.overlay.drawAudMeters(nullptr, nullptr);
    EXPECT_EQ(column.frame.frame.all() != none.frame.frame.all(), peak == 631);
  }
}

TEST(Meters, PutAFullPeakThreeLinesBelowTheTop) {
  Meters meters(kStreams[0]);
  const std::uint32_t peaks[4] = {0xFFFF0000, 0, 0, 0};  // of channel 1
  meters.overlay.drawAudMeters(nullptr, peaks);
  for (int line = 0; line < 10; ++line)
    EXPECT_EQ(meters.frame.frame[(110 + line) * kWidth * 4 + 95 * 4] != 0, line >= 3 && line < 6);
}

TEST(Meters, PaintTheRowsInTints) {
  Meters meters(kStreams[0]);
  const std::uint32_t levels[4] = {0xFFFF, 0, 0, 0};
  meters.overlay.drawAudMeters(levels, nullptr);
  const auto pixel = [&](int row) {
    const std::uint8_t* const at = &meters.frame.frame[(115 + 12 * row) * kWidth * 4 + 65 * 4];
    return std::vector<int>(at, at + 3);  // blue, green, red; 1.9 * 255 in eight bits is 228
  };
  EXPECT_EQ(pixel(2), (std::vector{255, 255, 228}));
  EXPECT_EQ(pixel(3), (std::vector{255, 228, 228}));
  EXPECT_EQ(pixel(6), (std::vector{255, 228, 255}));
  EXPECT_EQ(pixel(14), (std::vector{255, 228, 255}));
}

TEST(Meters, TakeTheSeventhChannelFromTheHighHalfOfTheFourthWord) {
  Meters meters(kStreams[0]);
  const std::uint32_t levels[4] = {0, 0, 0, 0x03E80000};
  meters.overlay.drawAudMeters(levels, nullptr);
  EXPECT_EQ(meters.overlay.meterHistory[7][0], 1000);
  for (int channel = 0; channel < 7; ++channel)
    EXPECT_EQ(meters.overlay.meterHistory[channel][0], 0);
}

TEST(Meters, SetTheChannelsToEightAndPaintThePanelBlackWhateverTheSettings) {
  Meters meters(kStreams[0]);
  meters.overlay.Enabled = meters.overlay.AudioEnable = 1;
  meters.overlay.FillBackground = 0;
  meters.overlay.AudioChannels = 2;
  meters.overlay.BurnIn(&meters.frame.record, nullptr, nullptr, 0);
  EXPECT_EQ(meters.overlay.AudioChannels, 8U);
  const std::uint8_t* const corner = &meters.frame.frame[(100 * kWidth + 20) * 4];
  EXPECT_EQ(std::vector<int>(corner, corner + 4), (std::vector{0, 0, 0, 255}));
}

TEST(MeterHistory, MovesItsFirst127BytesByOneValueAndCutsTheLast) {
  Meters meters(kStreams[0]);
  std::int32_t(&row)[100] = meters.overlay.meterHistory[2];
  for (int i = 0; i < 100; ++i)
    row[i] = 0x01020304 * (i + 1);
  std::int32_t before[100];
  std::memcpy(before, row, sizeof before);
  const std::uint32_t levels[4] = {0, 4660, 0, 0};
  meters.overlay.drawAudMeters(levels, nullptr);
  std::int32_t wanted[100];
  std::memcpy(wanted, before, sizeof wanted);
  std::memcpy(reinterpret_cast<char*>(wanted) + 4, before, 127);
  wanted[0] = 4660;
  EXPECT_EQ(std::memcmp(row, wanted, sizeof wanted), 0);
  EXPECT_EQ(row[32] & 0xFFFFFF, before[31] & 0xFFFFFF);
  EXPECT_EQ(row[32] >> 24, before[32] >> 24);
}

TEST(MeterHistory, TakesZerosWithoutLevels) {
  Meters meters(kStreams[0]);
  meters.overlay.meterHistory[5][0] = 9;
  meters.overlay.drawAudMeters(nullptr, nullptr);
  EXPECT_EQ(meters.overlay.meterHistory[5][0], 0);
  EXPECT_EQ(meters.overlay.meterHistory[5][1], 9);
}

}  // namespace
