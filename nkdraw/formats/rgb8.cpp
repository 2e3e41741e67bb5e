// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit RGB surfaces: NKPixel plots and reads them, so little remains here.
#include <nkdraw/formats/rgb8.h>

#include <nkdraw/formats/rgb_reads.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/layout_facts.h>

namespace {

const std::uint8_t* bytesAt(NKPixel& surface, int x, int y) {
  return static_cast<const std::uint8_t*>(surface.GetPixel(x, y));
}

}  // namespace

CDrawRGBA32::CDrawRGBA32(pixelType type) : NKDraw(type) {
  pixelKind = type;
}

CDrawRGBA32& CDrawRGBA32::operator=(CDrawRGBA32& other) {
  NKDraw::operator=(other);
  return *this;
}

int CDrawRGBA32::GetPitch() {
  return static_cast<int>(nkdraw::packedPitch(nkdraw::kFactsOf<ptRGBA32>, width));
}

std::uint32_t CDrawRGBA32::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                         double& a) {
  double r = 0.0, g = 0.0, b = 0.0;
  nkdraw::readChannels(bytesAt(*this, x, y), nkdraw::byteOrder32(pixelKind), r, g, b, a);
  RGBToYCbCr(r, g, b, a, y2, cb, cr, a);
  return 0;
}

std::uint32_t CDrawRGBA32::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
  return nkdraw::readHsv(*this, x, y, h, s, v, a);
}

CDrawRGB24::CDrawRGB24(pixelType type) : NKDraw(type) {
  pixelKind = type;
}

CDrawRGB24& CDrawRGB24::operator=(CDrawRGB24& other) {
  NKDraw::operator=(other);
  return *this;
}

int CDrawRGB24::GetPitch() {
  return static_cast<int>(nkdraw::packedPitch(nkdraw::kFactsOf<ptRGB24>, width));
}

std::uint32_t CDrawRGB24::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                        double& a) {
  double r = 0.0, g = 0.0, b = 0.0;
  nkdraw::readChannels(bytesAt(*this, x, y), nkdraw::byteOrder24(pixelKind), r, g, b, a);
  RGBToYCbCr(r, g, b, a, y2, cb, cr, a);
  return 0;
}

std::uint32_t CDrawRGB24::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
  return nkdraw::readHsv(*this, x, y, h, s, v, a);
}
