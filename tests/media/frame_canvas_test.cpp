// SPDX-License-Identifier: BSD-2-Clause
//
// Drawing on frames in their own pixel format: whatever the format, size and orientation, only what
// was drawn changes.
#include <media/frame_canvas.h>
#include <media/v210_rows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <utility>

extern "C" {
#include <libavutil/display.h>
}

namespace {

using namespace nkdraw::media;

constexpr Orientation kOrientations[] = {
    {false, false, false}, {false, true, false}, {false, false, true}, {false, true, true},
    {true, false, false},  {true, true, false},  {true, false, true},  {true, true, true}};

// A rectangle in the shown picture.
constexpr int kLeft = 5, kTop = 3, kRight = 12, kBottom = 10;

Frame randomFrame(AVPixelFormat format, int width, int height) {
  std::mt19937 random(7);
  Frame frame = makeFrame(format, width, height);
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  for (int i = 0; i < facts.nb_components; ++i) {
    const Component component(format, i);
    for (int y = 0; y < component.rows(height); ++y) {
      for (int x = 0; x < component.columns(width); ++x)
        component.put(*frame, x, y, static_cast<unsigned>(random()) & component.most());
    }
  }
  return frame;
}

/// Black pixels of a row, as the surfaces draw them.
void drawBlackUYVY(std::uint8_t* row, int /*width*/) {
  for (int x = kLeft; x < kRight; ++x) {
    row[2 * x + 1] = 16;
    row[x / 2 * 4] = row[x / 2 * 4 + 2] = 128;
  }
}
void drawBlackV210(std::uint8_t* row, int width) {
  std::array<std::array<std::uint16_t, 64>, 3> line{};
  unpackV210Row(row, line[0].data(), line[1].data(), line[2].data(), width);
  for (std::size_t x = kLeft; x < kRight; ++x) {
    line[0][x] = 64;
    line[1][x / 2] = line[2][x / 2] = 512;
  }
  packV210Row(line[0].data(), line[1].data(), line[2].data(), row, width);
}
void drawBlackBGRA(std::uint8_t* row, int /*width*/) {
  std::fill_n(row + std::ptrdiff_t{4} * kLeft, 4 * (kRight - kLeft), std::uint8_t{0});
}

/// Black in the rectangle.
void drawBlack(pixelType type, std::uint8_t* canvas, int width) {
  for (int y = kTop; y < kBottom; ++y) {
    std::uint8_t* const row = canvas + packedPitch(type, width) * static_cast<std::size_t>(y);
    (type == ptV210 ? drawBlackV210 : type == ptUYVY ? drawBlackUYVY : drawBlackBGRA)(row, width);
  }
}

/// Whether a component is black, or opaque.
unsigned blackOf(AVPixelFormat format, int component) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  const bool alpha = (facts.flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
  const int depth = facts.comp[component].depth;
  if (alpha && component == facts.nb_components - 1)
    return Component(format, component).most();
  if ((facts.flags & AV_PIX_FMT_FLAG_RGB) != 0 || facts.nb_components < 3)
    return 0;
  return component == 0 ? 16U << (depth - 8) : 1U << (depth - 1);
}

struct Shown {
  int width, height;
  Orientation orientation;
};

/// Whether a pixel of the frame lies in the rectangle of the shown picture.
bool inRectangle(const Shown& shown, int frameWidth, int frameHeight, int x, int y) {
  for (int row = kTop; row < kBottom; ++row) {
    for (int column = kLeft; column < kRight; ++column) {
      const Pixel at = shown.orientation.inFrame({column, row}, frameWidth, frameHeight);
      if (at.x == x && at.y == y)
        return true;
    }
  }
  return false;
}

void checkFormat(AVPixelFormat format, int width, int height, const Orientation& orientation) {
  const Shown shown = {orientation.turned ? height : width, orientation.turned ? width : height,
                       orientation};
  const Frame before = randomFrame(format, width, height);
  const Frame after = makeFrame(format, width, height);
  av_frame_copy(after.get(), before.get());
  FrameCanvas canvas({format, width, height, false, orientation}, {{kTop, kBottom}}, {});
  canvas.draw(*after,
              [&](std::uint8_t* pixels) { drawBlack(canvas.layout().type, pixels, shown.width); });
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  for (int i = 0; i < facts.nb_components; ++i) {
    const Component component(format, i);
    if (component.columns(width) != width || component.rows(height) != height)
      continue;  // shared chroma has tests of its own
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const unsigned expected = inRectangle(shown, width, height, x, y)
                                      ? blackOf(format, i)
                                      : component.get(*before, x, y);
        ASSERT_EQ(component.get(*after, x, y), expected)
            << facts.name << " component " << i << " at " << x << "," << y;
      }
    }
  }
}

}  // namespace

TEST(FrameCanvas, ChangesOnlyWhatWasDrawnInEveryFormatThatHasComponents) {
  int formats = 0;
  for (const AVPixFmtDescriptor* facts = av_pix_fmt_desc_next(nullptr); facts != nullptr;
       facts = av_pix_fmt_desc_next(facts)) {
    const AVPixelFormat format = av_pix_fmt_desc_get_id(facts);
    const bool full = std::strncmp(facts->name, "yuvj", 4) == 0;  // black is another
    if (!hasComponents(format) || full)
      continue;
    ++formats;
    checkFormat(format, 24, 16, {});
    checkFormat(format, 17, 13, {});
  }
  EXPECT_GT(formats, 120);
}

TEST(FrameCanvas, DrawsUprightInTurnedAndMirroredFrames) {
  for (const Orientation& orientation : kOrientations) {
    for (const AVPixelFormat format : {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV444P12, AV_PIX_FMT_GBRP,
                                       AV_PIX_FMT_YUV420P, AV_PIX_FMT_GRAY8})
      checkFormat(format, 21, 16, orientation);
  }
}

TEST(FrameCanvas, KeepsFloatingPointOfAnyValue) {
  constexpr int kWidth = 24, kHeight = 16;
  for (const AVPixelFormat format : {AV_PIX_FMT_GBRPF32LE, AV_PIX_FMT_GBRPF32BE}) {
    const Frame before = makeFrame(format, kWidth, kHeight);
    std::mt19937 random(7);
    for (int plane = 0; plane < 3; ++plane) {
      for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{before->linesize[plane]} * kHeight; ++i)
        before->data[plane][i] = static_cast<std::uint8_t>(random());
    }
    const Frame after = makeFrame(format, kWidth, kHeight);
    av_frame_copy(after.get(), before.get());
    FrameCanvas canvas({format, kWidth, kHeight}, {{kTop, kBottom}}, {});
    canvas.draw(*after,
                [&](std::uint8_t* pixels) { drawBlack(canvas.layout().type, pixels, kWidth); });
    for (int plane = 0; plane < 3; ++plane) {
      for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
          const std::ptrdiff_t at = std::ptrdiff_t{before->linesize[plane]} * y + 4 * x;
          constexpr std::uint8_t kZero[4] = {};
          const bool drawn = inRectangle({kWidth, kHeight, {}}, kWidth, kHeight, x, y);
          const std::uint8_t* const expected = drawn ? kZero : before->data[plane] + at;
          ASSERT_EQ(std::memcmp(after->data[plane] + at, expected, sizeof kZero), 0)
              << x << "," << y;
        }
      }
    }
  }
}

TEST(Component, OfFloatingPointGoesFromZeroToOne) {
  const Frame frame = makeFrame(AV_PIX_FMT_GRAYF32, 1, 1);
  const Component component(AV_PIX_FMT_GRAYF32, 0);
  float sample = 0;
  for (const auto& [stored, read] : {std::pair{0.0F, 0U},
                                     {-1.0F, 0U},
                                     {1.0F, 65535U},
                                     {7.5F, 65535U},
                                     {0.5F, 32768U},
                                     {std::nanf(""), 0U}}) {
    std::memcpy(frame->data[0], &stored, sizeof stored);
    EXPECT_EQ(component.get(*frame, 0, 0), read);
  }
  component.put(*frame, 0, 0, 65535);
  std::memcpy(&sample, frame->data[0], sizeof sample);
  EXPECT_EQ(sample, 1.0F);
}

TEST(FrameCanvas, ComponentsAreWhatFFmpegReads) {
  for (const AVPixFmtDescriptor* facts = av_pix_fmt_desc_next(nullptr); facts != nullptr;
       facts = av_pix_fmt_desc_next(facts)) {
    const AVPixelFormat format = av_pix_fmt_desc_get_id(facts);
    if (!hasComponents(format) || (facts->flags & AV_PIX_FMT_FLAG_FLOAT) != 0)
      continue;
    const Frame frame = randomFrame(format, 16, 8);
    for (int i = 0; i < facts->nb_components; ++i) {
      const Component component(format, i);
      std::uint16_t line[16];
      for (int y = 0; y < component.rows(8); ++y) {
        av_read_image_line2(line, const_cast<const std::uint8_t**>(frame->data), frame->linesize,
                            facts, 0, y, i, component.columns(16), 0, sizeof line[0]);
        for (int x = 0; x < component.columns(16); ++x)
          ASSERT_EQ(component.get(*frame, x, y), line[x]) << facts->name << " component " << i;
      }
    }
  }
}

TEST(SampleScale, KeepsWhiteAndBlackAndShiftsStudioRange) {
  for (const int depth : {8, 9, 10, 12, 14, 16}) {
    const SampleScale studio(levelsOf(SampleKind::kLuma, 8, false),
                             levelsOf(SampleKind::kLuma, depth, false));
    for (unsigned value = 0; value < 256; ++value)
      ASSERT_EQ(studio(value), value << (depth - 8));
    const SampleScale full(levelsOf(SampleKind::kLuma, 10, false),
                           levelsOf(SampleKind::kLuma, depth, true));
    EXPECT_EQ(full(64), 0U);
    EXPECT_EQ(full(940), (1U << depth) - 1);
    const SampleScale chroma(levelsOf(SampleKind::kChroma, 10, false),
                             levelsOf(SampleKind::kChroma, depth, true));
    EXPECT_EQ(chroma(512), 1U << (depth - 1));
    const SampleScale rgb(levelsOf(SampleKind::kRGB, 8, true),
                          levelsOf(SampleKind::kRGB, depth, true));
    EXPECT_EQ(rgb(0), 0U);
    EXPECT_EQ(rgb(255), (1U << depth) - 1);
  }
}

TEST(Orientation, FollowsTheDisplayMatrixAsFFmpegTurnsIt) {
  // Where FFmpeg's matrices send the pixels of a frame of 4x2.
  AVFormatContext* const file = avformat_alloc_context();
  AVStream* const stream = avformat_new_stream(file, nullptr);
  auto* const matrix = reinterpret_cast<std::int32_t*>(
      av_stream_new_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, 9 * sizeof(std::int32_t)));
  for (const int turn : {0, 90, 180, 270}) {
    for (const bool mirror : {false, true}) {
      av_display_rotation_set(matrix, turn);
      av_display_matrix_flip(matrix, mirror ? 1 : 0, 0);
      const Orientation orientation = orientationOf(*stream);
      const std::int64_t a = matrix[0] / 65536, b = matrix[1] / 65536, c = matrix[3] / 65536,
                         d = matrix[4] / 65536;
      for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x) {
          // Centres, about the middle of the frame, in halves.
          const std::int64_t u = 2 * x - 3, v = 2 * y - 1;
          const std::int64_t shownU = a * u + c * v, shownV = b * u + d * v;
          const bool turned = turn % 180 != 0;
          const Pixel shown = {static_cast<int>(shownU + (turned ? 1 : 3)) / 2,
                               static_cast<int>(shownV + (turned ? 3 : 1)) / 2};
          const Pixel back = orientation.inFrame(shown, 4, 2);
          EXPECT_EQ(back.x, x) << turn << mirror;
          EXPECT_EQ(back.y, y) << turn << mirror;
        }
      }
    }
  }
  avformat_free_context(file);
}
