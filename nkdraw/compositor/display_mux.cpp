// SPDX-License-Identifier: BSD-2-Clause
//
// The multiplexed display: what is done to the inputs before a mode runs, and the grid after it.
#include <nkdraw/simd/vector_targets.h>
#include "mux_modes.h"
#include "mux_rows.h"

#include <nkdraw/compositor/complete.h>
#include <nkdraw/nkdraw_c.h>
#include <nkdraw/platform/flip.h>
#include <nkdraw/platform/memory.h>

#include <cstring>
#include <utility>

namespace nkdraw {
namespace {

/// The grid's settings from the caller, and the frame that it is drawn on.
struct Grid {
  std::uint32_t type, x, y;
  std::uint8_t* output;
  std::uint32_t width, height, pitch;
};

struct GridSteps {
  std::uint32_t columns, rows;
};

constexpr std::uint32_t kGridWord = 0xBFBFBFBF;

/// A step is 0 where its computation would divide by zero.
GridSteps gridSteps(const Grid& grid) {
  if (grid.type != NKGridPercent)
    return {grid.x, grid.y};
  const std::uint32_t cells = grid.x == 0 ? 0 : 100 / grid.x;
  if (cells == 0)
    return {0, 0};
  return {grid.width / cells, grid.height / cells};
}

void drawColumnsOfGrid(std::uint8_t* row, std::uint32_t width, std::uint32_t step) {
  for (std::size_t x = 0; x < width; x += step) {
    std::memcpy(row + x * sizeof kGridWord, &kGridWord, sizeof kGridWord);
    if (step == 0)
      break;
  }
}

/// Fills the rows of lines to the pitch. Without a vertical step there is no grid; without a
/// horizontal step the only column is the first.
void drawGrid(const Grid& grid) {
  const GridSteps steps = gridSteps(grid);
  if (steps.rows == 0)
    return;
  for (std::uint32_t y = 0; y < grid.height; ++y) {
    std::uint8_t* const row = grid.output + grid.pitch * y;
    if (y % steps.rows == 0)
      SetMemoryFast(row, kGridWord, grid.pitch);
    else
      drawColumnsOfGrid(row, grid.width, steps.columns);
  }
}

struct Size {
  std::uint32_t width, height, pitch;
};

void mirrorVert(std::uint8_t* frame, const Size& size) {
  pxcv_flip_vert(frame, frame, size.width, size.height, size.pitch);
}
void mirrorHorz(std::uint8_t* frame, const Size& size) {
  pxcv_flip_horz(frame, frame, size.width, size.height, size.pitch, 0xFFFFFFFF);
}

/// Deliberate: callers rely on it. Mirrors the caller's own buffers, and leaves them mirrored.
void mirrorInputs(std::uint8_t* first, std::uint8_t* second, std::uint32_t mode, const Size& size) {
  if ((mode & NKMuxFlipSecondVert) != 0)
    mirrorVert(second, size);
  if ((mode & NKMuxFlipFirstVert) != 0)
    mirrorVert(first, size);
  if ((mode & NKMuxFlipSecondHorz) != 0)
    mirrorHorz(second, size);
  if ((mode & NKMuxFlipFirstHorz) != 0)
    mirrorHorz(first, size);
}

std::uint32_t displayMux(NKMux mux, WipeWait wait) {
  if ((mux.mode & NKMuxSwap) != 0)
    std::swap(mux.srcA, mux.srcB);  // deliberate: callers rely on the sizes staying
  mirrorInputs(mux.srcA, mux.srcB, mux.mode, {mux.width, mux.height, mux.pitch});
  modeOf(mux.mode & NKMuxValueMask)({mux.srcA, mux.srcB, mux.dst, mux.sizeA, mux.sizeB, mux.mode,
                                     mux.wipe, mux.amount, mux.threshold, mux.splitX, mux.splitY,
                                     mux.width, mux.height, mux.pitch, wait});
  finishStreamedRows();
  if (mux.gridType == NKGridNone && (mux.mode & NKMuxGrid) != 0)
    mux.gridType = NKGridPercent;
  if (mux.gridType != NKGridNone)
    drawGrid({mux.gridType, mux.gridX, mux.gridY, mux.dst, mux.width, mux.height, mux.pitch});
  return NKStatusOk;
}

}  // namespace
}  // namespace nkdraw

std::uint32_t NKDraw_DisplayMuxRGBA(std::uint8_t* srcA, std::uint32_t sizeA, std::uint8_t* srcB,
                                    std::uint32_t sizeB, std::uint8_t* dst, std::uint32_t /*spare*/,
                                    std::uint32_t mode, std::uint32_t wipe, std::uint32_t amount,
                                    std::uint32_t threshold, std::uint32_t splitX,
                                    std::uint32_t splitY, std::uint32_t gridType,
                                    std::uint32_t gridX, std::uint32_t gridY, std::uint32_t width,
                                    std::uint32_t height, std::uint32_t pitch) {
  return nkdraw::displayMux({srcA, sizeA, srcB, sizeB, dst, mode, wipe, amount, threshold, splitX,
                             splitY, gridType, gridX, gridY, width, height, pitch},
                            nkdraw::WipeWait::kBounded);
}

std::uint32_t NKDraw_CompleteMux(const NKMux* mux) {
  return nkdraw::displayMux(*mux, nkdraw::WipeWait::kComplete);
}
