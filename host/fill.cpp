// SPDX-License-Identifier: BSD-2-Clause
//
// Fills memory with a 32-bit pattern, as fast as memset does with a byte. One vector at the start
// and one at the end overlap the whole vectors at aligned addresses between them.
#include <nkdraw/platform/memory.h>

#include <nkdraw/simd/vector_targets.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "host/fill.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef NKDRAW_HOST_FILL
#define NKDRAW_HOST_FILL
namespace nkdraw {
namespace {

/// The pattern as it continues after its first `bytes` bytes.
constexpr std::uint32_t patternBehind(std::size_t bytes, std::uint32_t pattern) {
  const int bits = static_cast<int>(bytes % 4) * 8;
  return std::endian::native == std::endian::little ? std::rotr(pattern, bits)
                                                    : std::rotl(pattern, bits);
}

void fillPlain(std::uint8_t* at, std::uint32_t pattern, std::size_t bytes) {
  for (; bytes >= sizeof pattern; bytes -= sizeof pattern, at += sizeof pattern)
    std::memcpy(at, &pattern, sizeof pattern);
  for (; bytes > 0; --bytes, ++at, pattern = patternBehind(1, pattern))
    std::memcpy(at, &pattern, 1);
}

struct FillKernels {
  void (*fill)(std::uint8_t* first, std::uint32_t pattern, std::size_t bytes);
};

}  // namespace
}  // namespace nkdraw
#endif

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

constexpr FillKernels kKernels = {fillPlain};

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Fills at least one vector.
template <class Words>
HWY_INLINE void fillVectors(Words words, std::uint8_t* first, std::uint32_t pattern,
                            std::size_t bytes) {
  const hn::Repartition<std::uint8_t, Words> lanes;
  constexpr std::size_t kSize = hn::MaxLanes(words) * sizeof pattern;
  const auto from = [&](std::size_t behind) {
    return hn::BitCast(lanes, hn::Set(words, patternBehind(behind, pattern)));
  };
  std::uint8_t* const tail = first + bytes - kSize;
  hn::StoreU(from(bytes - kSize), lanes, tail);
  hn::StoreU(from(0), lanes, first);

  const std::size_t toAligned = kSize - std::bit_cast<std::uintptr_t>(first) % kSize;
  const auto aligned = from(toAligned);
  std::uint8_t* at = first + toAligned;
  for (; tail - at >= std::ptrdiff_t{4 * kSize}; at += 4 * kSize) {
    hn::Store(aligned, lanes, at);
    hn::Store(aligned, lanes, at + kSize);
    hn::Store(aligned, lanes, at + 2 * kSize);
    hn::Store(aligned, lanes, at + 3 * kSize);
  }
  for (; at < tail; at += kSize)
    hn::Store(aligned, lanes, at);
}

void fill(std::uint8_t* first, std::uint32_t pattern, std::size_t bytes) {
  using Middle = hn::CappedTag<std::uint32_t, 4>;
  using Wide = hn::CappedTag<std::uint32_t, 8>;
  constexpr std::size_t kWideRun = 256;  // wider vectors do not pay on shorter runs
  if (bytes < hn::MaxLanes(Middle()) * sizeof pattern)
    return fillPlain(first, pattern, bytes);
  if constexpr (hn::MaxLanes(Wide()) > hn::MaxLanes(Middle())) {
    if (bytes >= kWideRun)
      return fillVectors(Wide(), first, pattern, bytes);
  }
  fillVectors(Middle(), first, pattern, bytes);
}

constexpr FillKernels kKernels = {fill};

#endif

}  // namespace
}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<FillKernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                             HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace
}  // namespace nkdraw

void SetMemoryFast(void* target, std::uint32_t value, std::uint32_t bytes) {
  static const nkdraw::FillKernels& kernels =
      nkdraw::bestKernels(nkdraw::kByTarget, nkdraw::runnableTargets());
  kernels.fill(static_cast<std::uint8_t*>(target), value, bytes);
}
#endif
