// SPDX-License-Identifier: BSD-2-Clause
#include "draw/draw_layouts.h"

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/failure.h"

#include <nkdraw/nkdraw.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace nkdraw::tool {
namespace {

constexpr auto kPixel = Unit::kPixel;
constexpr auto kPair = Unit::kPair;
constexpr auto kCell = Unit::kCell;
constexpr auto kRead = Shown::kRead;
constexpr auto kWords = Shown::kWords;

/// Names shared with burnin mean the same. The constructors of the 16-bit YCbCr surfaces ignore the
/// type.
constexpr DrawLayout kDrawLayouts[] = {
    {"rgba", "bytes R G B A", ptRGBA32, kPixel, kRead, makeGuarded<CDrawRGBA32>},
    {"argb", "bytes A R G B", ptARGB32, kPixel, kRead, makeGuarded<CDrawRGBA32>},
    {"bgra", "bytes B G R A", ptBGRA32, kPixel, kRead, makeGuarded<CDrawRGBA32>},
    {"abgr", "bytes A B G R", ptABGR32, kPixel, kRead, makeGuarded<CDrawRGBA32>},
    {"rgb24", "bytes R G B", ptRGB24, kPixel, kRead, makeGuarded<CDrawRGB24>},
    {"bgr24", "bytes B G R", ptBGR24, kPixel, kRead, makeGuarded<CDrawRGB24>},
    {"yuy2", "8-bit 4:2:2 YCbCr, bytes Y Cb Y Cr", ptYUYV, kPair, kRead,
     makeGuarded<CDrawYCbCrYUYV>},
    {"uyvy", "8-bit 4:2:2 YCbCr, bytes Cb Y Cr Y", ptUYVY, kPair, kRead,
     makeGuarded<CDrawYCbCrYUYV>},
    {"yvyu", "8-bit 4:2:2 YCbCr, bytes Y Cr Y Cb", ptYVYU, kPair, kRead,
     makeGuarded<CDrawYCbCrYUYV>},
    {"vyuy", "8-bit 4:2:2 YCbCr, bytes Cr Y Cb Y", ptVYUY, kPair, kRead,
     makeGuarded<CDrawYCbCrYUYV>},
    {"v210", "10-bit 4:2:2 YCbCr, six pixels in 16 bytes", ptV210, kPair, kRead,
     makeGuarded<CDrawYCbCr10>},
    {"rgb30dpx", "10-bit R G B in a big-endian word", ptRGB30DPX, kPixel, kRead,
     makeGuarded<CDrawRGB30DPX>},
    {"bayer_bggr", "12-bit packed mosaic, rows B G and G R", ptBayerBGGR, kCell, kRead,
     makeGuarded<CDrawBayer>},
    {"bayer_rggb", "12-bit packed mosaic, rows R G and G B", ptBayerRGGB, kCell, kRead,
     makeGuarded<CDrawBayer>},
    {"bayer_gbrg", "12-bit packed mosaic, rows G B and R G", ptBayerGBRG, kCell, kRead,
     makeGuarded<CDrawBayer>},
    {"bayer_grbg", "12-bit packed mosaic, rows G R and B G", ptBayerGRBG, kCell, kRead,
     makeGuarded<CDrawBayer>},
    {"bayer_bggr12", "as bayer_bggr", ptBayerBGGR12, kCell, kRead, makeGuarded<CDrawBayer>},
    {"bayer_rggb12", "as bayer_rggb", ptBayerRGGB12, kCell, kRead, makeGuarded<CDrawBayer>},
    {"bayer_gbrg12", "as bayer_gbrg", ptBayerGBRG12, kCell, kRead, makeGuarded<CDrawBayer>},
    {"bayer_grbg12", "as bayer_grbg", ptBayerGRBG12, kCell, kRead, makeGuarded<CDrawBayer>},
    {"rgb48", "16-bit words R G B", ptRGB48, kPixel, kWords, makeGuarded<CDrawRGB48>},
    {"argb64", "16-bit words A R G B", ptARGB64, kPixel, kWords, makeGuarded<CDrawARGB64>},
    {"rgbhalf48", "as rgb48, of half floats", ptRGBHalf48, kPixel, kWords,
     makeGuarded<CDrawRGBHalf48>},
    {"rgbahalf64", "as argb64, of half floats", ptRGBAHalf64, kPixel, kWords,
     makeGuarded<CDrawARGB64>},
    {"ycbcr16", "16-bit words Y Cb Cr", ptNone, kPixel, kRead, makeGuarded<CDrawYCbCrYCbCr16>},
    {"ycbcra16", "16-bit words Y Cb Cr A, plotted six bytes apart", ptNone, kPixel,
     Shown::kSixBytes, makeGuarded<CDrawYCbCrYCbCrA16>},
    {"uv8", "chroma plane, bytes Cb Cr", ptUV8, kPixel, kRead, makeGuarded<CDrawUV8>},
    {"uv16", "chroma plane, 16-bit words Cb Cr", ptUV16, kPixel, kRead, makeGuarded<CDrawUV16>},
};

}  // namespace

std::span<const DrawLayout> drawLayouts() {
  return kDrawLayouts;
}

const DrawLayout& drawLayoutNamed(std::string_view name) {
  const auto* const found = std::ranges::find_if(
      kDrawLayouts, [&](const DrawLayout& layout) { return isSameName(layout.name, name); });
  if (found != std::end(kDrawLayouts))
    return *found;
  const auto* const nearest = nearestName(kDrawLayouts, name, &DrawLayout::name);
  throw Failure(
      ExitCode::kUsage, "no such layout", name.empty() ? "(empty)" : std::string(name),
      "the nearest is " + std::string(nearest->name) + "; see nkdraw draw --list-layouts");
}

const DrawLayout& sixByteLayout() {
  return drawLayoutNamed("ycbcr16");
}

}  // namespace nkdraw::tool
