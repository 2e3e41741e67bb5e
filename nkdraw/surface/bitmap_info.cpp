// SPDX-License-Identifier: BSD-2-Clause
//
// The table of frame headers: which code stands for which layout, and how large the frame is.
#include <nkdraw/surface/bitmap_info.h>

#include <nkdraw/surface/pixel_type.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw {
namespace {

using namespace std::string_view_literals;

/// What a row tells about a frame.
struct Frame {
  pixelType type;
  std::uint32_t multiplier;  // size = width * height * multiplier / divisor, in 32-bit arithmetic
  std::int32_t divisor;
  bool oneRow = false;  // the size is that of one row
};

constexpr Frame kNoFrame = {ptNone, 0, 1};

/// By depth only, as for plain RGB. 15 and 16 bits take two bytes a pixel but are drawn as 32-bit;
/// 48 bits take six but are drawn as 64-bit.
Frame byDepth(const BITMAPINFO& info) {
  switch (info.bmiHeader.biBitCount) {
    case 8:
      return kNoFrame;
    case 15:
    case 16:
      return {ptRGBA32, 2, 1};
    case 24:
      return {ptBGR24, 3, 1};
    case 48:
      return {ptARGB64, 6, 1};
    case 64:
      return {ptARGB64, 8, 1};
    default:
      return {ptBGRA32, 4, 1};
  }
}

Frame byDepthHalf48(const BITMAPINFO& info) {
  Frame frame = byDepth(info);
  if (info.bmiHeader.biBitCount == 48)
    frame.type = ptRGB48;
  return frame;
}

/// By depth, then by the first byte of the red mask that is not zero.
Frame byMask(const BITMAPINFO& info) {
  const std::uint16_t depth = info.bmiHeader.biBitCount;
  const bool threeBytes = depth == 24;
  Frame frame = threeBytes                   ? Frame{ptBGR24, 3, 1}
                : depth == 15 || depth == 16 ? Frame{ptNone, 2, 1}
                                             : Frame{ptARGB32, 4, 1};
  const RGBQUAD& mask = info.bmiColors[0];
  const std::uint8_t bytes[] = {mask.rgbBlue, mask.rgbGreen, mask.rgbRed, mask.rgbReserved};
  constexpr pixelType kThreeBytes[] = {ptRGB24, ptRGB24, ptBGR24, ptBGR24};
  constexpr pixelType kFourBytes[] = {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32};
  const auto* const first =
      std::find_if(std::begin(bytes), std::end(bytes), [](std::uint8_t byte) { return byte != 0; });
  if (first != std::end(bytes))
    frame.type = (threeBytes ? kThreeBytes : kFourBytes)[first - bytes];
  return frame;
}

template <pixelType type, std::uint32_t multiplier, std::int32_t divisor>
Frame fixed(const BITMAPINFO& /*info*/) {
  return {type, multiplier, divisor};
}

template <std::uint16_t depth, pixelType atDepth, pixelType elsewhere, std::uint32_t multiplier,
          std::int32_t divisor>
Frame unlessDepth(const BITMAPINFO& info) {
  return {info.bmiHeader.biBitCount == depth ? atDepth : elsewhere, multiplier, divisor};
}

/// Half floats: the size is that of one row.
Frame halfFloats(const BITMAPINFO& info) {
  return info.bmiHeader.biBitCount == 48 ? Frame{ptRGBHalf48, 6, 1, true}
                                         : Frame{ptRGBAHalf64, 8, 1, true};
}

struct Row {
  std::string_view codes;  // four letters each, lowest address first, one blank between them
  Frame (*frame)(const BITMAPINFO& info);
  std::uint16_t depthAfter = 0;   // what `biBitCount` becomes; 0 leaves it
  std::uint16_t depthBefore = 0;  // what it becomes before the frame is looked up; 0 leaves it
  bool storesSize = false;        // `biSizeImage` becomes the size whatever it was
};

// Codes of one family are numbers with their first letter in the top byte, so they stand reversed
// here; some formats occur in both orders.
constexpr Row kRows[] = {
    {"YUY2 YUNV"sv, fixed<ptYUYV, 2, 1>, 16},
    {"YVYU"sv, fixed<ptYVYU, 2, 1>, 16},
    {"UYVY UYNV yuv2 yuV2 2vuy 2Vuy auv2 cyuv ctrw MMES mpeg 1cva 80d3 dvsd dvhd dv25 dv50 52dv "
     "05dv dvcp pcvd n1vd p1vd n5vd p5vd nfvd pfvd 2hvd 3hvd 5hvd 6hvd phvd qhvd npvd ppvd  cvd"sv,
     fixed<ptUYVY, 2, 1>, 16},
    {"ocpa scpa"sv, unlessDepth<10, ptV210, ptUYVY, 2, 1>, 16},
    {"hcpa ncpa"sv, unlessDepth<8, ptUYVY, ptV210, 16, 6>, 16},
    {"v210 012v a12v 01d3"sv, fixed<ptV210, 16, 6>, 16},
    {"21ia 31ia 51ia 61ia p1ia q1ia 25ia 35ia 55ia 65ia p5ia q5ia"sv, fixed<ptV210, 2, 1>, 16},
    {"L10R L40R L1FR L4FR R01L R04L RF1L RF4L g01R k01R 03d3"sv, fixed<ptRGB30DPX, 0, 1>, 30},
    {"bggr si2k"sv, fixed<ptBayerBGGR, 3, 2>, 12, 0, true},
    {"rggb CBYR DBYR PBYR"sv, fixed<ptBayerRGGB, 3, 2>, 12, 0, true},
    {"RYBP"sv, fixed<ptBayerRGGB, 4, 3>, 10, 0, true},
    {"gbrg"sv, fixed<ptBayerGBRG, 3, 2>, 12, 0, true},
    {"grbg Vcva"sv, fixed<ptBayerGRBG, 3, 2>, 12, 0, true},
    {"BGGR BGGc"sv, fixed<ptBayerBGGR12, 3, 2>, 12, 0, true},
    {"RGGB RGGc"sv, fixed<ptBayerRGGB12, 3, 2>, 12, 0, true},
    {"GBRG GBRc"sv, fixed<ptBayerGBRG12, 3, 2>, 12, 0, true},
    {"GRBG GRBc"sv, fixed<ptBayerGRBG12, 3, 2>, 12, 0, true},
    {"1SCA 2SCA ccCA gcCA tcCA xpCA 61lf"sv, halfFloats, 0, 0, true},
    {"I420 IYUV YV12 Y211 YUV4 IF09 YVU9 CLPL CLJR Y41P Y41T Y42T r84b a46b 612v 803v 014v 024y "
     "4vuy"sv,
     fixed<ptNone, 0, 1>},
    {"\0\0\0\0 RGBA RGBT RGB2 BW10 BT20 CC12 YC12 V422 V655 AUR2 YUV8 CPLA IUVA IRAW CYUY VDTZ "
     "BTCV 84GB 46GB 84GR 46GR 84YX 46YX"sv,
     byDepth},
    {"h4pa"sv, byDepthHalf48},
    {"23d3"sv, byDepth, 0, 32},
    {"\3\0\0\0"sv, byMask},
};

constexpr std::size_t kCodeStride = 5;

constexpr std::uint32_t codeAt(std::string_view codes, std::size_t position) {
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < 4; ++i)
    code |= static_cast<std::uint32_t>(static_cast<unsigned char>(codes[position + i])) << (8 * i);
  return code;
}

const Row* rowOf(std::uint32_t compression) {
  for (const Row& row : kRows) {
    for (std::size_t at = 0; at < row.codes.size(); at += kCodeStride) {
      if (codeAt(row.codes, at) == compression)
        return &row;
    }
  }
  return nullptr;
}

std::uint32_t sizeOf(const Frame& frame, const BITMAPINFOHEADER& header) {
  const auto width = static_cast<std::uint32_t>(header.biWidth);
  const std::uint32_t height = frame.oneRow ? 1 : magnitude(header.biHeight);
  const auto product = static_cast<std::int32_t>(width * height * frame.multiplier);
  return static_cast<std::uint32_t>(product / frame.divisor);
}

}  // namespace

std::uint32_t DrawSizeFromBitmapInfo(BITMAPINFO* info, std::uint32_t* type) {
  BITMAPINFOHEADER& header = info->bmiHeader;
  std::uint32_t computed = 0;
  if (const Row* const row = rowOf(header.biCompression)) {
    if (row->depthBefore != 0)
      header.biBitCount = row->depthBefore;
    const Frame frame = row->frame(*info);
    computed = sizeOf(frame, header);
    if (row->depthAfter != 0)
      header.biBitCount = row->depthAfter;
    if (row->storesSize)
      header.biSizeImage = computed;
    if (type != nullptr)
      *type = static_cast<std::uint32_t>(frame.type);
  }
  const std::uint32_t size = std::max(computed, header.biSizeImage);
  if (header.biSizeImage == 0)
    header.biSizeImage = size;
  return size;
}

}  // namespace nkdraw
