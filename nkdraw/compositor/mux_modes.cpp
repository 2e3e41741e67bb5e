// SPDX-License-Identifier: BSD-2-Clause
//
// The modes of the multiplexed display, and the table of their values.
#include "mux_modes.h"

#include "copy_block.h"
#include "display_wipe.h"
#include "mux_rows.h"

#include <nkdraw/constants.h>
#include <nkdraw/surface/pixel_type.h>

namespace nkdraw {
namespace {

constexpr std::uint32_t kPixelBytes = kMuxPixelBytes;

// Offsets of rows and sizes of blocks wrap at 32 bits.

/// One row of the three frames.
struct MuxRowBytes {
  const std::uint8_t* first;
  const std::uint8_t* second;
  std::uint8_t* output;
};

MuxRowBytes rowOf(const MuxTask& task, std::uint32_t y) {
  const std::uint32_t offset = task.pitch * y;
  return {task.first + offset, task.second + offset, task.output + offset};
}

std::uint32_t rowBytes(const MuxTask& task) {
  return task.width * kPixelBytes;
}

constexpr std::uint32_t halfRoundedUp(std::uint32_t size) {
  return (size >> 1) + (size & 1);
}

/// Whether output rows overlap rows of `input` without being identical to them.
bool liesAcross(const MuxTask& task, const std::uint8_t* input) {
  const auto distance =
      reinterpret_cast<std::uintptr_t>(task.output) - reinterpret_cast<std::uintptr_t>(input);
  const std::size_t bytes = std::size_t{task.width} * kPixelBytes;
  return distance != 0 && (distance < bytes || 0 - distance < bytes);
}

/// A display of this size leaves a core's own caches before it is read again.
constexpr std::size_t kStreamedBytes = std::size_t{4} << 20;

const MuxRows& rowsFor(const MuxTask& task) {
  if (liesAcross(task, task.first) || liesAcross(task, task.second))
    return kPlainMuxRows;
  const bool large = std::size_t{task.pitch} * task.height >= kStreamedBytes;
  return large ? muxForms().streamed : muxForms().kept;
}

template <class Rule>
void drawByRule(const MuxTask& task, MuxRow<Rule> MuxRows::*form, Rule rule) {
  const MuxRow<Rule> drawRow = rowsFor(task).*form;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    drawRow(rule, row.first, row.second, row.output, task.width);
  }
}

// Whole frames.

void drawFirst(const MuxTask& task) {
  copyBlock(task.output, task.first, task.sizeA);
}

void drawSecond(const MuxTask& task) {
  copyBlock(task.output, task.second, task.sizeB);
}

void drawWipe(const MuxTask& task) {
  displayWipe({task.first, task.pitch, task.second, task.pitch, task.output, task.pitch, task.wipe,
               ptRGBA32, task.width, task.height, 1, 1, 0, 0, 0, 0, NKMuxWhole, task.amount},
              task.wait);
}

// Pixel by pixel.

template <std::uint32_t first, std::uint32_t second>
void drawChannels(const MuxTask& task) {
  static_assert((first & second) == 0);
  drawByRule(task, &MuxRows::channels, ChannelMix{first, second});
}

void drawAverage(const MuxTask& task) {
  drawByRule(task, &MuxRows::average, Average{});
}

void drawDifference(const MuxTask& task) {
  const bool amplified = task.threshold >= 2 && task.threshold <= 255;
  const auto gain = static_cast<std::int16_t>(amplified ? task.threshold : 1);
  drawByRule(task, &MuxRows::difference, Difference{gain});
}

void drawCompare(const MuxTask& task) {
  const std::uint8_t other = task.has(NKMuxSwap) ? 0xFF : 0;
  drawByRule(task, &MuxRows::compare, Compare{task.threshold, other});
}

void drawFade(const MuxTask& task) {
  const std::uint32_t first = task.amount >> 8;
  drawByRule(task, &MuxRows::fade, Fade{first, 256 - first});
}

void drawGrey(const MuxTask& task) {
  for (std::uint8_t place = 0; place < kPixelBytes; ++place) {
    if (task.threshold == 0xFFU << (8 * place))
      return drawByRule(task, &MuxRows::greyByte, GreyByte{place});
  }
  drawByRule(task, &MuxRows::greyMean, GreyMean{});
}

// Interleaves.

constexpr Runs kSinglePixels(1);

/// Deliberate: callers rely on the picture. If the height is odd, the last pair reaches one row
/// past the frame.
void interleaveRows(const MuxTask& task) {
  const std::uint32_t pairs = halfRoundedUp(task.height);
  for (std::uint32_t pair = 0; pair < pairs; ++pair) {
    const MuxRowBytes even = rowOf(task, 2 * pair), odd = rowOf(task, 2 * pair + 1);
    copyBlock(even.output, even.first, task.pitch);
    copyBlock(odd.output, odd.second, task.pitch);
  }
}

/// Deliberate: callers rely on the picture. If the width is odd, the last column keeps its old
/// contents.
void interleaveColumns(const MuxTask& task) {
  const MuxRow<const Runs&> drawRow = rowsFor(task).runs;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    drawRow(kSinglePixels, row.first, row.second, row.output, task.width & ~1U);
  }
}

void drawInterleave(const MuxTask& task) {
  task.has(NKMuxOtherWay) ? interleaveColumns(task) : interleaveRows(task);
}

/// One row of the checker; its even columns come from `even`. Deliberate: callers rely on the
/// picture. If the width is odd, the last pair reaches one pixel past the row.
void checkRow(MuxRow<const Runs&> drawRow, const std::uint8_t* even, const std::uint8_t* odd,
              std::uint8_t* output, std::uint32_t width) {
  drawRow(kSinglePixels, even, odd, output, width);
  if (width % 2 != 0)
    plain::setPixel(output, width, plain::pixelAt(odd, width));
}

/// Deliberate: callers rely on the picture. If the height is odd, the last pair of rows reaches one
/// row past the frame.
void drawChecker(const MuxTask& task) {
  const MuxRow<const Runs&> drawRow = rowsFor(task).runs;
  const std::uint32_t pairs = halfRoundedUp(task.height);
  for (std::uint32_t pair = 0; pair < pairs; ++pair) {
    const MuxRowBytes even = rowOf(task, 2 * pair), odd = rowOf(task, 2 * pair + 1);
    checkRow(drawRow, even.first, even.second, even.output, task.width);
    checkRow(drawRow, odd.second, odd.first, odd.output, task.width);
  }
}

void drawBlocks(const MuxTask& task) {
  const Runs runs(std::clamp(task.amount >> 8, 1U, Runs::kLongest));
  const MuxRow<const Runs&> drawRow = rowsFor(task).runs;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    const bool even = y / runs.run % 2 == 0;
    drawRow(runs, even ? row.first : row.second, even ? row.second : row.first, row.output,
            task.width);
  }
}

// Halves.

/// Deliberate: callers rely on the picture. If the height is odd, the last row keeps its old
/// contents.
void drawOverAndUnder(const MuxTask& task) {
  const std::uint32_t half = task.height >> 1;
  for (std::uint32_t y = 0; y < half; ++y) {
    const MuxRowBytes source = rowOf(task, 2 * y);
    copyBlock(rowOf(task, y).output, source.first, task.pitch);
    copyBlock(rowOf(task, half + y).output, source.second, task.pitch);
  }
}

/// Copies every other pixel of a packed frame into the left half of the packed frame at `output`.
void squeeze(const MuxTask& task, const std::uint8_t* frame, std::uint8_t* output) {
  const PixelWalk take = rowsFor(task).everyOther;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const std::uint32_t offset = rowBytes(task) * y;
    take(frame + offset, output + offset, task.width >> 1);
  }
}

/// Deliberate: callers rely on the picture. If the width is odd, the right half begins in the
/// middle of a pixel.
void drawSideBySide(const MuxTask& task) {
  squeeze(task, task.first, task.output);
  squeeze(task, task.second, task.output + 2 * task.width);
}

constexpr std::uint32_t kSplitGrey = 0x80808080;
constexpr MuxPixel kSplitPixel = {0x80, 0x80, 0x80, 0x80};

/// Deliberate: callers rely on the picture. The marked column may be one past the row's last pixel.
void splitColumns(const MuxTask& task) {
  const std::uint32_t split = task.splitX > task.width ? task.width >> 1 : task.splitX;
  const std::uint32_t left = split * kPixelBytes;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    copyBlock(row.output, row.first, left);
    copyBlock(row.output + left, row.second + left, rowBytes(task) - left);
    if (task.has(NKMuxMarkSplit))
      plain::setPixel(row.output, split, kSplitPixel);
  }
}

void splitRows(const MuxTask& task) {
  const std::uint32_t split = task.splitY > task.height ? task.height >> 1 : task.splitY;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    if (y == split && task.has(NKMuxMarkSplit))
      SetMemoryFast(row.output, kSplitGrey, task.pitch);
    else
      copyBlock(row.output, y < split ? row.first : row.second, task.pitch);
  }
}

void drawSplit(const MuxTask& task) {
  task.has(NKMuxOtherWay) ? splitRows(task) : splitColumns(task);
}

void mirrorColumns(const MuxTask& task) {
  const std::uint32_t half = task.width >> 1;
  const std::size_t middle = std::size_t{half} * kPixelBytes;
  const PixelWalk take = muxForms().kept.backwards;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const MuxRowBytes row = rowOf(task, y);
    copyBlock(row.output, row.first, half * kPixelBytes);
    take(row.second + middle, row.output + middle, task.width - half);
  }
}

void mirrorRows(const MuxTask& task) {
  const std::uint32_t half = task.height >> 1;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    const std::uint8_t* const source =
        y < half ? rowOf(task, y).first : rowOf(task, 2 * half - y).second;
    copyBlock(rowOf(task, y).output, source, rowBytes(task));
  }
}

void drawMirror(const MuxTask& task) {
  task.has(NKMuxOtherWay) ? mirrorRows(task) : mirrorColumns(task);
}

// Parts of packed frames, surrounded by black. Each row is blackened just before it is drawn.

/// Both at half size, side by side. Deliberate: callers rely on the picture. If the width is odd,
/// each is one column wider than half: the middle column shows the last column of the first, and a
/// single column shows the second.
void drawQuarterPair(const MuxTask& task) {
  const std::uint32_t top = task.height >> 2, rows = halfRoundedUp(task.height);
  const std::uint32_t bytes = rowBytes(task), middle = (task.width >> 1) * kPixelBytes;
  const std::uint32_t columns = halfRoundedUp(task.width);
  const PixelWalk take = muxForms().kept.everyOther;
  SetMemoryFast(task.output, 0, top * bytes);
  for (std::uint32_t y = 0; y < rows; ++y) {
    std::uint8_t* const output = task.output + (top + y) * bytes;
    SetMemoryFast(output, 0, bytes);
    take(task.second + 2 * y * bytes, output + middle, columns);
    if (middle != 0)  // both share a single column, and the second is written last
      take(task.first + 2 * y * bytes, output, columns);
  }
  const std::uint32_t bottom = top + rows;
  SetMemoryFast(task.output + bottom * bytes, 0, (task.height - bottom) * bytes);
}

void cropColumns(const MuxTask& task) {
  const std::uint32_t half = task.width >> 1, bytes = rowBytes(task);
  const std::uint32_t from = std::min(task.splitX, half) * kPixelBytes;
  const std::uint32_t halfBytes = half * kPixelBytes;
  for (std::uint32_t y = 0; y < task.height; ++y) {
    std::uint8_t* const output = task.output + y * bytes;
    SetMemoryFast(output, 0, bytes);
    CopyMemoryFast(output, task.first + y * bytes + from, halfBytes);
    CopyMemoryFast(output + halfBytes, task.second + y * bytes + from, halfBytes);
  }
}

/// Deliberate: callers rely on the picture. If the height is odd, the rows of the second begin in
/// the middle of a row.
void cropRows(const MuxTask& task) {
  const std::uint32_t half = task.height >> 1, bytes = rowBytes(task);
  const std::uint32_t from = std::min(task.splitY, half) * bytes, halfBytes = half * bytes;
  const std::uint32_t middle = (task.width * task.height >> 1) * kPixelBytes;
  CopyMemoryFast(task.output, task.first + from, halfBytes);
  SetMemoryFast(task.output + halfBytes, 0, middle - halfBytes);
  CopyMemoryFast(task.output + middle, task.second + from, halfBytes);
  const std::uint32_t end = middle + halfBytes;
  SetMemoryFast(task.output + end, 0, task.height * bytes - end);
}

void drawCropPair(const MuxTask& task) {
  task.has(NKMuxOtherWay) ? cropRows(task) : cropColumns(task);
}

struct MuxEntry {
  std::uint32_t value;
  MuxMode draw;
};

constexpr MuxEntry kModes[] = {
    {NKMuxSecond, drawSecond},
    {NKMuxRedBlue, drawChannels<0x00FF0000, 0x000000FF>},
    {NKMuxRedCyan, drawChannels<0xFFFF0000, 0x0000FFFF>},
    {NKMuxYellowBlue, drawChannels<0xFFFFFF00, 0x000000FF>},
    {NKMuxGreenMagenta, drawChannels<0xFF00FF00, 0x00FF00FF>},
    {NKMuxInterleave, drawInterleave},
    {NKMuxAverage, drawAverage},
    {NKMuxDifference, drawDifference},
    {NKMuxOverUnder, drawOverAndUnder},
    {NKMuxSideBySide, drawSideBySide},
    {NKMuxSplit, drawSplit},
    {NKMuxMirror, drawMirror},
    {NKMuxMirrorToo, drawMirror},
    {NKMuxCompare, drawCompare},
    {NKMuxFade, drawFade},
    {NKMuxWipe, drawWipe},
    {NKMuxChecker, drawChecker},
    {NKMuxBlocks, drawBlocks},
    {NKMuxQuarterPair, drawQuarterPair},
    {NKMuxCropPair, drawCropPair},
    {NKMuxGrey, drawGrey},
};

}  // namespace

MuxMode modeOf(std::uint32_t value) {
  const auto* const entry =
      std::find_if(std::begin(kModes), std::end(kModes),
                   [value](const MuxEntry& mode) { return mode.value == value; });
  return entry == std::end(kModes) ? drawFirst : entry->draw;
}

}  // namespace nkdraw
