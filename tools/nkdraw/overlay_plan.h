// SPDX-License-Identifier: BSD-2-Clause
//
// What is burnt in, and where: the user's wishes, the defaults that fit the frame, and the check
// that all of it lies inside the frame.
#pragma once

#include "canvas_stage.h"
#include "libav.h"
#include "timecode_source.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct Point {
  int x = 0, y = 0;
};

struct PlacedText {
  Point at;
  std::string text;
};

/// What the user asks for. What is not set follows from the frame.
struct OverlayRequest {
  bool ltc = true, vitc = false, clock = false, formatLine = false, fill = true;
  std::optional<Point> position;
  std::optional<unsigned> size;  // magnification of the timecode rows, 1 to 20
  std::vector<PlacedText> texts;
};

/// The frames that are drawn on.
struct FrameKind {
  int width = 0, height = 0;
  AVRational rate = {25, 1};
  bool interlaced = false;
  std::uint32_t fileType = 0;    // hzwFileType
  std::uint32_t sourceCode = 0;  // codec code that the format line names
};

/// One line of text in the frame. Cells are 8 by 10 pixels times the magnification, and one line
/// more.
struct TextBox {
  std::string what;  // "LTC row", "text 2"
  std::string text;  // an example, for what changes from frame to frame
  Point at;
  unsigned magnification;

  // The first column and the first row beyond, also of a box that no frame could hold.
  [[nodiscard]] std::int64_t right() const;
  [[nodiscard]] std::int64_t bottom() const;
};

struct OverlayPlan {
  OverlayRequest request;
  Point timecodeAt, formatAt;
  unsigned timecodeSize = 0;
  std::vector<TextBox> boxes;  // in the order in which they are drawn

  /// The rows that the boxes cover, from top to bottom, without overlaps.
  [[nodiscard]] std::vector<RowSpan> rows() const;
  /// Whether every stroke begins and ends on an even column.
  [[nodiscard]] bool pairsWhole() const;
};

/// At most this many texts, of at most this many characters.
inline constexpr std::size_t kMostTexts = 10;
inline constexpr std::size_t kLongestText = 511;

/// Throws Failure when something would leave the frame. Interlaced frames get even rows and sizes.
[[nodiscard]] OverlayPlan planOverlay(const OverlayRequest& request, const FrameKind& frames,
                                      const TimecodeStart& timecode);

}  // namespace nkdraw::tool
