// SPDX-License-Identifier: BSD-2-Clause
//
// The facts of every layout against a table of their own, and against the surfaces.
#include <nkdraw/nkdraw.h>
#include <nkdraw/surface/layout_facts.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using nkdraw::findFacts;
using nkdraw::LayoutFacts;

struct Expected {
  std::int32_t type;
  const char* name;
  const char* samples;  // Cb is b, Cr is r
  std::vector<unsigned> bits;
  unsigned pixels, bytes;
  bool ycbcr;
};

const std::vector<unsigned> kBytes = {0, 8, 16, 24}, kThreeBytes = {0, 8, 16};
const std::vector<unsigned> kWords = {0, 16, 32, 48}, kThreeWords = {0, 16, 32};
const std::vector<unsigned> kFloats = {0, 32, 64, 96}, kThreeFloats = {0, 32, 64};
const std::vector<unsigned> kMosaic = {12, 0};

const Expected kExpected[] = {
    {1, "rgba", "RGBA", kBytes, 1, 4, false},
    {2, "argb", "ARGB", kBytes, 1, 4, false},
    {3, "bgra", "BGRA", kBytes, 1, 4, false},
    {4, "abgr", "ABGR", kBytes, 1, 4, false},
    {5, "rgb24", "RGB", kThreeBytes, 1, 3, false},
    {6, "bgr24", "BGR", kThreeBytes, 1, 3, false},
    {10, "yuy2", "YbYr", kBytes, 2, 4, true},
    {11, "uyvy", "bYrY", kBytes, 2, 4, true},
    {12, "yvyu", "YrYb", kBytes, 2, 4, true},
    {13, "vyuy", "rYbY", kBytes, 2, 4, true},
    {14, "v210", "bYrYbYrYbYrY", {0, 10, 20, 32, 42, 52, 64, 74, 84, 96, 106, 116}, 6, 16, true},
    {20, "rgb30dpx", "RGB", {22, 12, 2}, 1, 4, false},
    {21, "bayer_bggr", "BGGR", kMosaic, 2, 3, false},
    {22, "bayer_rggb", "RGGB", kMosaic, 2, 3, false},
    {23, "bayer_gbrg", "GBRG", kMosaic, 2, 3, false},
    {24, "bayer_grbg", "GRBG", kMosaic, 2, 3, false},
    {25, "bayer_bggr12", "BGGR", kMosaic, 2, 3, false},
    {26, "bayer_rggb12", "RGGB", kMosaic, 2, 3, false},
    {27, "bayer_gbrg12", "GBRG", kMosaic, 2, 3, false},
    {28, "bayer_grbg12", "GRBG", kMosaic, 2, 3, false},
    {29, "rgbafloat", "RGBA", kFloats, 1, 16, false},
    {30, "rgbfloat", "RGB", kThreeFloats, 1, 12, false},
    {31, "rgb48", "RGB", kThreeWords, 1, 6, false},
    {32, "argb64", "ARGB", kWords, 1, 8, false},
    {33, "ycbcr24", "Ybr", kThreeBytes, 1, 3, true},
    {34, "ycbcra32", "YbrA", kBytes, 1, 4, true},
    {35, "ycbcr48", "Ybr", kThreeWords, 1, 6, true},
    {36, "ycbcra64", "YbrA", kWords, 1, 8, true},
    {37, "rgbhalf48", "RGB", kThreeWords, 1, 6, false},
    {38, "rgbahalf64", "ARGB", kWords, 1, 8, false},
    {10000, "uv8", "br", {0, 8}, 1, 2, true},
    {10001, "uv16", "br", {0, 16}, 1, 4, true},
};

std::string lettersOf(const LayoutFacts& facts) {
  std::string letters;
  for (std::size_t i = 0; i < sampleCount(facts); ++i)
    letters += " RGBAYbr"[static_cast<std::size_t>(facts.samples[i])];
  return letters;
}

TEST(LayoutFacts, AreThoseOfTheTable) {
  ASSERT_EQ(std::size(kExpected), nkdraw::kLayoutFacts.size());
  for (const Expected& row : kExpected) {
    const LayoutFacts* const facts = findFacts(row.type);
    ASSERT_NE(facts, nullptr) << row.type;
    EXPECT_EQ(facts->name, row.name);
    EXPECT_EQ(lettersOf(*facts), row.samples) << row.name;
    EXPECT_EQ(facts->groupPixels, row.pixels) << row.name;
    EXPECT_EQ(facts->groupBytes, row.bytes) << row.name;
    ASSERT_EQ(sampleCount(*facts), row.bits.size() * facts->rows) << row.name;
    for (std::size_t i = 0; i < row.bits.size(); ++i)
      EXPECT_EQ(sampleBit(*facts, i), row.bits[i]) << row.name << " " << i;
  }
}

TEST(LayoutFacts, AreOfNoOtherValue) {
  for (std::int32_t type = -1000; type < 20000; ++type) {
    const bool expected = std::any_of(std::begin(kExpected), std::end(kExpected),
                                      [type](const Expected& row) { return row.type == type; });
    EXPECT_EQ(findFacts(type) != nullptr, expected) << type;
  }
}

TEST(LayoutFacts, TellYCbCrFromRGBForValuesWithoutALayoutToo) {
  for (const Expected& row : kExpected)
    EXPECT_EQ(nkdraw::isYCbCr(row.type), row.ycbcr) << row.name;
  for (const std::int32_t type : {-1, 15, 16, 17, 18, 19})
    EXPECT_TRUE(nkdraw::isYCbCr(type)) << type;
  for (const std::int32_t type : {-2, 0, 7, 8, 9, 39, 9999, 10002})
    EXPECT_FALSE(nkdraw::isYCbCr(type)) << type;
}

TEST(LayoutFacts, FindTheSamplesOfAChannel) {
  const LayoutFacts& v210 = nkdraw::kFactsOf<ptV210>;
  constexpr std::size_t kLumas[] = {1, 3, 5, 7, 9, 11, 12};
  for (std::size_t n = 0; n < std::size(kLumas); ++n)
    EXPECT_EQ(sampleOf(v210, nkdraw::Channel::kY, n), kLumas[n]);
  EXPECT_EQ(sampleOf(v210, nkdraw::Channel::kCr, 1), 6U);
  EXPECT_EQ(sampleOf(v210, nkdraw::Channel::kR), sampleCount(v210));
}

/// Chroma planes alone say two bytes a pixel whatever they have, and raise it when they are bound.
TEST(LayoutFacts, HaveThePitchOfTheSurfaces) {
  char frame[4] = {};
  for (const LayoutFacts& facts : nkdraw::kLayoutFacts) {
    for (int width = 1; width <= 200; ++width) {
      NKDraw* surface = nullptr;
      if (GetDraw(static_cast<std::uint32_t>(facts.type), width, 1, 0, frame, surface) != 0)
        break;
      EXPECT_EQ(surface->Pitch(), packedPitch(facts, static_cast<std::uint32_t>(width)))
          << facts.name << " " << width;
      EXPECT_LE(surface->Pitch(), rowBytes(facts, static_cast<std::uint32_t>(width)) + 127);
      surface->SetCanvas(frame, 1, width, 1);
      const bool raised = facts.pitchRule == nkdraw::PitchRule::kRaised;
      EXPECT_EQ(surface->Pitch(),
                raised ? packedPitch(facts, static_cast<std::uint32_t>(width)) : 1)
          << facts.name << " " << width;
      ReleaseDraw(surface);
    }
  }
}

TEST(LayoutFacts, CountBytesInWholeGroups) {
  EXPECT_EQ(rowBytes(nkdraw::kFactsOf<ptV210>, 7), 32U);
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptV210>, 7), 128U);
  EXPECT_EQ(rowBytes(nkdraw::kFactsOf<ptUYVY>, 7), 16U);
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptUYVY>, 7), 14U);
  EXPECT_EQ(rowBytes(nkdraw::kFactsOf<ptBayerBGGR>, 7), 12U);
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptBayerBGGR>, 7), 10U);
  EXPECT_EQ(rowBytes(nkdraw::kFactsOf<ptRGB48>, 0), 0U);
}

TEST(LayoutFacts, WrapAPitchAt32Bits) {
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptUYVY>, 0xFFFFFFFF), 0xFFFFFFFEU);
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptRGBA32>, 0x40000001), 4U);
  EXPECT_EQ(packedPitch(nkdraw::kFactsOf<ptV210>, 0x20000000), 42U);  // 536870928 * 8 is 128
}

}  // namespace
