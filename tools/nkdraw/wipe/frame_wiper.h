// SPDX-License-Identifier: BSD-2-Clause
//
// One frame of a transition, however the frames' rows are stored.
#pragma once

#include "cli/using_media.h"
#include "media/canvas_stage.h"
#include "media/layouts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nkdraw::tool {

/// The progress of a transition: position of range.
struct Progression {
  std::uint32_t position, range;
};

/// Which of the library's wipes draws.
enum class WipeWay {
  kExact,   ///< NKDraw_ExactWipe, which keeps every bit
  kClassic  ///< NKDraw_CompleteWipe: v210 in 8 bits, edges within pairs, mixes rounded down
};

/// Frames with rows packed as in the library are wiped where they are. Others go through canvases.
/// Signed chroma becomes unsigned; three planes of 10 bits become v210. For a classic wipe UYVY
/// gets the bytes of each pair in YUYV order, so that a pixel at an edge keeps its own luma.
class FrameWiper {
 public:
  /// `layout` is one that wipeLayoutOf returns. `word` is a wipe number; bit 31 exchanges the
  /// clips.
  FrameWiper(const Layout& layout, Storage storage, int width, int height, std::uint32_t word,
             WipeWay way);

  /// Fills the rows of `out`, which must not be one of the inputs. Throws Failure if memory runs
  /// out.
  void wipe(const Picture& a, const Picture& b, const Picture& out, Progression progress);

 private:
  struct Route;
  static const Route kRoutes[];
  static const Route& routeFor(pixelType type, Storage storage, WipeWay way);

  [[nodiscard]] bool isCanvas(const Picture& picture) const;
  const std::uint8_t* load(const Picture& picture, std::vector<std::uint8_t>& canvas) const;
  void store(const Picture& picture);

  const Route& route_;
  pixelType type_;
  int width_, height_;
  std::ptrdiff_t pitch_;
  std::uint32_t word_;
  WipeWay way_;
  std::vector<std::uint8_t> a_, b_, out_;  // allocated on first use
};

}  // namespace nkdraw::tool
