// SPDX-License-Identifier: BSD-2-Clause
//
// The surface of 10-bit RGB words: NKPixel plots them; this packs and reads the colours.
#include <nkdraw/formats/rgb30_dpx.h>

#include <nkdraw/formats/rgb_reads.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/luma_weights.h>
#include <nkdraw/surface/truncate.h>

namespace {

constexpr const nkdraw::LayoutFacts& kFacts = nkdraw::kFactsOf<ptRGB30DPX>;
constexpr unsigned kRedShift = nkdraw::sampleBit(kFacts, 0);
constexpr unsigned kGreenShift = nkdraw::sampleBit(kFacts, 1);
constexpr unsigned kBlueShift = nkdraw::sampleBit(kFacts, 2);
constexpr std::uint32_t kCodeMask = (1U << kFacts.depth) - 1;
constexpr double kLargestCode = kCodeMask;

struct Codes {
  std::uint32_t r, g, b;
};

/// A big-endian word from memory.
Codes codesAt(const void* pixel) {
  const std::uint32_t word = nkdraw::swapBytes(nkdraw::load32(pixel));
  return {word >> kRedShift, (word >> kGreenShift) & kCodeMask, (word >> kBlueShift) & kCodeMask};
}

/// Red is the topmost channel: its excess bits are lost, and spoil no other channel.
void packCodes(void* pixel, Codes codes) {
  const std::uint32_t word = codes.r << kRedShift | (codes.g & kCodeMask) << kGreenShift |
                             (codes.b & kCodeMask) << kBlueShift;
  nkdraw::store32(pixel, nkdraw::swapBytes(word));
}

void readCodes(const void* pixel, double& r, double& g, double& b, double& a) {
  const Codes codes = codesAt(pixel);
  r = codes.r / kLargestCode;
  g = codes.g / kLargestCode;
  b = codes.b / kLargestCode;
  a = 1.0;
}

/// Only modes 2 to 4 have their own weights here.
const nkdraw::LumaWeights& weightsOf(std::int32_t mode) {
  return nkdraw::lumaWeights(mode >= 2 && mode <= 4 ? mode : 0);
}

}  // namespace

CDrawRGB30DPX::CDrawRGB30DPX(pixelType type) : NKDraw(type) {
  pixelKind = type;
}

CDrawRGB30DPX& CDrawRGB30DPX::operator=(CDrawRGB30DPX& other) {
  NKDraw::operator=(other);
  return *this;
}

int CDrawRGB30DPX::GetPitch() {
  return static_cast<int>(nkdraw::packedPitch(kFacts, width));
}

std::uint32_t CDrawRGB30DPX::GetPixelRGBA(int x, int y, double& r, double& g, double& b,
                                          double& a) {
  readCodes(GetPixel(x, y), r, g, b, a);
  return 0;
}

std::uint32_t CDrawRGB30DPX::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
  return nkdraw::readHsv(*this, x, y, h, s, v, a);
}

double CDrawRGB30DPX::GetLuma(int x, int y) {
  const Codes codes = codesAt(GetPixel(x, y));
  const nkdraw::LumaWeights& weights = weightsOf(ycbcrMode);
  return (weights.green * codes.g + weights.red * codes.r + weights.blue * codes.b) *
         0.0009765625;  // 1/1024
}

std::uint32_t CDrawRGB30DPX::GetColorRGBA(double& r, double& g, double& b, double& a,
                                          bool foreground) {
  readCodes(foreground ? foregroundPixel : backgroundPixel, r, g, b, a);
  return 0;
}

std::uint32_t CDrawRGB30DPX::SetColorRGBA(double r, double g, double b, double /*a*/,
                                          bool foreground) {
  packCodes(foreground ? foregroundPixel : backgroundPixel,
            {nkdraw::truncateToLow32(r * kLargestCode), nkdraw::truncateToLow32(g * kLargestCode),
             nkdraw::truncateToLow32(b * kLargestCode)});
  return 0;
}
