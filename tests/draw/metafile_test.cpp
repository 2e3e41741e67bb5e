// SPDX-License-Identifier: BSD-2-Clause
//
// The header of a metafile, with and without the placeable header.
#include <tests/support/fields.h>
#include <tests/support/surfaces.h>
#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace nkdraw::test;

using File = TemporaryFile;

/// Ten words, followed by their XOR.
std::vector<std::uint8_t> placeable(std::array<std::uint16_t, 10> words, std::uint16_t spoil = 0) {
  std::vector<std::uint8_t> bytes;
  std::uint16_t sum = spoil;
  const auto append = [&bytes](std::uint16_t word) {
    bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
  };
  for (const std::uint16_t word : words) {
    append(word);
    sum = static_cast<std::uint16_t>(sum ^ word);
  }
  append(sum);
  bytes.resize(bytes.size() + 18, 0x11);  // the metafile's own header
  return bytes;
}

// Key (two words), handle, left, top, right, bottom, units an inch, reserved (two words).
constexpr std::array<std::uint16_t, 10> kHeader = {0xCDD7, 0x9AC6, 0,  10, 20,
                                                   1000,   0x8000, 96, 0,  0};

bool isOpen(int file) {
  return fcntl(file, F_GETFD) != -1;
}

TEST(Metafile, OfAMissingFileFailsAndClosesWithoutHarm) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->EMFOpen("/nonexistent/nkdraw.wmf"), 0xFFFFFFFF);
  EXPECT_EQ(DrawFields::file(*surface), -1);
  EXPECT_EQ(surface->EMFClose(), 0U);
  EXPECT_EQ(DrawFields::file(*surface), 0);
  EXPECT_EQ(surface->EMFClose(), 0U);
}

TEST(Metafile, ThatIsAFolderIsRefused) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  const std::string folder = testing::TempDir();
  EXPECT_EQ(surface->EMFOpen(folder.c_str()), 0xFFFFFFFF);
  EXPECT_EQ(DrawFields::file(*surface), -1);
  EXPECT_EQ(surface->EMFClose(), 0U);
  EXPECT_EQ(DrawFields::file(*surface), 0);
}

TEST(Metafile, WithAPlaceableHeaderGivesItsRightAndBottomAsTheyStand) {
  const File file(placeable(kHeader));
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->EMFOpen(file.path()), 0U);
  const int descriptor = DrawFields::file(*surface);
  EXPECT_GT(descriptor, 0);
  EXPECT_TRUE(isOpen(descriptor));
  int width = 0, height = 0;
  EXPECT_EQ(surface->EMFGetSize(width, height), 0U);
  EXPECT_EQ(width, 1000);
  EXPECT_EQ(height, -32768);
  EXPECT_EQ(surface->EMFClose(), 0U);
  EXPECT_FALSE(isOpen(descriptor));
  EXPECT_EQ(surface->EMFGetSize(width, height), 0U);
  EXPECT_EQ(width, 1000);
}

TEST(Metafile, SizesAreZeroBeforeAPlaceableHeaderWasRead) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  int width = 5, height = 6;
  EXPECT_EQ(surface->EMFGetSize(width, height), 0U);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  const File plain(std::vector<std::uint8_t>(18, 1));
  EXPECT_EQ(surface->EMFOpen(plain.path()), 0U);
  EXPECT_EQ(surface->EMFGetSize(width, height), 0U);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  surface->EMFClose();
}

TEST(Metafile, OnlyTheFirstByteOfTheKeyIsTested) {
  auto words = kHeader;
  words[0] = 0x00D7;
  words[1] = 0x1234;
  const File file(placeable(words));
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->EMFOpen(file.path()), 0U);
  int width = 0, height = 0;
  surface->EMFGetSize(width, height);
  EXPECT_EQ(width, 1000);
  surface->EMFClose();
}

TEST(Metafile, AWrongChecksumIsRefusedAndTheFileStaysOpen) {
  for (const std::uint16_t spoil : std::initializer_list<std::uint16_t>{0x0001, 0x8000, 0xFFFF}) {
    const File file(placeable(kHeader, spoil));
    const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
    EXPECT_EQ(surface->EMFOpen(file.path()), 0xFFFFFFFF);
    const int descriptor = DrawFields::file(*surface);
    EXPECT_TRUE(isOpen(descriptor));
    EXPECT_EQ(surface->EMFClose(), 0U);
    EXPECT_FALSE(isOpen(descriptor));
  }
}

TEST(Metafile, EveryWordOfTheRecordCountsInTheChecksum) {
  for (std::size_t word = 0; word < 10; ++word) {
    for (std::size_t byte = 0; byte < 2; ++byte) {
      std::vector<std::uint8_t> bytes = placeable(kHeader);
      if (word == 0 && byte == 0)
        continue;  // that byte tells that the header is there
      bytes[2 * word + byte] ^= 0x40;
      const File file(bytes);
      const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
      EXPECT_EQ(surface->EMFOpen(file.path()), 0xFFFFFFFF) << word << " " << byte;
      surface->EMFClose();
    }
  }
}

TEST(Metafile, ShortFilesReadAsZeroWhereTheyEnd) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  const File full(placeable(kHeader));
  EXPECT_EQ(surface->EMFOpen(full.path()), 0U);
  const File empty({});
  EXPECT_EQ(surface->EMFOpen(empty.path()), 0U);  // no placeable header
  // The mark alone XORs to something, and the checksum that is missing is 0.
  const File mark({0xD7});
  EXPECT_EQ(surface->EMFOpen(mark.path()), 0xFFFFFFFF);
  const File cancelling({0xD7, 0, 0xD7, 0});
  EXPECT_EQ(surface->EMFOpen(cancelling.path()), 0U);
  int width = 5, height = 6;
  surface->EMFGetSize(width, height);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  const File headless({0xD7, 0, 0xD7, 0, 0, 0, 0, 0, 0, 0, 7, 0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(surface->EMFOpen(headless.path()), 0U);
  surface->EMFGetSize(width, height);
  EXPECT_EQ(width, 7);
  EXPECT_EQ(height, 7);
  surface->EMFClose();
}

TEST(Metafile, OpeningAnotherClosesTheFirst) {
  const File one(placeable(kHeader)), two(std::vector<std::uint8_t>(18, 1));
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  surface->EMFOpen(one.path());
  surface->EMFOpen(two.path());
  const int second = DrawFields::file(*surface);
  surface->EMFClose();
  EXPECT_FALSE(isOpen(second));
  // Failed, and open again from there.
  surface->EMFOpen("/nonexistent/nkdraw.wmf");
  EXPECT_EQ(surface->EMFOpen(one.path()), 0U);
  surface->EMFClose();
}

class CloseLog final : public CDrawRGBA32 {
 public:
  CloseLog() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
  std::uint32_t EMFClose() override {
    ++closes;
    return CDrawRGBA32::EMFClose();
  }
  int closes = 0;
};

TEST(Metafile, ClosedByACopyTooLeavesOtherFilesAlone) {
  const File file(placeable(kHeader));
  CDrawRGBA32 surface(ptRGBA32);
  ASSERT_EQ(surface.EMFOpen(file.path()), 0U);
  {
    CDrawRGBA32 copy(surface);
    EXPECT_EQ(surface.EMFClose(), 0U);
    EXPECT_EQ(copy.EMFClose(), 0U);
    const int other = open(file.path(), O_RDONLY);  // takes the number that is free now
    EXPECT_EQ(copy.EMFClose(), 0U);
    EXPECT_EQ(surface.EMFClose(), 0U);
    EXPECT_NE(fcntl(other, F_GETFD), -1);
    close(other);
  }
}

TEST(Metafile, OpenClosesThroughTheTable) {
  CloseLog surface;
  surface.EMFOpen("/nonexistent/nkdraw.wmf");
  EXPECT_EQ(surface.closes, 1);
}

}  // namespace
