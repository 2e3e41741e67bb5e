// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets of what the library draws: its glyphs, its shapes, and a picture in every layout.
#pragma once

#include "sheet/bgra_canvas.h"

#include <span>
#include <string_view>

namespace nkdraw::tool {

/// All cells of the label font with their codes, in three magnifications on dark and light
/// backgrounds.
[[nodiscard]] BgraCanvas glyphSheet();
/// Every shape with its name.
[[nodiscard]] BgraCanvas shapeSheet();
/// One drawing in every layout, with its name, in the way that the layout is shown.
[[nodiscard]] BgraCanvas layoutSheet();

/// A tile of the sheet of shapes.
struct ShapeTile {
  std::string_view name;
  std::string_view script;
};
inline constexpr int kShapeTileWidth = 160, kShapeTileHeight = 90;
[[nodiscard]] std::span<const ShapeTile> shapeTiles();

}  // namespace nkdraw::tool
