// SPDX-License-Identifier: BSD-2-Clause
//
// The fifteen functions of the C interface.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <thread>

namespace {

using namespace nkdraw::test;

BITMAPINFO v210Header(int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = 40;
  info.bmiHeader.biWidth = 96;
  info.bmiHeader.biHeight = height;
  std::memcpy(&info.bmiHeader.biCompression, "v210", 4);
  return info;
}

TEST(CInterface, TheStubsReturnZeroWhateverTheyAreGiven) {
  BITMAPINFO info = v210Header(10);
  const BITMAPINFO before = info;
  EXPECT_EQ(qtGetDrawSizeBMI(&info), 0U);
  EXPECT_EQ(qtGetDrawSizeBMI(nullptr), 0U);
  EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
  EXPECT_EQ(qtGetDrawSize(3, 1920, 1080, 0), 0U);
  EXPECT_EQ(qtGetDrawSize(0xFFFFFFFF, INT_MIN, INT_MAX, -1), 0U);
  char name[] = "x";
  EXPECT_EQ(qtSetFont(nullptr, nullptr), 0U);
  EXPECT_EQ(qtSetFont(nullptr, name), 0U);
}

TEST(CInterface, GetDrawMakesABoundSurface) {
  Frame frame(4096);
  for (const pixelType type : kLayouts) {
    if (isDeepYCbCr(type))
      continue;
    SCOPED_TRACE(layoutName(type));
    NKDraw* const surface =
        qtGetDraw(static_cast<std::uint32_t>(type), 13, -7, 600, frame.canvas());
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->PixelType(), type);
    EXPECT_EQ(surface->Width(), 13U);
    EXPECT_EQ(surface->Pitch(), 600U);
    EXPECT_EQ(surface->GetCanvas(), frame.canvas());
    EXPECT_EQ(surface->Refs(), 1);
    EXPECT_EQ(qtReleaseDraw(surface), 0U);
  }
}

TEST(CInterface, GetDrawGivesNullForATypeWithoutASurface) {
  Frame frame(64);
  for (const std::uint32_t type : {7U, 0U, 15U, 16U, 29U, 33U, 0xFFFFFFFFU, 0xFFFFFFFEU})
    EXPECT_EQ(qtGetDraw(type, 100, 100, 0, frame.canvas()), nullptr) << type;
}

TEST(CInterface, GetDrawBmiGoesByTheHeader) {
  for (const int height : {10, -10}) {
    BITMAPINFO info = v210Header(height);
    char byte = 0;
    NKDraw* const surface = qtGetDrawBMI(&info, &byte);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->PixelType(), ptV210);
    EXPECT_EQ(surface->Width(), 96U);
    EXPECT_EQ(surface->Height(), 10U);
    EXPECT_EQ(surface->Pitch(), 256U);
    EXPECT_EQ(surface->GetCanvas(), &byte);
    EXPECT_EQ(info.bmiHeader.biBitCount, 16);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 2560U);
    EXPECT_EQ(qtReleaseDraw(surface), 0U);
  }
}

TEST(CInterface, GetDrawBmiGivesNullForWhatNoSurfaceServes) {
  BITMAPINFO info = v210Header(10);
  std::memcpy(&info.bmiHeader.biCompression, "I420", 4);
  EXPECT_EQ(qtGetDrawBMI(&info, nullptr), nullptr);
  info = v210Header(0);
  EXPECT_EQ(qtGetDrawBMI(&info, nullptr), nullptr);  // a size of 0
  info = v210Header(10);
  info.bmiHeader.biSizeImage = 0xFFFFFFFF;
  EXPECT_EQ(qtGetDrawBMI(&info, nullptr), nullptr);
  info = v210Header(10);
  std::memcpy(&info.bmiHeader.biCompression, "ABCD", 4);
  info.bmiHeader.biSizeImage = 100;
  EXPECT_EQ(qtGetDrawBMI(&info, nullptr), nullptr);
}

TEST(CInterface, ReferencesAreCounted) {
  NKDraw* const surface = qtGetDraw(1, 4, 4, 0, nullptr);
  EXPECT_EQ(qtAddRefDraw(surface), 0U);
  EXPECT_EQ(surface->Refs(), 2);
  EXPECT_EQ(qtReleaseDraw(surface), 0U);
  EXPECT_EQ(surface->Refs(), 1);
  EXPECT_EQ(qtReleaseDraw(surface), 0U);  // the caller's pointer dangles from here on
}

TEST(CInterface, UseDefaultFontNotesTheWish) {
  const Surface surface(new CDrawRGB24(ptRGB24));
  EXPECT_FALSE(DrawFields::wantsDefaultFont(*surface));
  EXPECT_EQ(qtUseDefaultFont(surface.get()), 0U);
  EXPECT_TRUE(DrawFields::wantsDefaultFont(*surface));
}

TEST(CInterface, ANullSurfaceIsRefused) {
  EXPECT_EQ(qtNKPixelLock(nullptr, 10), 0xFFFFFFFF);
  EXPECT_EQ(qtNKPixelLock(nullptr, 0), 0xFFFFFFFF);
  EXPECT_EQ(qtNKPixelTryLock(nullptr), 0xFFFFFFFF);
  EXPECT_EQ(qtNKPixelUnlock(nullptr), 0xFFFFFFFF);
  EXPECT_EQ(qtNKPixelWaitForChangeEvent(nullptr, 10), 0xFFFFFFFF);
  qtNKPixelSetChangeEvent(nullptr);
  EXPECT_EQ(qtNKPixelLastChange(nullptr, 1), 0xFFFFFFFF);
  EXPECT_EQ(qtNKPixelSetCanvas(nullptr, nullptr, 1, 1, 0), 0xFFFFFFFF);
}

TEST(CInterface, LocksAsTheSurfaceDoes) {
  const Surface surface = makeSurface(ptBGRA32, 4, 4, 0, nullptr);
  EXPECT_EQ(qtNKPixelLock(surface.get(), 5), 128U);
  EXPECT_EQ(qtNKPixelLock(surface.get(), 0), 0U);
  EXPECT_EQ(qtNKPixelLock(surface.get(), 0xFFFFFFFF), 0U);
  EXPECT_EQ(qtNKPixelTryLock(surface.get()), 1U);
  std::thread([&surface] {
    EXPECT_EQ(qtNKPixelTryLock(surface.get()), 0U);
    EXPECT_EQ(qtNKPixelLock(surface.get(), 3), 0U);
  }).join();
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(qtNKPixelUnlock(surface.get()), 0U);
  std::thread([&surface] {
    EXPECT_EQ(qtNKPixelTryLock(surface.get()), 1U);
    EXPECT_EQ(qtNKPixelUnlock(surface.get()), 0U);
  }).join();
}

TEST(CInterface, EventAndStampAreTheSurfaces) {
  const Surface surface = makeSurface(ptBGRA32, 4, 4, 0, nullptr);
  EXPECT_EQ(qtNKPixelWaitForChangeEvent(surface.get(), 0), 258U);
  qtNKPixelSetChangeEvent(surface.get());
  EXPECT_EQ(qtNKPixelWaitForChangeEvent(surface.get(), 1000), 0U);
  const nkHandle event = PixelFields::event(*surface);
  PixelFields::event(*surface) = nullptr;
  qtNKPixelSetChangeEvent(surface.get());
  PixelFields::event(*surface) = event;
  EXPECT_EQ(qtNKPixelWaitForChangeEvent(surface.get(), 0), 258U);
  EXPECT_EQ(qtNKPixelLastChange(surface.get(), 0xFFFFFFFF), 0U);
  EXPECT_EQ(qtNKPixelLastChange(surface.get(), 31), 31U);
  EXPECT_EQ(qtNKPixelLastChange(surface.get(), 0xFFFFFFFF), 31U);
}

TEST(CInterface, SetCanvasIsTheVirtualOne) {
  Frame frame(1024);
  const Surface surface = makeSurface(ptV210, 48, 4, 0, nullptr);
  EXPECT_EQ(qtNKPixelSetCanvas(surface.get(), frame.canvas(), -5, 721, 0), 0U);
  EXPECT_EQ(surface->Height(), 5U);
  EXPECT_EQ(surface->Width(), 721U);
  EXPECT_EQ(surface->Pitch(), 2048U);
  EXPECT_EQ(surface->GetCanvas(), frame.canvas());
  EXPECT_FALSE(PixelFields::flippedOf(*surface));
  EXPECT_EQ(PixelFields::mode(*surface), 3);
}

}  // namespace
