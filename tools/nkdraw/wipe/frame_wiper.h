// SPDX-License-Identifier: BSD-2-Clause
//
// One frame of a transition, whatever way the rows of the frames are stored.
#pragma once

#include "cli/using_media.h"
#include "media/canvas_stage.h"
#include "media/layouts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nkdraw::tool {

/// How far a transition has come: position of range.
struct Progression {
  std::uint32_t position, range;
};

/// Frames whose rows are packed as the library packs them are wiped where they lie. Others go
/// through canvases: UYVY with the bytes of each pair in YUYV order, so that at an edge a pixel
/// keeps its own luma; signed chroma unsigned; three planes of 10 bits as v210.
class FrameWiper {
 public:
  /// `layout` is one of those that wipeLayoutOf gives. `word` is a wipe number, with bit 31 to
  /// swap.
  FrameWiper(const Layout& layout, Storage storage, int width, int height, std::uint32_t word);

  /// Fills the rows of `out`, which is neither of the inputs. Throws Failure when memory runs out.
  void wipe(const Picture& a, const Picture& b, const Picture& out, Progression progress);

 private:
  struct Route;
  static const Route kRoutes[];
  static const Route& routeFor(pixelType type, Storage storage);

  [[nodiscard]] bool isCanvas(const Picture& picture) const;
  const std::uint8_t* load(const Picture& picture, std::vector<std::uint8_t>& canvas) const;
  void store(const Picture& picture);

  const Route& route_;
  pixelType type_;
  int width_, height_;
  std::ptrdiff_t pitch_;
  std::uint32_t word_;
  std::vector<std::uint8_t> a_, b_, out_;  // made when they are first needed
};

}  // namespace nkdraw::tool
