// SPDX-License-Identifier: BSD-2-Clause
//
// The search for a default font sheet.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/surfaces.h>
#include <tests/support/temporary_file.h>

#include <nkdraw/platform/module.h>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>

namespace {

using namespace nkdraw::test;

constexpr const char* kSheets[] = {"deffont_sd.bmp", "deffont_720.bmp", "deffont_1080.bmp"};

std::string programFolder() {
  std::array<char, 4096> path{};
  nkOSGetAppDir(path.data(), path.size());
  return path.data();
}

/// Works in an empty folder. Tests of this kind run one at a time, since they share the program's.
class DefaultFont : public testing::Test {
 protected:
  void SetUp() override {
    turn_ =
        open((programFolder() + "default_font.turn").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    ASSERT_NE(turn_, -1);
    flock(turn_, LOCK_EX);
    std::filesystem::create_directories(folder_);
    std::filesystem::current_path(folder_);
  }
  void TearDown() override {
    std::filesystem::current_path(home_);
    std::filesystem::remove_all(folder_);
    close(turn_);
  }

  static std::uint32_t ask(int width, bool wanted) {
    const Surface surface = makeSurface(ptRGBA32, width, 4, 0, nullptr);
    DrawFields::wantsDefaultFont(*surface) = !wanted;
    const std::uint32_t result = surface->UseDefaultFont(wanted);
    EXPECT_EQ(DrawFields::wantsDefaultFont(*surface), result == 1);
    return result;
  }

  const std::filesystem::path home_ = std::filesystem::current_path();
  const std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) / ("nkdraw_fonts_" + std::to_string(getpid()));
  int turn_ = -1;
};

TEST_F(DefaultFont, ThatIsWantedIsNoted) {
  EXPECT_EQ(ask(720, true), 1U);
}

TEST_F(DefaultFont, ThatIsNotWantedAndNowhereIsNotedAllTheSame) {
  for (const int width : {0, 720, 1280, 1920})
    EXPECT_EQ(ask(width, false), 1U);
}

TEST_F(DefaultFont, ThatIsThereIsNotWantedAnyMoreAndNotLoaded) {
  const CleanFontData clean;
  const TemporaryFile sheet(programFolder() + "deffont_sd.bmp", {'B', 'M'});
  EXPECT_EQ(ask(720, false), 0U);
  EXPECT_EQ(nkdraw::fontData.fontSheetPixels[0], 0);
}

TEST_F(DefaultFont, ThatIsThereChangesNothingWhenItIsWanted) {
  const TemporaryFile sheet(programFolder() + "deffont_sd.bmp", {});
  EXPECT_EQ(ask(720, true), 1U);
}

TEST_F(DefaultFont, IsChosenByTheWidthOfTheFrame) {
  struct Row {
    int width;
    const char* sheet;
  };
  constexpr Row kRows[] = {{0, kSheets[0]},    {1, kSheets[0]},    {720, kSheets[0]},
                           {721, kSheets[1]},  {1280, kSheets[1]}, {1281, kSheets[2]},
                           {1920, kSheets[2]}, {8192, kSheets[2]}};
  for (const char* const name : kSheets) {
    const TemporaryFile sheet(programFolder() + name, {});
    for (const Row& row : kRows)
      EXPECT_EQ(ask(row.width, false), std::string_view(row.sheet) == name ? 0U : 1U) << row.width;
  }
}

TEST_F(DefaultFont, IsLookedForInTwoMoreFolders) {
  for (const std::string folder : {"E:\\morvane\\bin64\\", "C:\\Program Files\\Morvane\\"}) {
    {
      const TemporaryFile sheet(folder + "deffont_720.bmp", {});
      EXPECT_EQ(ask(1000, false), 0U) << folder;
      EXPECT_EQ(ask(720, false), 1U) << folder;
    }
    EXPECT_EQ(ask(1000, false), 1U) << folder;
  }
}

TEST(Fonts, HaveNoNamesToBeSetOrFound) {
  const Surface surface = makeSurface(ptRGBA32, 720, 4, 0, nullptr);
  for (const char* const name : {"Times New Roman", "", static_cast<const char*>(nullptr)}) {
    for (const bool wanted : {true, false}) {
      DrawFields::wantsDefaultFont(*surface) = wanted;
      EXPECT_EQ(surface->SetFont(name), 0U);
      EXPECT_EQ(surface->HaveFont(), 0U);
      EXPECT_EQ(DrawFields::wantsDefaultFont(*surface), wanted);
    }
  }
}

}  // namespace
