// SPDX-License-Identifier: BSD-2-Clause
//
// The process-wide font data as bytes: a sheet is read into them and stamped from them.
#pragma once

#include <nkdraw/text/font_data.h>

#include <cstddef>
#include <cstring>
#include <span>

namespace nkdraw {

/// The whole block: a sheet larger than its pixels continues into the fields after them, up to the
/// end of the block.
[[nodiscard]] inline std::span<std::uint8_t> fontBlock() {
  return {reinterpret_cast<std::uint8_t*>(&fontData), sizeof fontData};
}

static_assert(offsetof(FontData, fontSheetHeader) == 1048576);
static_assert(offsetof(FontData, fontKind) == 1048612);
static_assert(offsetof(FontData, fontPointSize) == 1048616);

/// Fields of fontSheetHeader, little-endian.
struct SheetHeader {
  static constexpr std::size_t kBytes = sizeof(FontData::fontSheetHeader);
  static constexpr std::size_t kWidth = 0;
  static constexpr std::size_t kHeight = 4;
  static constexpr std::size_t kBitCount = 10;
  static constexpr std::size_t kCompression = 12;
  static constexpr std::size_t kSizeImage = 16;

  [[nodiscard]] static std::uint32_t word(std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
      value |= std::uint32_t{fontData.fontSheetHeader[at + i]} << (8 * i);
    return value;
  }

  static void setWord(std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
      fontData.fontSheetHeader[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
};

}  // namespace nkdraw
