// SPDX-License-Identifier: BSD-2-Clause
//
// Every layout that the library draws in, by name, with its surface and how its frames are shown.
#pragma once

#include "draw/guarded_surface.h"

#include <nkdraw/surface/pixel_type.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace nkdraw::tool {

/// What a frame's size must be a multiple of.
enum class Unit : std::uint8_t {
  kPixel,
  kPair,  ///< even width
  kCell,  ///< even width and height
};

/// How a frame becomes a picture.
enum class Shown : std::uint8_t {
  kRead,      ///< through the surface's own GetPixelRGBA
  kWords,     ///< so, too, with words of 255, the brightest that the surface draws, as white
  kSixBytes,  ///< as the layout of six bytes a pixel: pixels are plotted six bytes apart, read
              ///< eight
};

struct DrawLayout {
  std::string_view name;
  std::string_view description;
  pixelType type;  // for the surface's constructor
  Unit unit;
  Shown shown;
  GuardedSurface (*make)(pixelType type);
};

[[nodiscard]] std::span<const DrawLayout> drawLayouts();

/// The layout with this name, ignoring case. Throws Failure, which names the nearest.
[[nodiscard]] const DrawLayout& drawLayoutNamed(std::string_view name);

/// The layout of six bytes a pixel that reads frames for Shown::kSixBytes.
[[nodiscard]] const DrawLayout& sixByteLayout();

}  // namespace nkdraw::tool
