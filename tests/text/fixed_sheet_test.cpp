// SPDX-License-Identifier: BSD-2-Clause
//
// The sheet that text in sheet glyphs reads. Its path is fixed; this program's own `open` notes the
// paths and has another file in its place.
#include <tests/support/call_log.h>
#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <optional>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::vector<std::string> opened;
std::optional<std::string> inItsPlace;
constexpr const char* kSheetPath = "/ref/nkdraw/fonts code/BFont++/test.bmp";

}  // namespace

extern "C" NKDRAW_API int open(const char* path, int flags, ...) {
  std::string asked = path;
  opened.push_back(asked);
  if (asked == kSheetPath && inItsPlace)
    asked = *inItsPlace;
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, asked.c_str(), flags, 0600));
}

namespace {

using namespace nkdraw::test;

/// A sheet of one line, 2 pixels of space, a glyph of `columns`, and one separator.
std::vector<std::uint8_t> sheetOf(std::uint8_t columns) {
  const std::uint8_t width = static_cast<std::uint8_t>(columns + 4);
  std::vector<std::uint8_t> file(54 + std::size_t{width} * 3);
  file[0] = 'B';
  file[1] = 'M';
  file[10] = 54;
  file[14] = 40;
  file[18] = width;
  file[22] = 1;
  file[28] = 24;
  for (std::size_t x = 0; x < width; ++x)
    file[54 + x * 3] = x < 2 ? 10 : x < columns + 3U ? 20 : 30;
  return file;
}

class FixedSheet : public testing::Test {
 protected:
  FixedSheet() {
    CleanFontData::chooseKind("bmp");
    opened.clear();
    inItsPlace.reset();
  }

  long pixelsOf(const char* text) {
    CallLog log;
    tagRECT rect = {0, 0, 0, 0};
    EXPECT_EQ(log.DrawText(text, 1, &rect, 0), 0);
    return log.count("pixel");
  }

  CleanFontData clean_;
};

TEST_F(FixedSheet, IsReadForEveryText) {
  const TemporaryFile file(sheetOf(3));
  inItsPlace = file.path();
  opened.clear();
  EXPECT_EQ(pixelsOf("!"), 3);
  EXPECT_EQ(opened, std::vector<std::string>{kSheetPath});
  file.write(sheetOf(5));
  opened.clear();
  EXPECT_EQ(pixelsOf("!!"), 10);
  EXPECT_EQ(opened, std::vector<std::string>{kSheetPath});
}

TEST_F(FixedSheet, IsReadForATextOfNothingToo) {
  EXPECT_EQ(pixelsOf(""), 0);
  EXPECT_EQ(opened, std::vector<std::string>{kSheetPath});
}

TEST_F(FixedSheet, IsNotReadForOtherFonts) {
  CleanFontData::chooseKind("abc");
  pixelsOf("!");
  EXPECT_TRUE(opened.empty());
}

TEST_F(FixedSheet, ThatIsMissingOrRefusedLeavesTheOneBefore) {
  const TemporaryFile file(sheetOf(3));
  inItsPlace = file.path();
  EXPECT_EQ(pixelsOf("!"), 3);
  inItsPlace.reset();
  EXPECT_EQ(pixelsOf("!"), 3);
  const TemporaryFile noSheet({'B', 'N'});
  inItsPlace = noSheet.path();
  EXPECT_EQ(pixelsOf("!"), 3);
}

}  // namespace
