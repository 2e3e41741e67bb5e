// SPDX-License-Identifier: BSD-2-Clause
//
// From headers to layouts: every code of the table with every depth that matters.
#include <nkdraw/nkdraw.h>
#include <nkdraw/surface/bitmap_info.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int kDepths[] = {0,  1,  4,  7,  8,  9,  10, 12, 14, 15, 16, 17,   23,
                           24, 25, 30, 31, 32, 33, 47, 48, 49, 63, 64, 65535};

struct Size {
  int width, height;
};
// Odd ones, one whose products wrap at 32 bits, and one whose product is negative as a number.
constexpr Size kSizes[] = {{1920, 1080}, {1920, -1080},  {7, 5},        {7, -5},
                           {1, 1},       {40000, 30000}, {65536, 65536}};

std::uint32_t codeOf(const std::string& letters) {
  std::uint32_t code;
  std::memcpy(&code, letters.data(), sizeof code);
  return code;
}

/// Each row names its codes one under the other, in memory order, and what becomes of them.
enum class Rule {
  kYuyv,
  kYvyu,
  kUyvy,
  kAvc8or10,
  kAvcOtherwise10,
  kV210,
  kV210InTwoBytes,
  kDpx,
  kBayer21,
  kBayer22,
  kBayer22Of10,
  kBayer23,
  kBayer24,
  kBayer25,
  kBayer26,
  kBayer27,
  kBayer28,
  kHalf,
  kPlanar,
  kDepth,
  kDepthOr31,
  kDepth32,
};

struct Codes {
  Rule rule;
  std::vector<std::string> letters;
};

const std::vector<Codes>& table() {
  static const std::vector<Codes> kTable = {
      {Rule::kYuyv, {"YUY2", "YUNV"}},
      {Rule::kYvyu, {"YVYU"}},
      {Rule::kUyvy, {"UYVY", "UYNV", "yuv2", "yuV2", "2vuy", "2Vuy", "auv2", "cyuv", "ctrw",
                     "MMES", "mpeg", "1cva", "80d3", "dvsd", "dvhd", "dv25", "dv50", "52dv",
                     "05dv", "dvcp", "pcvd", "n1vd", "p1vd", "n5vd", "p5vd", "nfvd", "pfvd",
                     "2hvd", "3hvd", "5hvd", "6hvd", "phvd", "qhvd", "npvd", "ppvd", " cvd"}},
      {Rule::kAvc8or10, {"ocpa", "scpa"}},
      {Rule::kAvcOtherwise10, {"hcpa", "ncpa"}},
      {Rule::kV210, {"v210", "012v", "a12v", "01d3"}},
      {Rule::kV210InTwoBytes,
       {"21ia", "31ia", "51ia", "61ia", "p1ia", "q1ia", "25ia", "35ia", "55ia", "65ia", "p5ia",
        "q5ia"}},
      {Rule::kDpx,
       {"L10R", "L40R", "L1FR", "L4FR", "R01L", "R04L", "RF1L", "RF4L", "g01R", "k01R", "03d3"}},
      {Rule::kBayer21, {"bggr", "si2k"}},
      {Rule::kBayer22, {"rggb", "CBYR", "DBYR", "PBYR"}},
      {Rule::kBayer22Of10, {"RYBP"}},
      {Rule::kBayer23, {"gbrg"}},
      {Rule::kBayer24, {"grbg", "Vcva"}},
      {Rule::kBayer25, {"BGGR", "BGGc"}},
      {Rule::kBayer26, {"RGGB", "RGGc"}},
      {Rule::kBayer27, {"GBRG", "GBRc"}},
      {Rule::kBayer28, {"GRBG", "GRBc"}},
      {Rule::kHalf, {"1SCA", "2SCA", "ccCA", "gcCA", "tcCA", "xpCA", "61lf"}},
      {Rule::kPlanar,
       {"I420", "IYUV", "YV12", "Y211", "YUV4", "IF09", "YVU9", "CLPL", "CLJR", "Y41P", "Y41T",
        "Y42T", "r84b", "a46b", "612v", "803v", "014v", "024y", "4vuy"}},
      {Rule::kDepth,
       {std::string(4, '\0'),
        "RGBA",
        "RGBT",
        "RGB2",
        "BW10",
        "BT20",
        "CC12",
        "YC12",
        "V422",
        "V655",
        "AUR2",
        "YUV8",
        "CPLA",
        "IUVA",
        "IRAW",
        "CYUY",
        "VDTZ",
        "BTCV",
        "84GB",
        "46GB",
        "84GR",
        "46GR",
        "84YX",
        "46YX"}},
      {Rule::kDepthOr31, {"h4pa"}},
      {Rule::kDepth32, {"23d3"}},
  };
  return kTable;
}

/// What a header becomes.
struct Expected {
  std::int32_t type;
  std::uint32_t size;
  int depth;
  bool stored = false;  // biSizeImage takes the size before the end rule
};

std::int32_t wrap(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

/// w * h * times / by in 32-bit arithmetic; the division is signed.
std::uint32_t area(Size size, int times, int by = 1) {
  const std::int32_t height = size.height < 0 ? -size.height : size.height;
  std::int32_t product = wrap(std::int64_t{size.width} * height);
  product = wrap(std::int64_t{product} * times);
  return static_cast<std::uint32_t>(product / by);
}

Expected byDepth(int depth, Size size) {
  if (depth == 8)
    return {-1, 0, depth};
  if (depth == 15 || depth == 16)
    return {1, area(size, 2), depth};
  if (depth == 24)
    return {6, area(size, 3), depth};
  if (depth == 48)
    return {32, area(size, 6), depth};
  if (depth == 64)
    return {32, area(size, 8), depth};
  return {3, area(size, 4), depth};
}

Expected expected(Rule rule, int depth, Size size) {
  switch (rule) {
    case Rule::kYuyv:
      return {10, area(size, 2), 16};
    case Rule::kYvyu:
      return {12, area(size, 2), 16};
    case Rule::kUyvy:
      return {11, area(size, 2), 16};
    case Rule::kAvc8or10:
      return {depth == 10 ? 14 : 11, area(size, 2), 16};
    case Rule::kAvcOtherwise10:
      return {depth == 8 ? 11 : 14, area(size, 16, 6), 16};
    case Rule::kV210:
      return {14, area(size, 16, 6), 16};
    case Rule::kV210InTwoBytes:
      return {14, area(size, 2), 16};
    case Rule::kDpx:
      return {20, 0, 30};
    case Rule::kBayer21:
      return {21, area(size, 3, 2), 12, true};
    case Rule::kBayer22:
      return {22, area(size, 3, 2), 12, true};
    case Rule::kBayer22Of10:
      return {22, area(size, 4, 3), 10, true};
    case Rule::kBayer23:
      return {23, area(size, 3, 2), 12, true};
    case Rule::kBayer24:
      return {24, area(size, 3, 2), 12, true};
    case Rule::kBayer25:
      return {25, area(size, 3, 2), 12, true};
    case Rule::kBayer26:
      return {26, area(size, 3, 2), 12, true};
    case Rule::kBayer27:
      return {27, area(size, 3, 2), 12, true};
    case Rule::kBayer28:
      return {28, area(size, 3, 2), 12, true};
    case Rule::kHalf:
      if (depth == 48)
        return {37, static_cast<std::uint32_t>(size.width) * 6, depth, true};
      return {38, static_cast<std::uint32_t>(size.width) * 8, depth, true};
    case Rule::kPlanar:
      return {-1, 0, depth};
    case Rule::kDepth:
      return byDepth(depth, size);
    case Rule::kDepthOr31: {
      Expected answer = byDepth(depth, size);
      if (depth == 48)
        answer.type = 31;
      return answer;
    }
    case Rule::kDepth32:
      return byDepth(32, size);
  }
  return {};
}

BITMAPINFO headerOf(std::uint32_t code, int depth, Size size, std::uint32_t bytes) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = 40;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biWidth = size.width;
  info.bmiHeader.biHeight = size.height;
  info.bmiHeader.biBitCount = static_cast<std::uint16_t>(depth);
  info.bmiHeader.biCompression = code;
  info.bmiHeader.biSizeImage = bytes;
  return info;
}

/// Maps the header, and compares all that the call may change.
void expectMapped(std::uint32_t code, int depth, Size size, std::uint32_t bytes,
                  const Expected& want) {
  SCOPED_TRACE(testing::Message() << "code " << std::hex << code << std::dec << " depth " << depth
                                  << " size " << size.width << "x" << size.height << " biSizeImage "
                                  << bytes);
  BITMAPINFO info = headerOf(code, depth, size, bytes);
  std::uint32_t type = 12345;
  const std::uint32_t got = nkdraw::DrawSizeFromBitmapInfo(&info, &type);

  const std::uint32_t stored = want.stored ? want.size : bytes;
  const std::uint32_t result = std::max(want.size, stored);
  EXPECT_EQ(got, result);
  EXPECT_EQ(static_cast<std::int32_t>(type), want.type);
  const BITMAPINFO after = headerOf(code, want.depth, size, stored == 0 ? result : stored);
  EXPECT_EQ(std::memcmp(&info, &after, sizeof info), 0)
      << "depth " << info.bmiHeader.biBitCount << ", size " << info.bmiHeader.biSizeImage;
}

constexpr std::uint32_t kPresetSizes[] = {0, 1, 4147200, 0xFFFFFFFF};

TEST(BitmapInfo, EveryCodeMapsAsItsRowSaysAtEveryDepth) {
  for (const Codes& row : table()) {
    for (const std::string& letters : row.letters) {
      for (const int depth : kDepths) {
        for (const Size size : kSizes) {
          for (const std::uint32_t bytes : kPresetSizes)
            expectMapped(codeOf(letters), depth, size, bytes, expected(row.rule, depth, size));
        }
      }
    }
  }
}

TEST(BitmapInfo, TheTableHasEachCodeOnce) {
  std::set<std::uint32_t> codes;
  std::size_t count = 0;
  for (const Codes& row : table()) {
    for (const std::string& letters : row.letters) {
      ASSERT_EQ(letters.size(), 4U);
      codes.insert(codeOf(letters));
      ++count;
    }
  }
  EXPECT_EQ(codes.size(), count);
  EXPECT_EQ(codeOf("YUY2"), 0x32595559U);
  EXPECT_EQ(codeOf("hcpa"), 0x61706368U);
  EXPECT_EQ(codeOf(" cvd"), 0x64766320U);
}

/// A code that is in no row gives the header's own size and no type.
void expectUnknown(std::uint32_t code) {
  for (const std::uint32_t bytes : kPresetSizes) {
    SCOPED_TRACE(testing::Message() << std::hex << code);
    BITMAPINFO info = headerOf(code, 24, {1920, 1080}, bytes);
    const BITMAPINFO before = info;
    std::uint32_t type = 12345;
    EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), bytes);
    EXPECT_EQ(type, 12345U);
    EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
  }
}

TEST(BitmapInfo, ACodeOutsideTheTableLeavesTypeAndHeaderAlone) {
  std::set<std::uint32_t> known = {3};
  for (const Codes& row : table()) {
    for (const std::string& letters : row.letters)
      known.insert(codeOf(letters));
  }
  // What differs from a code of the table in a letter's case, or in the order of its bytes.
  std::set<std::uint32_t> others = {1, 2, 4, 5, 0xFFFFFFFF};
  for (const std::uint32_t code : known) {
    for (int byte = 0; byte < 4; ++byte)
      others.insert(code ^ (0x20U << (8 * byte)));
    others.insert(__builtin_bswap32(code));
  }
  std::mt19937 noise(7);
  for (int i = 0; i < 1000; ++i)
    others.insert(static_cast<std::uint32_t>(noise()));
  for (const std::uint32_t code : others) {
    if (!known.contains(code))
      expectUnknown(code);
  }
}

TEST(BitmapInfo, ANullTypeIsNotWritten) {
  BITMAPINFO info = headerOf(codeOf("v210"), 10, {1920, 1080}, 0);
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, nullptr), 5529600U);
  EXPECT_EQ(info.bmiHeader.biBitCount, 16);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 5529600U);
}

TEST(BitmapInfo, ABitFieldsHeaderGoesByTheFirstNonZeroByteOfItsRedMask) {
  struct Mask {
    std::uint8_t bytes[4];
    int first;  // -1: all are zero
  };
  const Mask kMasks[] = {
      {{0, 0, 0, 0}, -1},      {{0xFF, 0, 0, 0}, 0}, {{1, 0xFF, 0xFF, 0xFF}, 0},
      {{0, 0x80, 0, 0}, 1},    {{0, 1, 1, 1}, 1},    {{0, 0, 0xFF, 0}, 2},
      {{0, 0, 0x10, 0xF0}, 2}, {{0, 0, 0, 0xFF}, 3}, {{0, 0xF8, 0, 0}, 1},
  };
  for (const Mask& mask : kMasks) {
    for (const int depth : kDepths) {
      for (const Size size : kSizes) {
        for (const std::uint32_t bytes : kPresetSizes) {
          SCOPED_TRACE(testing::Message() << "mask byte " << mask.first << " depth " << depth);
          BITMAPINFO info = headerOf(3, depth, size, bytes);
          std::memcpy(info.bmiColors, mask.bytes, 4);
          const int bytesAPixel = depth == 15 || depth == 16 ? 2 : depth == 24 ? 3 : 4;
          int want = bytesAPixel == 2 ? -1 : bytesAPixel == 3 ? 6 : 2;
          if (mask.first >= 0)
            want = depth == 24 ? (mask.first < 2 ? 5 : 6) : mask.first + 1;
          const std::uint32_t result = std::max(area(size, bytesAPixel), bytes);

          std::uint32_t type = 12345;
          EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), result);
          EXPECT_EQ(static_cast<std::int32_t>(type), want);
          EXPECT_EQ(info.bmiHeader.biBitCount, depth);
          EXPECT_EQ(info.bmiHeader.biSizeImage, bytes == 0 ? result : bytes);
          EXPECT_EQ(std::memcmp(info.bmiColors, mask.bytes, 4), 0);
        }
      }
    }
  }
}

TEST(BitmapInfo, ASixteenBitMaskOfF800IsArgbOfTwoBytesAPixel) {
  BITMAPINFO info = headerOf(3, 16, {100, 10}, 0);
  const std::uint32_t mask = 0x0000F800;
  std::memcpy(info.bmiColors, &mask, sizeof mask);
  std::uint32_t type = 0;
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), 2000U);
  EXPECT_EQ(type, 2U);
}

TEST(BitmapInfo, HalfFloatsHaveTheSizeOfOneRow) {
  BITMAPINFO info = headerOf(codeOf("1SCA"), 64, {1920, 1080}, 0);
  std::uint32_t type = 0;
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), 15360U);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 15360U);
}

TEST(BitmapInfo, ALargerSizeInTheHeaderWinsAndASmallerOneStaysWritten) {
  BITMAPINFO info = headerOf(codeOf("UYVY"), 16, {100, 10}, 3000);
  std::uint32_t type = 0;
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), 3000U);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 3000U);
  info.bmiHeader.biSizeImage = 1000;
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), 2000U);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 1000U);
}

TEST(BitmapInfo, AMosaicsSizeReplacesALargerOneInTheHeader) {
  BITMAPINFO info = headerOf(codeOf("bggr"), 8, {100, 10}, 99999);
  std::uint32_t type = 0;
  EXPECT_EQ(nkdraw::DrawSizeFromBitmapInfo(&info, &type), 1500U);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 1500U);
}

}  // namespace
