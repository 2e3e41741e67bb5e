// SPDX-License-Identifier: BSD-2-Clause
//
// Font sheets: what is read of their file, and how their glyphs are stamped.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>
#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kPixelRoom = 1048576;
constexpr std::size_t kBlockBytes = sizeof nkdraw::fontData;

/// A 24-bit BMP file with these pixels behind its head.
Bytes bitmapFile(std::uint32_t width, std::uint32_t height, std::uint32_t size,
                 const Bytes& pixels) {
  Bytes file(54 + pixels.size());
  file[0] = 'B';
  file[1] = 'M';
  file[10] = 54;
  file[14] = 40;
  setWord(&file[18], width);
  setWord(&file[22], height);
  file[26] = 1;
  file[28] = 24;
  setWord(&file[34], size);
  setWord(&file[38], 2835);
  setWord(&file[46], 0xCAFE0001);
  setWord(&file[50], 0xCAFE0002);
  std::copy(pixels.begin(), pixels.end(), file.begin() + 54);
  return file;
}

Bytes noise(std::size_t size, std::uint32_t seed) {
  Random random(seed);
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes)
    byte = static_cast<std::uint8_t>(random.word() >> 24);
  return bytes;
}

Bytes block() {
  return {CleanFontData::bytes(), CleanFontData::bytes() + kBlockBytes};
}

/// A plain reference: how reading `file` changes the block `before`. Returns the result of the
/// call.
int readPlainly(const Bytes& file, Bytes& before) {
  Bytes head(54);
  std::copy_n(file.begin(), std::min<std::size_t>(file.size(), 50), head.begin());
  if (head[0] != 'B' || head[1] != 'M' || head[14] != 40)
    return -1;
  std::uint8_t* const header = before.data() + kPixelRoom;
  std::copy_n(head.begin() + 18, 36, header);
  if (wordAt(header + 12) != 0)
    return -1;
  if (header[10] != 24)
    return -1;
  if (wordAt(header + 16) == 0)
    setWord(header + 16, wordAt(header) * wordAt(header + 4) * 3);
  const std::size_t size = wordAt(header + 16);
  for (std::size_t i = 0; i < size && i < before.size() && head[10] + i < file.size(); ++i)
    before[i] = file[head[10] + i];
  return 0;
}

class SheetFile : public testing::Test {
 protected:
  int read(const Bytes& file) {
    const TemporaryFile on(file);
    return surface_->ExtractBMPData(on.path());
  }

  /// Reads, and compares result and font data with the plain reference.
  void expectRead(const Bytes& file) {
    Bytes want = block();
    const int result = readPlainly(file, want);
    ASSERT_EQ(read(file), result);
    ASSERT_TRUE(block() == want);
  }

  CleanFontData clean_;
  Surface surface_ = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
};

TEST_F(SheetFile, GoesIntoTheFontDataAsItStands) {
  const Bytes pixels = noise(60, 3);
  EXPECT_EQ(read(bitmapFile(5, 4, 60, pixels)), 0);
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), nkdraw::fontData.fontSheetPixels));
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader), 5U);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 4), 4U);
  EXPECT_EQ(nkdraw::fontData.fontSheetHeader[10], 24);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 16), 60U);
}

TEST_F(SheetFile, GivesThirtyTwoBytesOfTheHeaderAndLeavesTheLastFourZero) {
  std::fill_n(nkdraw::fontData.fontSheetHeader, 36, std::uint8_t{0x5A});
  ASSERT_EQ(read(bitmapFile(5, 4, 60, noise(60, 3))), 0);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 28), 0xCAFE0001U);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 32), 0U);
}

TEST_F(SheetFile, IsToldByTheLowBytesOfItsFields) {
  struct Row {
    std::size_t at;
    std::uint8_t value;
    int result;
  };
  constexpr Row kRows[] = {
      {0, 'b', -1}, {1, 'm', -1},  {14, 41, -1}, {14, 0, -1},  {15, 1, 0},  {16, 9, 0},
      {17, 9, 0},   {2, 9, 0},     {9, 9, 0},    {11, 1, 0},   {13, 1, 0},  {28, 32, -1},
      {28, 23, -1}, {28, 0, -1},   {29, 1, 0},   {29, 255, 0}, {30, 1, -1}, {31, 1, -1},
      {32, 1, -1},  {33, 128, -1}, {26, 7, 0},
  };
  for (const Row& row : kRows) {
    Bytes file = bitmapFile(2, 1, 6, noise(6, 1));
    file[row.at] = row.value;
    EXPECT_EQ(read(file), row.result) << row.at;
  }
}

TEST_F(SheetFile, OfManyDamagedHeadsIsReadLikeThePlainTelling) {
  Random random(42);
  for (int i = 0; i < 500; ++i) {
    Bytes file = bitmapFile(4, 3, random.flag() ? 0 : 40, noise(100, random.word()));
    for (int damage = random.between(0, 3); damage > 0; --damage)
      file[static_cast<std::size_t>(random.between(0, 60))] =
          static_cast<std::uint8_t>(random.word());
    file.resize(static_cast<std::size_t>(random.between(0, 154)));
    ASSERT_NO_FATAL_FAILURE(expectRead(file)) << i;
  }
}

TEST_F(SheetFile, OfEveryLengthReadsWhatItLacksAsZerosAndLeavesThePixelsBehind) {
  const Bytes whole = bitmapFile(4, 2, 24, noise(24, 9));
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const CleanFontData clean;
    std::fill_n(nkdraw::fontData.fontSheetPixels, 30, std::uint8_t{0x5A});
    const Bytes file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_NO_FATAL_FAILURE(expectRead(file)) << length;
    Bytes unused = block();
    EXPECT_EQ(readPlainly(file, unused), length > 28 ? 0 : -1);
  }
}

TEST_F(SheetFile, WithAnOffsetOf256OrMoreIsReadFromItsLowByte) {
  Bytes file = bitmapFile(10, 10, 300, noise(1000, 4));
  file[10] = 60;
  file[11] = 1;
  ASSERT_EQ(read(file), 0);
  EXPECT_TRUE(std::equal(file.begin() + 60, file.begin() + 360, nkdraw::fontData.fontSheetPixels));
  EXPECT_EQ(nkdraw::fontData.fontSheetPixels[300], 0);
}

TEST_F(SheetFile, WithoutASizeIsReadShortByTheFillOfItsRows) {
  ASSERT_EQ(read(bitmapFile(5, 3, 0, noise(48, 4))), 0);  // rows of 16 bytes
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 16), 45U);
  const Bytes rest(nkdraw::fontData.fontSheetPixels + 45, nkdraw::fontData.fontSheetPixels + 48);
  EXPECT_EQ(rest, Bytes(3));
}

TEST_F(SheetFile, WithoutASizeWrapsTheOneItGets) {
  ASSERT_EQ(read(bitmapFile(0x10000, 0x10000, 0, noise(20, 4))), 0);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 16), 0U);
  EXPECT_EQ(nkdraw::fontData.fontSheetPixels[0], 0);
}

TEST_F(SheetFile, OfExactlyThePixelsFillsThemToTheLastByte) {
  const Bytes pixels = noise(kPixelRoom, 5);
  ASSERT_EQ(read(bitmapFile(11, 22, kPixelRoom, pixels)), 0);
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), nkdraw::fontData.fontSheetPixels));
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader), 11U);
}

TEST_F(SheetFile, OfOneByteMoreOverwritesTheWidth) {
  Bytes pixels(kPixelRoom + 1);
  pixels.back() = 0x77;
  ASSERT_EQ(read(bitmapFile(11, 22, kPixelRoom + 1, pixels)), 0);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader), 0x77U);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader + 4), 22U);
}

TEST_F(SheetFile, RunsOnIntoTheFieldsBehindThePixelsAndEndsWithTheBlock) {
  const Bytes pixels = noise(kBlockBytes + 5000, 6);
  for (const std::uint32_t size : {static_cast<std::uint32_t>(kBlockBytes + 5000), 0xFFFFFFFFU}) {
    ASSERT_EQ(read(bitmapFile(11, 22, size, pixels)), 0);
    EXPECT_TRUE(block() == Bytes(pixels.begin(), pixels.begin() + kBlockBytes));
    EXPECT_TRUE(std::equal(nkdraw::fontData.fontKind, nkdraw::fontData.fontKind + 4,
                           reinterpret_cast<const char*>(pixels.data()) + kPixelRoom + 36));
  }
}

TEST_F(SheetFile, ThatIsRefusedLeavesItsHeaderBesideThePixelsOfTheOneBefore) {
  const Bytes pixels = noise(60, 3);
  ASSERT_EQ(read(bitmapFile(5, 4, 60, pixels)), 0);
  Bytes deep = bitmapFile(7, 9, 252, noise(252, 8));
  deep[28] = 32;
  ASSERT_EQ(read(deep), -1);
  EXPECT_EQ(wordAt(nkdraw::fontData.fontSheetHeader), 7U);
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), nkdraw::fontData.fontSheetPixels));
}

TEST_F(SheetFile, WithoutTheMarkLeavesTheFontDataAlone) {
  ASSERT_EQ(read(bitmapFile(5, 4, 60, noise(60, 3))), 0);
  const Bytes before = block();
  ASSERT_EQ(read(noise(200, 3)), -1);
  EXPECT_TRUE(block() == before);
}

TEST_F(SheetFile, ThatIsNotThereOrIsAFolderIsRefused) {
  EXPECT_EQ(surface_->ExtractBMPData("/nonexistent/nkdraw.bmp"), -1);
  EXPECT_EQ(surface_->ExtractBMPData(testing::TempDir().c_str()), -1);
  EXPECT_EQ(surface_->ExtractBMPData(""), -1);
  EXPECT_TRUE(block() == Bytes(kBlockBytes));
}

TEST_F(SheetFile, ThatMayNotBeWrittenToIsRefused) {
  using std::filesystem::perms;
  const TemporaryFile file(bitmapFile(5, 4, 60, noise(60, 3)));
  std::filesystem::permissions(file.path(),
                               perms::owner_read | perms::group_read | perms::others_read);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may write to every file
  const int result = surface_->ExtractBMPData(file.path());
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_EQ(result, -1);
}

TEST_F(SheetFile, ThatIsReadIsClosed) {
  const TemporaryFile file(bitmapFile(5, 4, 60, noise(60, 3)));
  ASSERT_EQ(surface_->ExtractBMPData(file.path()), 0);
  EXPECT_EQ(file.openDescriptors(), 0);
}

TEST_F(SheetFile, ThatIsRefusedForItsHeadStaysOpenUntilTheNextOrTheObjectsEnd) {
  Bytes noMark = bitmapFile(5, 4, 60, noise(60, 3)), packed = noMark, deep = noMark;
  noMark[1] = 'N';
  packed[30] = 1;
  deep[28] = 32;
  for (const Bytes& bytes : {noMark, packed, deep}) {
    const TemporaryFile file(bytes);
    ASSERT_EQ(surface_->ExtractBMPData(file.path()), -1);
    EXPECT_EQ(file.openDescriptors(), 1);
    EXPECT_EQ(surface_->ExtractBMPData("/nonexistent/nkdraw.bmp"), -1);
    EXPECT_EQ(file.openDescriptors(), 1);
    EXPECT_EQ(read(noMark), -1);
    EXPECT_EQ(file.openDescriptors(), 0);
    ASSERT_EQ(surface_->ExtractBMPData(file.path()), -1);
    EXPECT_EQ(read(bitmapFile(5, 4, 60, noise(60, 3))), 0);
    EXPECT_EQ(file.openDescriptors(), 0);
    ASSERT_EQ(surface_->ExtractBMPData(file.path()), -1);
    surface_ = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
    EXPECT_EQ(file.openDescriptors(), 0);
  }
}

/// A sheet in the making: columns of pixels, the top line first. Stored as a file stores it.
class SheetPicture {
 public:
  SheetPicture(std::uint32_t width, std::uint32_t height)
      : width_(width), height_(height), stride_(width * 3 + width % 4), rows_(stride_ * height) {}

  void set(std::uint32_t x, std::uint32_t line, std::array<std::uint8_t, 3> bgr) {
    std::copy(bgr.begin(), bgr.end(), rows_.begin() + (height_ - 1 - line) * stride_ + x * 3);
  }

  void load() const {
    std::copy(rows_.begin(), rows_.end(), CleanFontData::bytes());
    setWord(nkdraw::fontData.fontSheetHeader, width_);
    setWord(nkdraw::fontData.fontSheetHeader + 4, height_);
  }

 private:
  std::uint32_t width_, height_, stride_;
  Bytes rows_;
};

constexpr std::array<std::uint8_t, 3> kSpace = {1, 2, 3}, kKey = {200, 0, 200}, kWall = {0, 255, 0};

/// A sheet whose runs have these widths; below the top line its pixels are random: the key, wall,
/// and others.
void loadRandomSheet(Random& random, const std::vector<int>& runs, std::uint32_t height) {
  std::uint32_t width = 0;
  for (const int run : runs)
    width += static_cast<std::uint32_t>(run);
  SheetPicture sheet(width, height);
  std::uint32_t x = 0;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    for (int column = 0; column < runs[i]; ++column, ++x) {
      sheet.set(x, 0, i == 0 ? kSpace : i % 2 == 1 ? kKey : kWall);
      for (std::uint32_t line = 1; line < height; ++line) {
        const auto other = static_cast<std::uint8_t>(random.word());
        sheet.set(x, line,
                  random.flag()   ? kKey
                  : random.flag() ? std::array<std::uint8_t, 3>{other, 255, 0}
                                  : std::array<std::uint8_t, 3>{255, other, 7});
      }
    }
  }
  sheet.load();
}

using Key = std::optional<std::array<std::uint8_t, 3>>;

/// A plain reference: the calls that stamp a text, for texts that stay within the block. `key` is
/// the previous key, and becomes the new one.
std::vector<Call> stampPlainly(const std::string& text, const tagRECT& rect, Key& key) {
  const Bytes memory = block();
  const std::uint32_t w = wordAt(&memory[kPixelRoom]), h = wordAt(&memory[kPixelRoom + 4]);
  const std::size_t stride = w * 3 + w % 4;
  const auto pixel = [&memory](std::size_t at) {
    return std::array<std::uint8_t, 3>{memory.at(at), memory.at(at + 1), memory.at(at + 2)};
  };
  std::vector<Call> calls;
  int pen = rect.left;
  for (const char character : text) {
    const int n = static_cast<signed char>(character) - 33;
    const std::size_t topLine = (h - 1) * stride;
    std::size_t scan = topLine;
    const auto nextRun = [&] {
      const auto colour = pixel(scan);
      while (pixel(scan) == colour)
        scan += 3;
    };
    for (int j = 0; j <= n; ++j) {
      nextRun();
      if (j == 0)
        key = pixel(scan);
      if (j < n)
        nextRun();
      else
        scan += 3;
    }
    int width = 1;
    while (pixel(scan + static_cast<std::size_t>(width) * 3) == pixel(scan))
      ++width;
    for (std::uint32_t r = 0; r < h; ++r) {
      for (int c = 0; c < width; ++c) {
        const auto bgr = pixel(scan + static_cast<std::size_t>(c) * 3 - r * stride);
        const double x = pen + c, y = rect.top + static_cast<int>(r);
        if (bgr == key) {
          calls.push_back({"pixel", {x, y, 0.0}});
        } else {
          calls.push_back(
              {"colour",
               {bgr[2] * 0.00390625, bgr[1] * 0.00390625, bgr[0] * 0.00390625, 0.0, 1.0}});
          calls.push_back({"pixel", {x, y, 1.0}});
        }
      }
    }
    pen += width;
  }
  return calls;
}

class SheetText : public testing::Test {
 protected:
  SheetText() { CleanFontData::chooseKind("bmp"); }

  std::vector<Call> draw(const std::string& text, tagRECT rect = {10, 20, 0, 0}) {
    log_.calls.clear();
    EXPECT_EQ(log_.DrawText(text.c_str(), 1, &rect, 0xFFFFFFFF), 0);
    return log_.calls;
  }

  CleanFontData clean_;
  CallLog log_;
};

TEST_F(SheetText, IsItsStepsForManySheets) {
  Random random(2024);
  for (int i = 0; i < 200; ++i) {
    const int glyphs = random.between(1, 60);
    std::vector<int> runs = {random.between(1, 7)};
    for (int glyph = 0; glyph < glyphs; ++glyph) {
      runs.push_back(random.between(2, 9));
      runs.push_back(random.between(1, 3));
    }
    loadRandomSheet(random, runs, static_cast<std::uint32_t>(random.between(1, 9)));
    std::string text(1, '!');  // so that there is a key
    for (int length = random.between(0, 5); length > 0; --length)
      text += random.between(0, 4) == 0 ? static_cast<char>(random.between(128, 255))
                                        : static_cast<char>(random.between(32, 32 + glyphs));
    const tagRECT rect = {random.between(-50, 50), random.between(-50, 50), 1, 2};
    Key key;
    const std::vector<Call> want = stampPlainly(text, rect, key);
    ASSERT_EQ(draw(text, rect), want) << text;
  }
}

/// Lead-in of 3; glyphs of 2, 1 and 4 columns; separators of 1, 2 and 1.
void loadSmallSheet(std::uint32_t height = 2) {
  Random random(1);
  loadRandomSheet(random, {3, 3, 1, 2, 2, 5, 1}, height);
}

/// From the first to the last column that is plotted.
int columns(const std::vector<Call>& calls) {
  double left = 1e9, right = -1e9;
  for (const Call& call : calls) {
    if (call.name != "pixel")
      continue;
    left = std::min(left, call.values[0]);
    right = std::max(right, call.values[0]);
  }
  return right < left ? 0 : static_cast<int>(right - left) + 1;
}

TEST_F(SheetText, GivesEachGlyphItsRunWithoutTheFirstPixel) {
  loadSmallSheet();
  EXPECT_EQ(columns(draw("!")), 2);
  EXPECT_EQ(columns(draw("\"")), 1);
  EXPECT_EQ(columns(draw("#")), 4);
  EXPECT_EQ(columns(draw("!\"#")), 7);
}

TEST_F(SheetText, GivesTheSpaceTheWidthOfTheLeadIn) {
  loadSmallSheet();
  EXPECT_EQ(columns(draw(" ")), 3);
  EXPECT_EQ(columns(draw("\x01")), 3);
  EXPECT_EQ(columns(draw("! !")), 7);
}

TEST_F(SheetText, TakesCodesFrom128OnForSpaces) {
  loadSmallSheet();
  const std::vector<Call> space = draw(" ");
  for (int code = 128; code < 256; ++code)
    EXPECT_EQ(draw(std::string(1, static_cast<char>(code))), space);
}

TEST_F(SheetText, OfACellOfOnePixelShowsTheSeparator) {
  Random random(1);
  loadRandomSheet(random, {2, 1, 4, 3, 1}, 1);
  const std::vector<Call> calls = draw("!");
  ASSERT_EQ(columns(calls), 4);
  EXPECT_EQ(calls[0], (Call{"colour", {0.0, 255 / 256.0, 0.0, 0.0, 1.0}}));
}

TEST_F(SheetText, ShowsTheKeyAsBackgroundWhateverTransparencySays) {
  loadSmallSheet(1);  // the top line alone, which is the key throughout
  for (const bool transparent : {true, false}) {
    log_.SetTextTransparent(transparent);
    EXPECT_EQ(draw("!"), (std::vector<Call>{{"pixel", {10, 20, 0}}, {"pixel", {11, 20, 0}}}));
  }
}

TEST_F(SheetText, OfALeadingSpaceUsesTheKeyOfATextBefore) {
  // Two sheets: the lead-in of the second has the colour that was the key of the first.
  SheetPicture first(4, 1), second(5, 1);
  const std::array<std::uint8_t, 3> red = {0, 0, 9}, blue = {9, 0, 0};
  for (std::uint32_t x = 0; x < 4; ++x)
    first.set(x, 0, x == 0 ? blue : x < 3 ? red : blue);
  for (std::uint32_t x = 0; x < 5; ++x)
    second.set(x, 0, x < 2 ? red : x < 4 ? blue : red);
  first.load();
  draw("!");
  second.load();
  EXPECT_EQ(draw(" "), (std::vector<Call>{{"pixel", {10, 20, 0}}, {"pixel", {11, 20, 0}}}));
  draw("!");  // from here on the key is blue
  const Call ink = {"colour", {9 / 256.0, 0.0, 0.0, 0.0, 1.0}};
  EXPECT_EQ(draw(" "),
            (std::vector<Call>{ink, {"pixel", {10, 20, 1}}, ink, {"pixel", {11, 20, 1}}}));
}

TEST_F(SheetText, OfWhiteArrivesAs255Of256WithoutAlpha) {
  SheetPicture sheet(4, 2);
  for (std::uint32_t x = 0; x < 4; ++x)
    sheet.set(x, 0, x == 0 ? kSpace : x < 3 ? kKey : kWall);
  sheet.set(2, 1, {255, 255, 255});
  sheet.load();
  const std::vector<Call> calls = draw("!");
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[1], (Call{"colour", {255 / 256.0, 255 / 256.0, 255 / 256.0, 0.0, 1.0}}));
  const std::array<std::uint8_t, 4> want = {254, 254, 254, 0};
  EXPECT_TRUE(std::equal(want.begin(), want.end(), PixelFields::foreground(log_)));
}

TEST_F(SheetText, LeavesTheRectangleAndReadsNeitherCountNorFormat) {
  loadSmallSheet();
  const std::vector<Call> want = draw("!\"#");
  for (const std::uint32_t format : {0x0U, 0x1U, 0x2U, 0x8U, 0x400U}) {
    for (const int count : {-1, 0, 2, 1000}) {
      tagRECT rect = {10, 20, 11, 21};
      log_.calls.clear();
      EXPECT_EQ(log_.DrawText("!\"#", count, &rect, format), 0);
      EXPECT_EQ(log_.calls, want);
      EXPECT_TRUE(rect.left == 10 && rect.top == 20 && rect.right == 11 && rect.bottom == 21);
    }
  }
}

TEST_F(SheetText, PaintsOnTheCanvasWhatTheSheetShows) {
  SheetPicture sheet(4, 2);
  for (std::uint32_t x = 0; x < 4; ++x)
    sheet.set(x, 0, x == 0 ? kSpace : x < 3 ? kKey : kWall);
  sheet.set(2, 1, {128, 64, 32});
  sheet.load();
  Frame frame(4 * 4 * 4);
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, frame.canvas());
  surface->SetColorRGBA(0.0, 1.0, 0.0, 1.0, false);
  tagRECT rect = {1, 1, 0, 0};
  surface->DrawText("!", 1, &rect, 0);
  const std::map<std::ptrdiff_t, std::array<std::uint8_t, 4>> want = {
      {(1 * 4 + 1) * 4, {0, 255, 0, 255}}, {(2 * 4 + 1) * 4, {31, 63, 127, 0}}};
  for (const auto& [at, rgba] : want)
    EXPECT_TRUE(std::equal(rgba.begin(), rgba.end(), &frame[at])) << at;
  for (const std::ptrdiff_t at : frame.changed())
    EXPECT_TRUE(want.contains(at / 4 * 4)) << at;
}

TEST_F(SheetText, OfNothingDrawsNothing) {
  loadSmallSheet();
  EXPECT_TRUE(draw("").empty());
}

TEST_F(SheetText, WithoutASheetDrawsNothing) {
  EXPECT_TRUE(draw("text").empty());
}

TEST_F(SheetText, OfACodeBehindTheLastGlyphShowsTheMemoryBehindTheTopLine) {
  loadSmallSheet(1);
  // The line is 17 pixels and one byte of fill long. Behind it: two pixels, four, and others.
  std::uint8_t* const behind = CleanFontData::bytes() + 17 * 3;
  const std::array<std::uint8_t, 3> one = {50, 51, 52}, two = {60, 61, 62};
  for (std::size_t i = 0; i < 6; ++i)
    std::copy_n((i < 5 ? one : two).begin(), 3, behind + 3 * i);
  const std::vector<Call> calls = draw("$");
  EXPECT_EQ(columns(calls), 4);
  EXPECT_EQ(calls[0], (Call{"colour", {52 / 256.0, 51 / 256.0, 50 / 256.0, 0.0, 1.0}}));
}

TEST_F(SheetText, EndsItsSearchWithTheBlock) {
  // A sheet as wide as the block: there is no second glyph, and nothing of it is drawn.
  const auto width = static_cast<std::uint32_t>(kBlockBytes / 3);
  setWord(nkdraw::fontData.fontSheetHeader, width);
  setWord(nkdraw::fontData.fontSheetHeader + 4, 1);
  for (const char* const text : {"~", "\"#~", "~~"}) {
    SCOPED_TRACE(text);
    draw(text);
    for (const Call& call : log_.only("pixel"))
      ASSERT_LT(call.values[0], 10.0 + width);
  }
}

TEST_F(SheetText, ShowsTheBlocksLastPixelAndNoneBehindIt) {
  // The second of two lines begins four pixels before the end, in bytes that a text leaves zero.
  constexpr std::uint32_t kStride = kBlockBytes - 12;
  static_assert(kStride % 4 == 0);
  setWord(nkdraw::fontData.fontSheetHeader, kStride / 12 * 4 + kStride % 12 / 4);
  setWord(nkdraw::fontData.fontSheetHeader + 4, 2);
  EXPECT_EQ(columns(draw(" ")), 4);
}

/// Takes any pixel, and has nothing to put it into.
class Sink final : public CDrawRGBA32 {
 public:
  Sink() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
  std::uint32_t PutPixel(int, int, bool) override { return 0; }
};

TEST_F(SheetText, OfAnyHeaderStaysInsideTheBlock) {
  Sink sink;
  Random random(77);
  for (int i = 0; i < 60; ++i) {
    const Bytes rows = noise(4096, random.word());
    std::copy(rows.begin(), rows.end(), CleanFontData::bytes());
    std::copy(rows.begin(), rows.end(), CleanFontData::bytes() + kPixelRoom - rows.size());
    const std::uint32_t height =
        random.flag() ? static_cast<std::uint32_t>(random.between(0, 3)) : random.word() | 0x100000;
    const std::uint32_t width = random.flag()
                                    ? 349520 - static_cast<std::uint32_t>(random.between(0, 40))
                                    : random.word() | 1;
    setWord(nkdraw::fontData.fontSheetHeader, width);
    setWord(nkdraw::fontData.fontSheetHeader + 4, height);
    tagRECT rect = {10, 20, 0, 0};
    EXPECT_EQ(sink.DrawText(" !z~", 4, &rect, 0), 0);
  }
}

TEST_F(SheetText, ClearsAntialiasingAndTheScratchWord) {
  PixelFields::antialiased(log_) = true;
  nkdraw::fontData.fontScratch = 77;
  draw("");
  EXPECT_FALSE(PixelFields::antialiased(log_));
  EXPECT_EQ(nkdraw::fontData.fontScratch, 0U);
}

}  // namespace
