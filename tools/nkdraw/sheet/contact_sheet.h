// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets of what the compositor makes of two pictures.
#pragma once

#include "sheet/bgra_canvas.h"

#include <optional>
#include <string>

namespace nkdraw::tool {

/// The two pictures for the tiles, of one size.
struct SheetPictures {
  BgraCanvas first, second;
};

/// The first frames of two clips, scaled to `tileWidth` and an even height that keeps the first
/// one's shape. A clip that is not named is replaced by a built-in picture. Throws Failure.
[[nodiscard]] SheetPictures sheetPictures(const std::optional<std::string>& first,
                                          const std::optional<std::string>& second, int tileWidth);

inline constexpr int kWipeTileWidth = 160, kModeTileWidth = 240;

/// All named wipes at five positions, from the beginning of the range to its end.
[[nodiscard]] BgraCanvas wipeSheet(SheetPictures& pictures);
/// All modes of the display, in both directions if they have two.
[[nodiscard]] BgraCanvas modeSheet(SheetPictures& pictures);

}  // namespace nkdraw::tool
