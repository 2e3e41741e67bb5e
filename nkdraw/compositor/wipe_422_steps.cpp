// SPDX-License-Identifier: BSD-2-Clause
//
// Expands both inputs to three bytes a pixel, wipes them, and packs the result.
#include "wipe_422_steps.h"
#include "layouts_422.h"
#include "wipe_kernels.h"

#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/pixel_type.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

namespace nkdraw {
namespace {

constexpr std::size_t kBufferAlignment = 512;

constexpr std::size_t roundUp(std::size_t bytes) {
  return ceilDivide(bytes, kBufferAlignment) * kBufferAlignment;
}

/// The number of groups that go through the samples' row at a time.
constexpr std::size_t kChunkGroups = 160;
using SampleRow = std::array<std::uint8_t, kChunkGroups * kGroupSamples + kSampleSlack>;
constexpr std::size_t kGroupPairs = kGroupPixels / 2;
constexpr std::size_t kGroupExpanded = kGroupPairs * kExpandedPair;

/// Pixels of one frame that are expanded before those of the other.
constexpr std::uint32_t kAlternated = 4;

template <class Convert>
void inChunks(std::uint32_t width, Convert convert) {
  const std::size_t groups = ceilDivide(width, kGroupPixels);
  for (std::size_t done = 0; done < groups; done += kChunkGroups)
    convert(done, std::min(kChunkGroups, groups - done));
}

}  // namespace

/// Expands four pixels at a time and packs two; the last ones may lie past the width. The last
/// group of the first frame may write past its end into the second frame's first row, and those
/// bytes must stay.
constexpr PackedLayout kPackedPairs = {
    [](const std::uint8_t* packed, std::uint8_t* expanded, std::uint32_t width) {
      bestKernels422().expandOuterShared(packed, expanded, ceilDivide(width, 4) * 2);
    },
    [](const std::uint8_t* expanded, std::uint8_t* packed, std::uint32_t width) {
      bestKernels422().packOuterShared(expanded, packed, ceilDivide(width, 2));
    },
    true};

constexpr PackedLayout kPackedV210 = {
    [](const std::uint8_t* packed, std::uint8_t* expanded, std::uint32_t width) {
      SampleRow samples;
      inChunks(width, [&](std::size_t first, std::size_t groups) {
        bestKernels422().samplesOfV210(packed + first * kGroupBytes, samples.data(), groups);
        bestKernels422().expandChromaFirst(samples.data(), expanded + first * kGroupExpanded,
                                           groups * kGroupPairs);
      });
    },
    [](const std::uint8_t* expanded, std::uint8_t* packed, std::uint32_t width) {
      SampleRow samples;
      inChunks(width, [&](std::size_t first, std::size_t groups) {
        bestKernels422().packChromaFirst(expanded + first * kGroupExpanded, samples.data(),
                                         groups * kGroupPairs);
        bestKernels422().v210OfSamples(samples.data(), packed + first * kGroupBytes, groups);
      });
    },
    false};

ExpandedFrames::ExpandedFrames(std::uint32_t width, std::uint32_t height) {
  const std::uint64_t pixels = std::uint64_t{width} * height;
  const std::uint64_t bytes = pixels + (pixels + 384) * 8;
  if (bytes > std::numeric_limits<std::uint32_t>::max())
    return;
  void* const memory = NKAlloc(static_cast<std::uint32_t>(bytes));
  if (memory == nullptr)
    return;
  block = std::shared_ptr<void>(memory, NKFree);
  auto* const first = static_cast<std::uint8_t*>(memory);
  const auto address = std::bit_cast<std::uintptr_t>(first);
  const std::size_t frame = roundUp(pixels * kExpandedBytes);
  a = first + (roundUp(address) - address);
  b = a + frame;
  result = b + frame;
}

std::size_t WipeSteps422::expandedRow(std::uint32_t y) const {
  return std::size_t{y} * frame.width * kExpandedBytes;
}
void WipeSteps422::expandRowA(std::uint32_t y) const {
  layout.expand(frame.srcA + frame.pitchA * y, expanded.a + expandedRow(y), frame.width);
}
void WipeSteps422::expandRowB(std::uint32_t y) const {
  layout.expand(frame.srcB + frame.pitchB * y, expanded.b + expandedRow(y), frame.width);
}

void WipeSteps422::expand() const {
  if (layout.alternates && frame.height == 1 && frame.width > kAlternated) {
    expandRowB(0);  // of which the first frame's last group changes the first bytes
    expandRowA(0);
    return;
  }
  for (std::uint32_t y = 0; y < frame.height; ++y) {
    expandRowA(y);
    if (layout.alternates)
      expandRowB(y);
  }
  for (std::uint32_t y = 0; y < frame.height && !layout.alternates; ++y)
    expandRowB(y);
}

void WipeSteps422::pack() const {
  for (std::uint32_t y = 0; y < frame.height; ++y)
    layout.pack(expanded.result + expandedRow(y), frame.dst + frame.pitchDst * y, frame.width);
}

WipeTask WipeSteps422::expandedTask() const {
  WipeTask task = frame;
  task.srcA = expanded.a;
  task.srcB = expanded.b;
  task.dst = expanded.result;
  task.pitchA = task.pitchB = task.pitchDst = kExpandedBytes * frame.width;
  task.pixelType = ptYCbCr24;
  return task;
}

std::uint32_t WipeSteps422::wipe(WipeWait wait) const {
  return RunWipeBands(expandedTask(), kernelOfWipe(frame.wipe), wait, expanded.block);
}

void WipeSteps422::wipe(std::uint8_t quarters) const {
  drawQuarters(expandedTask(), kernelOfWipe(frame.wipe), quarters);
}

}  // namespace nkdraw
