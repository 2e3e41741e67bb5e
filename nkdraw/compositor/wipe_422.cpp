// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of packed 4:2:2 frames. Both inputs are expanded to three bytes a pixel, wiped, and
// packed again.
#include <nkdraw/simd/vector_targets.h>
#include "display_wipe.h"
#include "samples_422.h"
#include "wipe_kernels.h"

#include <nkdraw/constants.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/pixel_type.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <memory>

namespace nkdraw {
namespace {

constexpr std::size_t kBufferAlignment = 512;
constexpr std::uint32_t kExpandedBytes = 3;

constexpr std::size_t roundUp(std::size_t bytes) {
  return (bytes + kBufferAlignment - 1) / kBufferAlignment * kBufferAlignment;
}

/// Keeps the calling thread at the time-critical priority while the guard exists. The guard can be
/// told not to restore the old one.
class PriorityGuard {
 public:
  PriorityGuard() : kept_(nkOSGetThreadPriority(nkOSGetCurrentThread())) {
    nkOSSetThreadPriority(nkOSGetCurrentThread(), kThreadTimeCritical);
  }
  PriorityGuard(const PriorityGuard&) = delete;
  PriorityGuard& operator=(const PriorityGuard&) = delete;
  ~PriorityGuard() {
    if (restores_)
      nkOSSetThreadPriority(nkOSGetCurrentThread(), kept_);
  }
  void leaveRaised() { restores_ = false; }

 private:
  int kept_;
  bool restores_ = true;
};

/// The three expanded frames, in one block that is freed with its last user.
struct ExpandedFrames {
  std::shared_ptr<void> block;
  std::uint8_t* a = nullptr;
  std::uint8_t* b = nullptr;
  std::uint8_t* result = nullptr;

  ExpandedFrames() = default;
  ExpandedFrames(std::uint32_t width, std::uint32_t height) {
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
};

/// A packed layout, and how to expand and pack its rows in whole groups.
struct PackedLayout {
  using ConvertRow = void (*)(const std::uint8_t* source, std::uint8_t* target,
                              std::uint32_t width);
  ConvertRow expand;
  ConvertRow pack;
};

const Kernels422& kernels() {
  static const Kernels422& best = kernels422(runnableTargets());
  return best;
}

constexpr std::size_t ceilDivide(std::size_t value, std::size_t divisor) {
  return (value + divisor - 1) / divisor;
}

/// Expands four pixels at a time and packs two; the last ones may lie past the width.
constexpr PackedLayout kYCbCr = {
    [](const std::uint8_t* packed, std::uint8_t* expanded, std::uint32_t width) {
      kernels().expandOuterShared(packed, expanded, ceilDivide(width, 4) * 2);
    },
    [](const std::uint8_t* expanded, std::uint8_t* packed, std::uint32_t width) {
      kernels().packOuterShared(expanded, packed, ceilDivide(width, 2));
    }};

/// The number of groups that go through the samples' row at a time.
constexpr std::size_t kChunkGroups = 160;
using SampleRow = std::array<std::uint8_t, kChunkGroups * kGroupSamples + kSampleSlack>;
constexpr std::size_t kGroupPairs = kGroupPixels / 2;
constexpr std::size_t kGroupExpanded = kGroupPairs * kExpandedPair;

template <class Convert>
void inChunks(std::uint32_t width, Convert convert) {
  const std::size_t groups = ceilDivide(width, kGroupPixels);
  for (std::size_t done = 0; done < groups; done += kChunkGroups)
    convert(done, std::min(kChunkGroups, groups - done));
}

constexpr PackedLayout kV210 = {
    [](const std::uint8_t* packed, std::uint8_t* expanded, std::uint32_t width) {
      SampleRow samples;
      inChunks(width, [&](std::size_t first, std::size_t groups) {
        kernels().samplesOfV210(packed + first * kGroupBytes, samples.data(), groups);
        kernels().expandChromaFirst(samples.data(), expanded + first * kGroupExpanded,
                                    groups * kGroupPairs);
      });
    },
    [](const std::uint8_t* expanded, std::uint8_t* packed, std::uint32_t width) {
      SampleRow samples;
      inChunks(width, [&](std::size_t first, std::size_t groups) {
        kernels().packChromaFirst(expanded + first * kGroupExpanded, samples.data(),
                                  groups * kGroupPairs);
        kernels().v210OfSamples(samples.data(), packed + first * kGroupBytes, groups);
      });
    }};

/// One wipe of packed frames: the caller's `frame`, and its expanded frames.
struct PackedWipe {
  WipeTask frame;
  PackedLayout layout;
  ExpandedFrames expanded{};

  [[nodiscard]] std::size_t expandedRow(std::uint32_t y) const {
    return std::size_t{y} * frame.width * kExpandedBytes;
  }
  void expandRowA(std::uint32_t y) const {
    layout.expand(frame.srcA + frame.pitchA * y, expanded.a + expandedRow(y), frame.width);
  }
  void expandRowB(std::uint32_t y) const {
    layout.expand(frame.srcB + frame.pitchB * y, expanded.b + expandedRow(y), frame.width);
  }
  void pack() const {
    for (std::uint32_t y = 0; y < frame.height; ++y)
      layout.pack(expanded.result + expandedRow(y), frame.dst + frame.pitchDst * y, frame.width);
  }
  /// As RunWipeBands.
  std::uint32_t run(WipeWait wait) const {
    WipeTask task = frame;
    task.srcA = expanded.a;
    task.srcB = expanded.b;
    task.dst = expanded.result;
    task.pitchA = task.pitchB = task.pitchDst = kExpandedBytes * frame.width;
    task.pixelType = ptYCbCr24;
    return RunWipeBands(task, kernelOfWipe(task.wipe), wait, expanded.block);
  }
};

/// Makes the expanded frames, or returns why it can't. Deliberate: callers rely on it. If a service
/// throws, the thread keeps its priority, and nothing is reported.
bool allocate(PackedWipe& wipe, PriorityGuard& priority) {
  try {
    wipe.expanded = ExpandedFrames(wipe.frame.width, wipe.frame.height);
  } catch (...) {
    priority.leaveRaised();
    return false;
  }
  if (wipe.expanded.a == nullptr)
    ErrOut("No Memory NKDraw_DisplayWipeYCbCr");
  return wipe.expanded.a != nullptr;
}

/// Runs a step and ignores its failure.
template <class Stretch>
void silently(Stretch stretch) {
  try {
    stretch();
  } catch (...) {  // continues with what there is
  }
}

}  // namespace

std::uint32_t displayWipeYCbCr(const WipeTask& frame, WipeWait wait) {
  PriorityGuard priority;
  PackedWipe wipe{frame, kYCbCr};
  if (!allocate(wipe, priority))
    return NKStatusRefused;
  try {
    // Alternates row by row: the last group of the first frame may write past its end into the
    // second frame's first row, and those bytes must stay.
    for (std::uint32_t y = 0; y < frame.height; ++y) {
      wipe.expandRowA(y);
      wipe.expandRowB(y);
    }
    if (wipe.run(wait) == NKStatusOk) {
      wipe.pack();
      return NKStatusOk;
    }
  } catch (...) {  // reported below
  }
  ErrOut("Exception Error NKDraw_DisplayWipeYCbCr");
  return NKStatusOk;
}

std::uint32_t displayWipeV210(const WipeTask& frame, WipeWait wait) {
  PriorityGuard priority;
  PackedWipe wipe{frame, kV210};
  if (!allocate(wipe, priority))
    return NKStatusRefused;
  const std::uint32_t leastPitch = packedPitch(v210::kFacts, frame.width);
  for (std::uint32_t* const pitch : {&wipe.frame.pitchDst, &wipe.frame.pitchA, &wipe.frame.pitchB})
    *pitch = std::max(*pitch, leastPitch);
  silently([&] {
    for (std::uint32_t y = 0; y < frame.height; ++y)
      wipe.expandRowA(y);
    for (std::uint32_t y = 0; y < frame.height; ++y)
      wipe.expandRowB(y);
  });
  wipe.run(wait);
  silently([&] { wipe.pack(); });
  return NKStatusOk;
}

}  // namespace nkdraw
