// SPDX-License-Identifier: BSD-2-Clause
//
// The sheet that text in sheet glyphs reads. Its path is fixed: this program's own `open` records
// paths and opens another file instead. Its own `read` and `close` fail on demand.
#include <tests/support/call_log.h>
#include <tests/support/surfaces.h>
#include <tests/support/temporary_file.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::vector<std::string> opened;
std::optional<std::string> inItsPlace;
std::optional<int> readsThatSucceed;  // before others fail
bool closeFails = false;
constexpr const char* kSheetPath = "/ref/nkdraw/fonts code/BFont++/test.bmp";

}  // namespace

extern "C" NKDRAW_API int open(const char* path, int flags, ...) {
  std::string asked = path;
  opened.push_back(asked);
  if (asked == kSheetPath && inItsPlace)
    asked = *inItsPlace;
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, asked.c_str(), flags, 0600));
}

extern "C" NKDRAW_API ssize_t read(int file, void* bytes, std::size_t size) {
  if (readsThatSucceed && (*readsThatSucceed)-- <= 0) {
    errno = EIO;
    return -1;
  }
  return syscall(SYS_read, file, bytes, size);
}

extern "C" NKDRAW_API int close(int file) {
  const auto status = static_cast<int>(syscall(SYS_close, file));
  return closeFails ? -1 : status;
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

class FontFileErrors : public testing::Test {
 protected:
  ~FontFileErrors() override {
    readsThatSucceed.reset();
    closeFails = false;
  }

  CleanFontData clean_;
  Surface surface_ = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
};

TEST_F(FontFileErrors, OfReadingOrClosingASheetRefuseIt) {
  const TemporaryFile file(sheetOf(3));
  EXPECT_EQ(surface_->ExtractBMPData(file.path()), 0);
  for (const int reads : {0, 1}) {  // the head, and the pixels
    readsThatSucceed = reads;
    EXPECT_EQ(surface_->ExtractBMPData(file.path()), -1) << reads;
  }
  readsThatSucceed.reset();
  closeFails = true;
  EXPECT_EQ(surface_->ExtractBMPData(file.path()), -1);
}

TEST_F(FontFileErrors, OfReadingOrClosingAPngFileRefuseIt) {
  constexpr std::string_view kPng("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR12345678901234567\0\0\0\0IEND",
                                  41);
  const TemporaryFile file(std::vector<std::uint8_t>(kPng.begin(), kPng.end()));
  EXPECT_EQ(surface_->ExtractPNGData(file.path()), 0);
  for (const int reads : {0, 1}) {  // the start, and the last chunk
    readsThatSucceed = reads;
    EXPECT_EQ(surface_->ExtractPNGData(file.path()), -1) << reads;
  }
  readsThatSucceed.reset();
  closeFails = true;
  EXPECT_EQ(surface_->ExtractPNGData(file.path()), -1);
}

}  // namespace
