// SPDX-License-Identifier: BSD-2-Clause
//
// Choosing and measuring the label font, and the process-wide font data.
#include <tests/support/fields.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

using namespace nkdraw::test;

TEST(LabelFont, BySizeBringsTheBuiltInFontAtTheGivenScale) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  const std::uint8_t other[10] = {};
  for (const int scale : {1, 2, 3, 20, 0, 1000}) {
    DrawFields::font(*surface) = other;
    DrawFields::fontWidth(*surface) = 99;
    DrawFields::fontHeight(*surface) = 98;
    EXPECT_EQ(surface->LabelFont(12345U, scale), 0U);
    EXPECT_EQ(DrawFields::font(*surface), nkdraw::labelGlyphs);
    EXPECT_EQ(DrawFields::fontWidth(*surface), 8U);
    EXPECT_EQ(DrawFields::fontHeight(*surface), 10U);
    EXPECT_EQ(surface->LabelGetFontWidth(), static_cast<std::uint32_t>(8 * scale));
    EXPECT_EQ(surface->LabelGetFontHeight(), static_cast<std::uint32_t>(10 * scale));
  }
}

TEST(LabelFont, KeepsANegativeScaleAsALargeNumber) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->LabelFont(0U, -1), 0U);
  EXPECT_EQ(DrawFields::fontScale(*surface), 0xFFFFFFFFU);
  EXPECT_EQ(surface->LabelGetFontWidth(), static_cast<std::uint32_t>(-8));
  EXPECT_EQ(surface->LabelGetFontHeight(), static_cast<std::uint32_t>(-10));
}

TEST(LabelFont, ByNameChangesNothing) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  surface->LabelFont(0U, 5);
  EXPECT_EQ(surface->LabelFont("Arial", 1U), 0U);
  EXPECT_EQ(DrawFields::fontScale(*surface), 5U);
  EXPECT_EQ(surface->LabelGetFontWidth(), 40U);
}

TEST(LabelFont, ANewSurfaceMeasuresEightByTen) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->LabelGetFontWidth(), 8U);
  EXPECT_EQ(surface->LabelGetFontHeight(), 10U);
}

TEST(FontData, StartsAsZeroInItsFixedOrder) {
  const nkdraw::FontData& data = nkdraw::fontData;
  for (const char byte : data.fontKind)
    EXPECT_EQ(byte, 0);
  EXPECT_EQ(data.fontPointSize, 0);
  EXPECT_EQ(data.fontScratch, 0U);
  static_assert(offsetof(nkdraw::FontData, fontKind) < offsetof(nkdraw::FontData, fontPointSize));
  static_assert(offsetof(nkdraw::FontData, fontPointSize) <
                offsetof(nkdraw::FontData, fontScratch));
}

}  // namespace
