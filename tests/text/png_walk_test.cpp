// SPDX-License-Identifier: BSD-2-Clause
//
// The walk over a PNG file's chunks, whole, cut off and damaged.
#include <tests/support/call_log.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>
#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

class PngFile {
 public:
  PngFile() { text(std::string_view("\x89PNG\r\n\x1A\n", 8)); }

  PngFile& chunk(std::string_view type, std::uint32_t length, std::uint8_t fill = 0x33) {
    for (int shift = 24; shift >= 0; shift -= 8)
      bytes.push_back(static_cast<std::uint8_t>(length >> shift));
    text(type);
    bytes.insert(bytes.end(), length + 4, fill);  // the checksum, too
    return *this;
  }

  Bytes bytes;

 private:
  void text(std::string_view characters) {
    for (const char character : characters)
      bytes.push_back(static_cast<std::uint8_t>(character));
  }
};

PngFile picture() {
  PngFile file;
  file.chunk("IHDR", 13).chunk("tEXt", 7).chunk("IDAT", 30).chunk("IDAT", 0).chunk("IEND", 0);
  return file;
}

/// A plain reference: whether the file is a PNG.
int walkPlainly(const Bytes& file) {
  const Bytes start = PngFile().chunk("IHDR", 13).bytes;
  if (file.size() < 16 || !std::equal(file.begin(), file.begin() + 16, start.begin()))
    return -1;
  for (std::size_t at = 33; at + 8 <= file.size();) {
    const auto* const type = reinterpret_cast<const char*>(&file[at + 4]);
    if (std::string_view(type, 4) == "IEND")
      return 0;
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i)
      length = length << 8 | file[at + i];
    at += 12 + length;
  }
  return -1;
}

class PngWalk : public testing::Test {
 protected:
  int walk(const Bytes& bytes) {
    const TemporaryFile file(bytes);
    return surface_->ExtractPNGData(file.path());
  }

  Surface surface_ = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
};

TEST_F(PngWalk, OfAWholeFileSucceedsAndKeepsNothing) {
  const CleanFontData clean;
  EXPECT_EQ(walk(picture().bytes), 0);
  EXPECT_TRUE(std::all_of(CleanFontData::bytes(), CleanFontData::bytes() + CleanFontData::kBytes,
                          [](std::uint8_t byte) { return byte == 0; }));
}

TEST_F(PngWalk, OfAFileCutOffAnywhereEndsAndIsRefusedUntilItHasTheTypeOfTheLastChunk) {
  const Bytes whole = picture().bytes;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Bytes file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(walk(file), length + 4 >= whole.size() ? 0 : -1) << length;
  }
}

TEST_F(PngWalk, OfAFileWithoutALastChunkEndsWithTheFile) {
  EXPECT_EQ(walk(PngFile().chunk("IHDR", 13).bytes), -1);
  EXPECT_EQ(walk(PngFile().chunk("IHDR", 13).chunk("IDAT", 9).bytes), -1);
  EXPECT_EQ(walk(PngFile().chunk("IHDR", 13).chunk("iend", 0).bytes), -1);
}

TEST_F(PngWalk, CompletesNoTypeThatIsCutOffFromTheChunkBefore) {
  Bytes file = PngFile().chunk("IHDR", 13).chunk("texD", 0).chunk("IEN", 0).bytes;
  file.resize(file.size() - 4);  // without the checksum
  EXPECT_EQ(walk(file), -1);
}

TEST_F(PngWalk, WantsEachByteOfTheSignatureAndOfTheFirstChunksHead) {
  for (std::size_t at = 0; at < 40; ++at) {
    Bytes damaged = picture().bytes;
    damaged[at] ^= 0x20;
    // Behind that come the header's fields, which are not looked at, and the second chunk's length.
    const bool free = at >= 16 && at < 33;
    EXPECT_EQ(walk(damaged), free ? 0 : walkPlainly(damaged)) << at;
    EXPECT_TRUE(at >= 16 || walk(damaged) == -1) << at;
  }
}

TEST_F(PngWalk, OfAFileThatBeginsWithAnotherChunkIsRefused) {
  EXPECT_EQ(walk(PngFile().chunk("IDAT", 13).chunk("IHDR", 13).chunk("IEND", 0).bytes), -1);
  EXPECT_EQ(walk(PngFile().chunk("IHDR", 12).chunk("IEND", 0).bytes), -1);
}

TEST_F(PngWalk, PassesImageDataOfAnySize) {
  for (const std::uint32_t size : {61340U, 65535U, 65536U, 65537U, 200'000U}) {
    PngFile file;
    file.chunk("IHDR", 13).chunk("IDAT", size).chunk("IDAT", size).chunk("IEND", 0);
    EXPECT_EQ(walk(file.bytes), 0) << size;
  }
}

TEST_F(PngWalk, OfALengthBeyondTheFileIsRefused) {
  for (const int highest : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
    Bytes file = picture().bytes;
    std::fill_n(file.begin() + 33, 4, std::uint8_t{0xFF});
    file[33] = static_cast<std::uint8_t>(highest);
    EXPECT_EQ(walk(file), -1);
  }
}

TEST_F(PngWalk, OfDamagedFilesEndsLikeThePlainTelling) {
  Random random(8);
  for (int i = 0; i < 2000; ++i) {
    Bytes file = picture().bytes;
    for (int damage = random.between(1, 4); damage > 0; --damage)
      file[static_cast<std::size_t>(random.between(8, 90))] =
          static_cast<std::uint8_t>(random.flag() ? random.between(0, 20) : random.between(0, 255));
    file.resize(static_cast<std::size_t>(random.between(16, static_cast<int>(file.size()))));
    ASSERT_EQ(walk(file), walkPlainly(file)) << i;
  }
}

TEST_F(PngWalk, OfWhatIsNoFileIsRefused) {
  EXPECT_EQ(surface_->ExtractPNGData("/nonexistent/nkdraw.png"), -1);
  EXPECT_EQ(surface_->ExtractPNGData(testing::TempDir().c_str()), -1);
  EXPECT_EQ(surface_->ExtractPNGData("/dev/null"), -1);
}

TEST_F(PngWalk, LeavesAFileOpenThatItRefusesForItsStartUntilTheNextOrTheObjectsEnd) {
  for (const std::size_t at : {0U, 9U, 12U}) {
    Bytes bytes = picture().bytes;
    bytes[at] ^= 1;
    const TemporaryFile file(bytes);
    ASSERT_EQ(surface_->ExtractPNGData(file.path()), -1);
    EXPECT_EQ(file.openDescriptors(), 1);
    EXPECT_EQ(walk(picture().bytes), 0);
    EXPECT_EQ(file.openDescriptors(), 0);
    ASSERT_EQ(surface_->ExtractPNGData(file.path()), -1);
    surface_ = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
    EXPECT_EQ(file.openDescriptors(), 0);
  }
}

TEST_F(PngWalk, ClosesTheOthers) {
  const TemporaryFile whole(picture().bytes);
  EXPECT_EQ(surface_->ExtractPNGData(whole.path()), 0);
  EXPECT_EQ(whole.openDescriptors(), 0);
  const TemporaryFile endless(PngFile().chunk("IHDR", 13).bytes);
  EXPECT_EQ(surface_->ExtractPNGData(endless.path()), -1);
  EXPECT_EQ(endless.openDescriptors(), 0);
}

}  // namespace
