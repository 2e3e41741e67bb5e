// SPDX-License-Identifier: BSD-2-Clause
#include "media/canvas_lines.h"

#include "media/v210_rows.h"

#include <nkdraw/surface/layout_facts.h>

#include <algorithm>
#include <cstring>

namespace nkdraw::media {
namespace {

constexpr int kShallow = 8;  // bits that the 8-bit layouts hold

// Below black; no colour reaches them, not even by wrapping around.
constexpr std::uint8_t kKey8 = 1;
constexpr std::uint32_t kKey10 = 5;
// Texts have alpha 0 or 255, and a watermark leaves pixels with up to 16 alone.
constexpr std::uint8_t kKeyAlpha = 7;

constexpr std::size_t kPixelBytes = 4;  // of BGRA, and of a pair in UYVY

void clearUYVY(std::uint8_t* row, std::size_t bytes) {
  std::memset(row, kKey8, bytes);
}
void readUYVY(const std::uint8_t* row, CanvasLine& line, int first, int end) {
  for (auto x = static_cast<std::size_t>(first); x < static_cast<std::size_t>(end); ++x) {
    const std::uint8_t* const pair = row + x / 2 * kPixelBytes;
    line[0][x] = pair[x % 2 == 0 ? 1 : 3];
    line[1][x / 2] = pair[0];
    line[2][x / 2] = pair[2];
  }
}

void clearV210(std::uint8_t* row, std::size_t bytes) {
  constexpr std::uint32_t kWord = kKey10 | kKey10 << 10 | kKey10 << 20;
  for (std::size_t i = 0; i + sizeof kWord <= bytes; i += sizeof kWord)
    std::memcpy(row + i, &kWord, sizeof kWord);
}
void readV210(const std::uint8_t* row, CanvasLine& line, int first, int end) {
  unpackV210Row(row + rowBytes(ptV210, first), line[0].data() + first, line[1].data() + first / 2,
                line[2].data() + first / 2, end - first);
}

void clearBGRA(std::uint8_t* row, std::size_t bytes) {
  std::memset(row, kKeyAlpha, bytes);
}
void readBGRA(const std::uint8_t* row, CanvasLine& line, int first, int end) {
  constexpr std::size_t kOrder[] = {2, 1, 0, 3};
  for (auto x = static_cast<std::size_t>(first); x < static_cast<std::size_t>(end); ++x) {
    for (std::size_t i = 0; i < kPixelBytes; ++i)
      line[i][x] = row[x * kPixelBytes + kOrder[i]];
  }
}

constexpr CanvasKind kUYVY = {ptUYVY, 8, false, true, kKey8, clearUYVY, readUYVY};
constexpr CanvasKind kV210 = {ptV210, 10, false, false, kKey10, clearV210, readV210};
constexpr CanvasKind kBGRA = {ptBGRA32, 8, true, true, kKeyAlpha, clearBGRA, readBGRA};

}  // namespace

const CanvasKind& canvasKindFor(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  if ((facts.flags & AV_PIX_FMT_FLAG_RGB) != 0)
    return kBGRA;
  return facts.comp[0].depth > kShallow ? kV210 : kUYVY;
}

Columns changedColumns(const CanvasKind& kind, const std::uint8_t* row, const std::uint8_t* other,
                       int width) {
  constexpr std::size_t kAtOnce = 64;  // bytes, whole groups in each kind
  const LayoutFacts& facts = *findFacts(kind.type);
  const int pixels = static_cast<int>(kAtOnce) / facts.groupBytes * facts.groupPixels;
  const std::size_t bytes = rowBytes(kind.type, width);
  const auto isSame = [&](std::size_t block) {
    const std::size_t at = block * kAtOnce;
    return std::memcmp(row + at, other + at, std::min(kAtOnce, bytes - at)) == 0;
  };
  std::size_t first = 0, end = (bytes + kAtOnce - 1) / kAtOnce;
  while (first < end && isSame(first))
    ++first;
  while (first < end && isSame(end - 1))
    --end;
  return {std::min(static_cast<int>(first) * pixels, width),
          std::min(static_cast<int>(end) * pixels, width)};
}

CanvasLine makeLine(const CanvasKind& kind, int width) {
  const auto pixels = static_cast<std::size_t>(width);
  const std::size_t others = kind.isRGB ? pixels : (pixels + 1) / 2;
  CanvasLine line;
  for (std::size_t i = 0; i < line.size(); ++i)
    line[i].resize(i == 0 ? pixels : others);
  return line;
}

}  // namespace nkdraw::media
