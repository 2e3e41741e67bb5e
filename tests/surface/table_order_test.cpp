// SPDX-License-Identifier: BSD-2-Clause
//
// The order of the virtual operations, read from pointers to members: in the Itanium C++ ABI such a
// pointer holds the offset of the operation's slot (plus 1, or with the lowest bit of the
// adjustment set, by machine).
#include <nkdraw/nkdraw.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace {

template <class Member>
std::ptrdiff_t slotOf(Member member) {
  std::ptrdiff_t parts[2];
  static_assert(sizeof member == sizeof parts);
  std::memcpy(parts, &member, sizeof parts);
#if defined(__aarch64__) || defined(__arm__)
  EXPECT_EQ(parts[1] & 1, 1) << "not virtual";
  const std::ptrdiff_t offset = parts[0];
#else
  EXPECT_EQ(parts[0] & 1, 1) << "not virtual";
  const std::ptrdiff_t offset = parts[0] - 1;
#endif
  return offset / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// Of the overloads of an operation, the one with these arguments.
template <class Class, class Result, class... Arguments>
std::ptrdiff_t slot(Result (Class::*member)(Arguments...)) {
  return slotOf(member);
}

using U = std::uint32_t;

/// The destructor has two entries in front.
void expectConsecutive(const std::vector<std::ptrdiff_t>& slots, std::size_t count) {
  ASSERT_EQ(slots.size(), count);
  for (std::size_t i = 0; i < slots.size(); ++i)
    EXPECT_EQ(slots[i], static_cast<std::ptrdiff_t>(i) + 2) << "operation " << i + 2;
}

TEST(TableOrder, TheSurfaceObjectsThirtyThreeOperations) {
  using P = NKPixel;
  expectConsecutive(
      {
          slot(&P::SetCanvas),
          slot(&P::GetPitch),
          slot(&P::YCbCrToRGB),
          slot(&P::RGBToYCbCr),
          slot(&P::RGBToYCbCr10),
          slot(&P::RGBToHSV),
          slot(&P::YCbCrToHSV),
          slot(&P::BlendPixel),
          slot(&P::GetPixel),
          slot(&P::PutPixel),
          slot(&P::IsRgbType),
          slot<P, U, double, bool>(&P::SetTransparency),
          slot<P, void, bool>(&P::SetTransparency),
          slot(&P::GetTransparency),
          slot(&P::SetAlphaAdditive),
          slot(&P::GetAlphaAdditive),
          slot(&P::SetPixel),
          slot(&P::GetPixelRGBA),
          slot(&P::GetPixelYCbCr),
          slot(&P::GetPixelYCbCr8),
          slot(&P::GetPixelYCbCr10),
          slot(&P::GetPixelHSV),
          slot(&P::GetLuma),
          slot(&P::GetColorYCbCr),
          slot(&P::SetColorYCbCr),
          slot(&P::SetColorYCbCr10),
          slot(&P::GetColorRGBA),
          slot(&P::SetColorRGBA),
          slot(&P::PercentX),
          slot(&P::PercentY),
          slot(&P::SetYCbCrMode),
          slot(&P::GetYCbCrMode),
      },
      33 - 1);
}

TEST(TableOrder, TheDrawingObjectsFortyNineOperations) {
  using D = NKDraw;
  expectConsecutive(
      {
          slot(&D::SetBrush),
          slot(&D::Point),
          slot<D, U, int, int, tagPOINT*>(&D::MoveTo),
          slot<D, U, int, int>(&D::MoveTo),
          slot(&D::LineTo),
          slot<D, U, int, int, int, int>(&D::Line),
          slot<D, U, tagPOINT&, tagPOINT&>(&D::Line),
          slot(&D::LineWuTo),
          slot(&D::LineWu),
          slot(&D::LineVert),
          slot(&D::LineHoriz),
          slot(&D::Dash),
          slot(&D::Circle),
          slot(&D::Ellipse),
          slot(&D::Arc),
          slot(&D::ArcTo),
          slot(&D::AngleArc),
          slot(&D::AngleArcTo),
          slot(&D::Bezier),
          slot(&D::PolyBezier),
          slot(&D::PolyBezierTo),
          slot(&D::Polyline),
          slot(&D::PolylineTo),
          slot(&D::FillRect),
          slot(&D::Rectangle),
          slot(&D::RoundRect),
          slot(&D::Pie),
          slot(&D::EraseCanvas),
          slot(&D::Fill),
          slot(&D::GradientRect),
          slot(&D::SymGradientRect),
          slot(&D::CornerGradientRect),
          slot(&D::CenterGradientRect),
          slot(&D::RadialGradientFill),
          slot(&D::PatternFill),
          slot(&D::RoundRectButton),
          slot(&D::CopyRect),
          slot<D, U, const char*, U>(&D::LabelFont),
          slot<D, U, U, int>(&D::LabelFont),
          slot(&D::LabelGetFontWidth),
          slot(&D::LabelGetFontHeight),
          slot(&D::Label),
          slot(&D::Filter),
          slot(&D::Scale),
          slot(&D::EMFOpen),
          slot(&D::EMFGetSize),
          slot(&D::EMFDraw),
          slot(&D::EMFClose),
          slot(&D::Arrow),
      },
      49);
}

TEST(TableOrder, TheOverlaysFourteenOperations) {
  using O = CNkOverlay;
  expectConsecutive(
      {
          slot(&O::Create),
          slot(&O::Destroy),
          slot(&O::BurnIn),
          slot(&O::SetMode),
          slot(&O::SetAppName),
          slot(&O::SaveConfig),
          slot(&O::LoadConfig),
          slot<O, U, const char*, U>(&O::SaveSetting),
          slot<O, U, const char*, const char*>(&O::SaveSetting),
          slot<O, U, const char*, U&>(&O::LoadSetting),
          slot<O, U, const char*, char*>(&O::LoadSetting),
          slot(&O::SaveConfigINI),
          slot(&O::LoadConfigINI),
      },
      14 - 1);
}

TEST(TableOrder, TheByteSetterIsVirtualInTheClassOf8Bit422AndPlainInTheBase) {
  const auto own = &CDrawYCbCrYUYV::SetColorYCbCr8;
  slot(own);
  CDrawYCbCrYUYV surface(ptUYVY);
  NKPixel& base = surface;
  surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, true);
  base.SetColorYCbCr8(0x50, 0x60, 0x70, 0, false);
  std::uint8_t bytes[4] = {};
  surface.SetCanvas(reinterpret_cast<char*>(bytes), 1, 2, 0);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(bytes[1], 0x50);
  surface.PutPixel(0, 0, false);
  EXPECT_EQ(bytes[1], static_cast<int>(0x50 / 255.0 * 235.0 + 16.0));
}

TEST(TableOrder, EverySurfaceDerivesVirtuallyFromTheDrawingObject) {
  static_assert(std::is_base_of_v<NKPixel, NKDraw>);
  struct Both : CDrawRGBA32, CDrawRGB24 {
    Both() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32), CDrawRGB24(ptRGB24) {}
    int GetPitch() override { return 0; }
    U GetPixelYCbCr(int, int, double&, double&, double&, double&) override { return 0; }
    U GetPixelHSV(int, int, double&, double&, double&, double&) override { return 0; }
  };
  Both both;
  // One NKDraw and one NKPixel only, or these would be ambiguous.
  NKDraw& draw = both;
  NKPixel& pixel = both;
  EXPECT_EQ(static_cast<void*>(static_cast<NKPixel*>(&draw)), static_cast<void*>(&pixel));
  EXPECT_NE(static_cast<void*>(&draw), static_cast<void*>(&pixel));
}

}  // namespace
