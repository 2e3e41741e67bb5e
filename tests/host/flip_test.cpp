// SPDX-License-Identifier: BSD-2-Clause
//
// Mirroring frames.
#include <nkdraw/platform/host.h>

#include <tests/support/frame.h>

#include <gtest/gtest.h>

namespace {

using nkdraw::test::Frame;

using Flip = void (*)(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
                      std::uint32_t height, std::uint32_t pitch);

void flipHorz(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
              std::uint32_t height, std::uint32_t pitch) {
  pxcv_flip_horz(source, destination, width, height, pitch, 0xFFFFFFFF);
}

struct Mirroring {
  Flip flip;
  bool vertical;
};

constexpr Mirroring kMirrorings[] = {{pxcv_flip_vert, true}, {flipHorz, false}};

/// `source` mirrored pixel by pixel into `destination`, which keeps all other bytes.
void mirror(const Frame& source, Frame& destination, std::uint32_t width, std::uint32_t height,
            std::uint32_t pitch, bool vertical) {
  Frame from = source;
  for (std::uint32_t y = 0; y < height; ++y) {
    for (std::uint32_t x = 0; x < width; ++x) {
      const std::uint32_t column = vertical ? x : width - 1 - x;
      const std::uint32_t row = vertical ? height - 1 - y : y;
      nkdraw::test::setWord(&destination[y * pitch + 4 * x],
                            nkdraw::test::wordAt(&from[row * pitch + 4 * column]));
    }
  }
}

TEST(Flip, MirrorsInPlaceOrElsewhereAndLeavesPaddingAlone) {
  for (const Mirroring& mirroring : kMirrorings) {
    for (std::uint32_t width = 0; width <= 20; ++width) {
      for (std::uint32_t height = 0; height <= 5; ++height) {
        for (const std::uint32_t pitch : {4 * width, 4 * width + 1, 4 * width + 12}) {
          Frame source(std::size_t{pitch} * height, width + 1), apart(source.bytes().size(), 77);
          Frame inPlace = source, mirrored = source, mirroredApart = apart;
          mirror(source, mirrored, width, height, pitch, mirroring.vertical);
          mirror(source, mirroredApart, width, height, pitch, mirroring.vertical);
          mirroring.flip(inPlace.data(), inPlace.data(), width, height, pitch);
          mirroring.flip(source.data(), apart.data(), width, height, pitch);
          ASSERT_EQ(inPlace.all(), mirrored.all()) << width << "x" << height << " " << pitch;
          ASSERT_EQ(apart.all(), mirroredApart.all()) << width << "x" << height << " " << pitch;
          ASSERT_TRUE(source.untouched());
        }
      }
    }
  }
}

TEST(Flip, OfRowsLongerThanItsBlocksMovesEveryPixel) {
  constexpr std::uint32_t kWidth = 1300, kHeight = 5, kPitch = 4 * kWidth + 8;
  for (const Mirroring& mirroring : kMirrorings) {
    Frame frame(kPitch * kHeight);
    const Frame before = frame;
    mirroring.flip(frame.data(), frame.data(), kWidth, kHeight, kPitch);
    for (std::uint32_t y = 0; y < kHeight; ++y) {
      for (std::uint32_t x = 0; x < kWidth; ++x) {
        const std::uint32_t column = mirroring.vertical ? x : kWidth - 1 - x;
        const std::uint32_t row = mirroring.vertical ? kHeight - 1 - y : y;
        const std::uint8_t* const from = before.all().data() + 64 + row * kPitch + 4 * column;
        ASSERT_EQ(nkdraw::test::wordAt(&frame[y * kPitch + 4 * x]), nkdraw::test::wordAt(from));
      }
    }
    mirroring.flip(frame.data(), frame.data(), kWidth, kHeight, kPitch);
    EXPECT_TRUE(frame.untouched());
  }
}

}  // namespace
