// SPDX-License-Identifier: BSD-2-Clause
//
// Looks for a default font sheet by the width of the frame. The sheet is not loaded; only whether
// it exists is recorded.
#include <nkdraw/draw/draw.h>

#include <nkdraw/platform/module.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

namespace {

struct SheetName {
  std::uint32_t widestFrame;
  std::string_view name;
};

constexpr SheetName kSheetNames[] = {
    {720, "deffont_sd.bmp"},
    {1280, "deffont_720.bmp"},
    {std::numeric_limits<std::uint32_t>::max(), "deffont_1080.bmp"},
};

/// Where to look for a sheet that isn't beside the program.
constexpr std::string_view kFolders[] = {R"(E:\morvane\bin64\)", R"(C:\Program Files\Morvane\)"};

constexpr std::uint32_t kPathBytes = 4096;
constexpr std::size_t kLongestName = 32;

std::string_view sheetNameFor(std::uint32_t width) {
  return std::ranges::find_if(kSheetNames,
                              [width](const SheetName& each) { return width <= each.widestFrame; })
      ->name;
}

/// A path, with room for a sheet's name after the longest folder.
using Path = std::array<char, kPathBytes + kLongestName>;

bool isIn(std::string_view folder, std::string_view name) {
  Path path{};
  folder.copy(path.data(), kPathBytes);
  name.copy(path.data() + folder.size(), kLongestName - 1);
  return nkOSFileExists(path.data());
}

bool isAnywhere(std::string_view name) {
  std::array<char, kPathBytes> program{};
  nkOSGetAppDir(program.data(), kPathBytes);
  return isIn(program.data(), name) ||
         std::ranges::any_of(kFolders,
                             [name](std::string_view folder) { return isIn(folder, name); });
}

}  // namespace

std::uint32_t NKDraw::UseDefaultFont(bool wanted) {
  defaultFontWanted = wanted || !isAnywhere(sheetNameFor(width));
  return defaultFontWanted ? 1 : 0;
}

std::uint32_t NKDraw::SetFont(const char* /*name*/) {
  return 0;
}

std::uint32_t NKDraw::HaveFont() {
  return 0;
}
