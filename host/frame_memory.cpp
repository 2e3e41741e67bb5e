// SPDX-License-Identifier: BSD-2-Clause
//
// Frame records with their pixels behind them in one block.
#include <nkdraw/platform/frame_memory.h>

#include <nkdraw/constants.h>
#include <nkdraw/platform/memory.h>

#include <limits>
#include <new>

namespace {

/// The record before the pixels; it keeps the block's alignment.
struct alignas(64) FrameBlock {
  QFRAME frame;
};

std::uint32_t allocate(std::uint32_t bytes, QFRAME*& frame) {
  frame = nullptr;
  if (bytes > std::numeric_limits<std::uint32_t>::max() - sizeof(FrameBlock))
    return NKStatusRefused;
  void* const memory = NKAlloc(bytes + static_cast<std::uint32_t>(sizeof(FrameBlock)));
  if (memory == nullptr)
    return NKStatusRefused;
  auto* const block = new (memory) FrameBlock{};
  block->frame.frameBuffer = reinterpret_cast<char*>(block + 1);
  frame = &block->frame;
  return 0;
}

}  // namespace

std::uint32_t QFrameMem(std::uint32_t code, std::uint32_t bytes, std::uint32_t /*flags*/,
                        QFRAME** frame) {
  if (frame == nullptr)
    return NKStatusRefused;
  if (code == kFrameAllocate)
    return allocate(bytes, *frame);
  if (code != kFrameFree)
    return NKStatusRefused;
  NKFree(*frame);
  *frame = nullptr;
  return 0;
}
