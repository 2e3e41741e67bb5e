// SPDX-License-Identifier: BSD-2-Clause
//
// Every layout that the library draws in, by name: its surface, and how its frames are shown.
#pragma once

#include "draw/guarded_surface.h"

#include <nkdraw/surface/pixel_type.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace nkdraw::tool {

/// What a frame of a layout must be whole in.
enum class Unit : std::uint8_t {
  kPixel,
  kPair,  ///< even width
  kCell,  ///< even width and height
};

/// How a picture is made of a frame.
enum class Shown : std::uint8_t {
  kRead,      ///< by the surface's own GetPixelRGBA
  kWords,     ///< so, too, with words of 255, the brightest that the surface draws, as white
  kSixBytes,  ///< as the layout of six bytes a pixel: pixels are plotted six bytes apart, read
              ///< eight
};

struct DrawLayout {
  std::string_view name;
  std::string_view description;
  pixelType type;  // what the surface's constructor gets
  Unit unit;
  Shown shown;
  GuardedSurface (*make)(pixelType type);
};

[[nodiscard]] std::span<const DrawLayout> drawLayouts();

/// The layout with this name, in small or capital letters. Throws Failure, which names the nearest.
[[nodiscard]] const DrawLayout& drawLayoutNamed(std::string_view name);

/// The layout whose pixels of six bytes are read for Shown::kSixBytes.
[[nodiscard]] const DrawLayout& sixByteLayout();

}  // namespace nkdraw::tool
