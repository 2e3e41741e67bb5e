// SPDX-License-Identifier: BSD-2-Clause
//
// Caption cells on frames of every kind, against cells that are drawn point by point.
#include <host/caption_glyphs.h>
#include <host/caption_screen.h>

#include <nkdraw/text/label_glyphs.h>

#include <tests/support/frame.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::CaptionDecoder;
using nkdraw::CaptionScreen;

constexpr auto kColumns = static_cast<std::size_t>(CaptionDecoder::kColumns);
constexpr auto kRows = static_cast<std::size_t>(CaptionDecoder::kRows);
using Cells = std::array<vbi_char, kColumns * kRows>;

/// A kind of frame: its code and its depth.
struct Kind {
  const char* name;
  std::array<char, 4> code;
  std::uint16_t depth;
};

constexpr Kind kKinds[] = {
    {"BGRA", {0, 0, 0, 0}, 32},         {"BGR24", {0, 0, 0, 0}, 24},
    {"RGB48", {0, 0, 0, 0}, 48},        {"ARGB64", {0, 0, 0, 0}, 64},
    {"v210", {'v', '2', '1', '0'}, 20}, {"UYVY", {'U', 'Y', 'V', 'Y'}, 16},
    {"YUY2", {'Y', 'U', 'Y', '2'}, 16}, {"YVYU", {'Y', 'V', 'Y', 'U'}, 16},
    {"DPX", {'L', '1', '0', 'R'}, 30},  {"Half", {'1', 'S', 'C', 'A'}, 48},
    {"bggr", {'b', 'g', 'g', 'r'}, 12}, {"rggb", {'r', 'g', 'g', 'b'}, 12},
    {"gbrg", {'g', 'b', 'r', 'g'}, 12}, {"grbg", {'g', 'r', 'b', 'g'}, 12},
};

struct Size {
  int width, height;
};

constexpr Size kSizes[] = {{352, 240}, {683, 382}, {1041, 577}, {100, 60}, {16, 16}};

HZWVIDEO videoOf(const Kind& kind, const Size& size) {
  HZWVIDEO video{};
  video.biSize = sizeof video;
  video.biWidth = size.width;
  video.biHeight = size.height;
  video.biPlanes = 1;
  video.biBitCount = kind.depth;
  std::memcpy(&video.biCompression, kind.code.data(), 4);
  video.biSizeImage = 8U * static_cast<std::uint32_t>(size.width * size.height);
  return video;
}

struct Release {
  void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
};

/// What the screen should look like, drawn on a surface of its own.
class PlainScreen {
 public:
  PlainScreen(const HZWVIDEO& video, char* pixels)
      : width_(video.biWidth), height_(video.biHeight) {
    BITMAPINFO info{};
    std::memcpy(&info, &video, sizeof info);
    NKDraw* made = nullptr;
    EXPECT_EQ(GetDraw(&info, nullptr, made), 0U);
    surface_.reset(made);
    if (height_ >= 720)
      made->SetYCbCrMode(NKPixel::mode709Studio);
    made->SetCanvas(pixels, height_, width_, 0);
    scale_ = std::max(1, std::min(width_ * 8 / 10 / 272, height_ * 8 / 10 / 150));
    left_ = std::max(0, (width_ - 272 * scale_) / 2 & ~1);
    top_ = std::min((height_ - 150 * scale_) / 2 & ~1, height_ - 150 * scale_);
  }

  void draw(const Cells& cells, bool boxes) {
    for (std::size_t row = 0; row < kRows; ++row) {
      for (std::size_t column = 0; boxes && column < kColumns; ++column)
        drawBox(cells[row * kColumns + column], cornerOf(row, column));
      for (std::size_t column = 0; column < kColumns; ++column)
        drawGlyph(cells[row * kColumns + column], cornerOf(row, column));
    }
  }

 private:
  [[nodiscard]] tagPOINT cornerOf(std::size_t row, std::size_t column) const {
    return {left_ + static_cast<int>(column) * 8 * scale_,
            top_ + static_cast<int>(row) * 10 * scale_};
  }
  [[nodiscard]] bool fits(const tagPOINT& corner) const {
    return corner.x + 8 * scale_ <= width_ && corner.y >= 0 && corner.y + 10 * scale_ <= height_;
  }

  void drawBox(const vbi_char& cell, const tagPOINT& corner) {
    if (cell.opacity == VBI_TRANSPARENT_SPACE || cell.opacity == VBI_TRANSPARENT_FULL)
      return;
    for (int line = 0; line < 10 && fits(corner); ++line)
      drawDots(cell.background, 0xFF, {corner.x, corner.y + line * scale_});
  }

  void drawGlyph(const vbi_char& cell, const tagPOINT& corner) {
    if (cell.opacity == VBI_TRANSPARENT_SPACE || (cell.unicode == ' ' && !cell.underline))
      return;
    const std::uint8_t* const glyph = nkdraw::labelGlyphs + 10 * nkdraw::captionGlyph(cell.unicode);
    for (int line = 0; line < 10 && fits(corner); ++line) {
      unsigned dots = glyph[9 - line];
      if (cell.italic && line < 5)
        dots >>= 1;
      if (cell.underline && line == 9)
        dots = 0xFF;
      drawDots(cell.foreground, dots, {corner.x, corner.y + line * scale_});
    }
  }

  /// In layouts that plot the luma of a pixel's neighbour, the neighbour is plotted.
  void drawDots(unsigned colour, unsigned dots, const tagPOINT& corner) {
    const pixelType type = surface_->PixelType();
    const int swap = type == ptYUYV || type == ptYVYU ? 1 : 0;
    surface_->SetColorRGBA(colour & 1, colour >> 1 & 1, colour >> 2 & 1, 1.0, true);
    for (int y = 0; y < scale_; ++y) {
      for (int x = 0; x < 8 * scale_; ++x) {
        if ((dots & 0x80U >> x / scale_) != 0)
          surface_->PutPixel((corner.x + x) ^ swap, corner.y + y, true);
      }
    }
  }

  std::unique_ptr<NKDraw, Release> surface_;
  int width_, height_, scale_ = 1, left_ = 0, top_ = 0;
};

/// Words of any look in some rows, blanks between them.
void write(Cells& cells, Random& random) {
  for (vbi_char& cell : cells) {
    cell = {};
    cell.opacity = VBI_TRANSPARENT_SPACE;
    cell.unicode = ' ';
  }
  for (int word = random.between(1, 5); word > 0; --word) {
    auto at = static_cast<std::size_t>(random.between(0, static_cast<int>(cells.size()) - 1));
    const unsigned look = random.word();
    const vbi_opacity opacities[] = {VBI_OPAQUE, VBI_TRANSPARENT_FULL, VBI_SEMI_TRANSPARENT,
                                     VBI_OPAQUE};
    for (int length = random.between(1, 40); length > 0 && at < cells.size(); --length, ++at) {
      cells[at].opacity = static_cast<std::uint8_t>(opacities[look & 3]);
      cells[at].foreground = look >> 2 & 7;
      cells[at].background = random.word() % 8 == 0 ? look >> 5 & 7 : 0;
      cells[at].italic = look >> 8 & 1;
      cells[at].underline = (look >> 9 & 3) == 0 ? 1 : 0;
      cells[at].unicode = static_cast<std::uint16_t>(random.between(' ', 'z'));
    }
  }
}

class CaptionScreens : public testing::TestWithParam<Kind> {
 protected:
  [[nodiscard]] static std::size_t frameBytes(const Size& size) {
    return (GetParam().depth >= 48 ? 8U : 4U) *
           static_cast<std::size_t>((size.width + 48) * size.height);
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, CaptionScreens, testing::ValuesIn(kKinds),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(CaptionScreens, AreCellsDrawnPointByPointOnEveryFrameWhetherTheyChangeOrNot) {
  for (const Size& size : kSizes) {
    const HZWVIDEO video = videoOf(GetParam(), size);
    CaptionScreen screen(video);
    ASSERT_TRUE(screen);
    Random random(static_cast<std::uint32_t>(size.width));
    Cells cells{};
    bool boxes = true;
    for (std::uint32_t frame = 0; frame < 5; ++frame) {
      if (frame % 3 != 1)
        write(cells, random);
      if (frame % 4 == 3)
        boxes = !boxes;
      Frame wanted(frameBytes(size), frame);
      Frame got = wanted;
      PlainScreen(video, wanted.canvas()).draw(cells, boxes);
      screen.draw(cells, got.canvas(), boxes);
      ASSERT_EQ(wanted.all(), got.all()) << size.width << "x" << size.height << ' ' << frame;
      EXPECT_TRUE(got.guardsIntact());
    }
  }
}

TEST_P(CaptionScreens, WithoutCellsDrawNothing) {
  CaptionScreen screen(videoOf(GetParam(), kSizes[0]));
  Frame frame(frameBytes(kSizes[0]));
  screen.draw({}, frame.canvas(), true);
  EXPECT_TRUE(frame.untouched());
}

}  // namespace
