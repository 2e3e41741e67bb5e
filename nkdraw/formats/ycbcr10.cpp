// SPDX-License-Identifier: BSD-2-Clause
//
// The packed 10-bit 4:2:2 surface.
#include <nkdraw/formats/ycbcr10.h>

#include <nkdraw/formats/ycbcr10_plotter.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/truncate.h>

#include <optional>

namespace {

using nkdraw::v210::Sample;

constexpr double kUnit = 0.0009765625;  // 1/1024

// Types up to this one are kept, and stand for the same layout.
constexpr std::int32_t kLastV210 = 16;

/// The samples that reading gives for one of the six pixels of a group.
struct PixelSamples {
  Sample luma, cb, cr;
};

/// Null for a negative x: nothing is read there. The sixth pixel reads the luma of the third,
/// although it is plotted with its own.
std::optional<PixelSamples> samplesRead(int x) {
  using namespace nkdraw::v210;
  const int m = x % kGroupPixels;
  if (m < 0)
    return std::nullopt;
  const auto pixel = static_cast<std::size_t>(m);
  return PixelSamples{kLuma[pixel == 5 ? 2 : pixel], kCb[pixel / 2], kCr[pixel / 2]};
}

/// A sample with the bits above it, from its lowest bit `extra` on.
std::uint32_t shifted(const void* group, Sample sample, unsigned extra = 0) {
  const auto* const word = static_cast<const char*>(group) + sample.word * 4;
  return nkdraw::load32(word) >> (sample.shift + extra);
}

std::uint32_t sampleOf(const void* group, Sample sample) {
  return shifted(group, sample) & nkdraw::v210::kSampleMask;
}

}  // namespace

CDrawYCbCr10::CDrawYCbCr10(pixelType type) : NKDraw(type) {
  pixelKind = type >= ptV210 && type <= kLastV210 ? type : ptV210;
}

CDrawYCbCr10& CDrawYCbCr10::operator=(CDrawYCbCr10& other) {
  NKDraw::operator=(other);
  yOffset = other.yOffset;
  yScale = other.yScale;
  cbOffset = other.cbOffset;
  cbScale = other.cbScale;
  crOffset = other.crOffset;
  crScale = other.crScale;
  foregroundCode = other.foregroundCode;
  backgroundCode = other.backgroundCode;
  reserved10 = other.reserved10;
  return *this;
}

std::uint32_t CDrawYCbCr10::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
  NKPixel::SetCanvas(newCanvas, newHeight, newWidth, newPitch);
  flipped = false;
  const auto packed = static_cast<std::uint32_t>(CDrawYCbCr10::GetPitch());
  if (static_cast<std::uint32_t>(newPitch) < packed)
    pitch = packed;
  ycbcrMode = newWidth > 720 ? mode709Studio : mode601Studio;
  return 0;
}

int CDrawYCbCr10::GetPitch() {
  return static_cast<int>(nkdraw::packedPitch(nkdraw::v210::kFacts, width));
}

void* CDrawYCbCr10::GetPixel(int x, int y) {
  if (canvas == nullptr)
    return nullptr;
  return canvas + pitch * static_cast<std::uint32_t>(y) +
         std::ptrdiff_t{x / nkdraw::v210::kGroupPixels} * nkdraw::v210::kGroupBytes;
}

std::uint32_t CDrawYCbCr10::PutPixel(int x, int y, bool foreground) {
  return nkdraw::Plotter<CDrawYCbCr10>(*this, foreground).put(x, y);
}

std::uint32_t CDrawYCbCr10::GetPixelRGBA(int x, int y, double& r, double& g, double& b,
                                         double& /*a*/) {
  double luma = 0.0, cb = 0.0, cr = 0.0, alpha = 0.0;
  GetPixelYCbCr(x, y, luma, cb, cr, alpha);
  return YCbCrToRGB(luma, cb, cr, 0.0, r, g, b, alpha);
}

std::uint32_t CDrawYCbCr10::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                          double& a) {
  const void* const group = GetPixel(x, y);
  const auto samples = samplesRead(x);
  if (group == nullptr || !samples)
    return 0;
  y2 = sampleOf(group, samples->luma) * kUnit;
  cb = sampleOf(group, samples->cb) * kUnit;
  cr = sampleOf(group, samples->cr) * kUnit;
  a = 1.0;
  return 0;
}

std::uint32_t CDrawYCbCr10::GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                                           unsigned char& cr, unsigned char& a) {
  const void* const group = GetPixel(x, y);
  const auto samples = samplesRead(x);
  if (group == nullptr || !samples)
    return 0;
  // Deliberate: callers rely on the value. The first pixel's Cr loses its high bits, all others
  // their low ones.
  const unsigned crCut = x % nkdraw::v210::kGroupPixels == 0 ? 0 : 2;
  y2 = static_cast<unsigned char>(shifted(group, samples->luma, 2));
  cb = static_cast<unsigned char>(shifted(group, samples->cb, 2));
  cr = static_cast<unsigned char>(shifted(group, samples->cr, crCut));
  a = 1;
  return 0;
}

std::uint32_t CDrawYCbCr10::GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                            std::uint32_t& cr, std::uint32_t& a) {
  const void* const group = GetPixel(x, y);
  const auto samples = samplesRead(x);
  if (group == nullptr || !samples)
    return 0;
  y2 = sampleOf(group, samples->luma);
  cb = sampleOf(group, samples->cb);
  cr = sampleOf(group, samples->cr);
  a = 1;
  return 0;
}

std::uint32_t CDrawYCbCr10::GetPixelHSV(int /*x*/, int /*y*/, double& /*h*/, double& /*s*/,
                                        double& /*v*/, double& /*a*/) {
  return NKStatusRefused;
}

double CDrawYCbCr10::GetLuma(int x, int y) {
  const auto* const group = static_cast<const std::uint8_t*>(GetPixel(x, y));
  if (pixelKind >= ptYUYV && pixelKind <= ptVYUY)  // a derived class may say it holds 8-bit 4:2:2
    return group[(pixelKind - ptYUYV) % 2] * kUnit;
  const int m = x % nkdraw::v210::kGroupPixels;
  if (pixelKind < ptV210 || pixelKind > kLastV210 || m < 0)
    return 0.0;
  return sampleOf(group, nkdraw::v210::kLuma[static_cast<std::size_t>(m % 3)]) * kUnit;
}

std::uint32_t CDrawYCbCr10::SetColorYCbCr(double y, double cb, double cr, double /*a*/,
                                          bool foreground) {
  const std::uint64_t luma = nkdraw::truncateToLow32(y * 940.0 + 64.0);
  const std::uint64_t blue = nkdraw::truncateToLow32(cb * 876.0 + 64.0);
  const std::uint64_t red = nkdraw::truncateToLow32(cr * 876.0 + 64.0);
  (foreground ? foregroundCode : backgroundCode) = (((red << 10) + blue) << 10) + luma;
  return 0;
}

std::uint32_t CDrawYCbCr10::SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                            std::uint32_t /*a*/, bool foreground) {
  (foreground ? foregroundCode : backgroundCode) = y + (cb << 10) + (cr << 20);
  return 0;
}

std::uint32_t CDrawYCbCr10::SetColorRGBA(double r, double g, double b, double a, bool foreground) {
  double y = 0.0, cb = 0.0, cr = 0.0, unused = 0.0;
  RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
  SetColorYCbCr(y, cb, cr, a, foreground);
  return 0;
}
