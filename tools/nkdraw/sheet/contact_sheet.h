// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets of what the compositor does with two pictures.
#pragma once

#include "sheet/bgra_canvas.h"

#include <optional>
#include <string>

namespace nkdraw::tool {

/// The two pictures that tiles are made of, of one size.
struct SheetPictures {
  BgraCanvas first, second;
};

/// The first frames of two clips, brought to `tileWidth`, and to an even height that gives the
/// first its shape; for a clip that is not named a picture of the program's own. Throws Failure.
[[nodiscard]] SheetPictures sheetPictures(const std::optional<std::string>& first,
                                          const std::optional<std::string>& second, int tileWidth);

inline constexpr int kWipeTileWidth = 160, kModeTileWidth = 240;

/// All named wipes at five positions of their range, from its beginning to its end.
[[nodiscard]] BgraCanvas wipeSheet(SheetPictures& pictures);
/// All modes of the display, in both directions where they have two.
[[nodiscard]] BgraCanvas modeSheet(SheetPictures& pictures);

}  // namespace nkdraw::tool
