// SPDX-License-Identifier: BSD-2-Clause
//
// The loops for runs of pixels with vectors.
#include "run_kernels.h"

#include <nkdraw/simd/vector_targets.h>
#include <nkdraw/surface/byte_order.h>

#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/surface/run_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

constexpr const RunKernels& kKernels = kPlainRuns;

#else

namespace hn = hwy::HWY_NAMESPACE;

// At most 32 bytes a vector: wider ones do not pay on runs of a few hundred bytes.
using Bytes = hn::CappedTag<std::uint8_t, 32>;
constexpr Bytes kBytes;
constexpr std::size_t kSize = hn::MaxLanes(kBytes);

using Words64 = hn::Repartition<std::uint64_t, Bytes>;
constexpr Words64 kWords64;
using ByteVector = hn::Vec<Bytes>;

/// Three vectors are a whole number of blocks.
struct BlockVectors {
  ByteVector first, second, third;

  explicit BlockVectors(const Block& block) {
    constexpr std::size_t kLanes = hn::MaxLanes(kWords64);
    std::uint64_t words[3 * kLanes];
    for (std::size_t i = 0; i < 3 * kLanes; ++i)
      words[i] = block.words()[i % 3];
    first = hn::BitCast(kBytes, hn::LoadU(kWords64, words));
    second = hn::BitCast(kBytes, hn::LoadU(kWords64, words + kLanes));
    third = hn::BitCast(kBytes, hn::LoadU(kWords64, words + 2 * kLanes));
  }
};

/// The same as below for a block of three equal words, as pixels of 1, 2, 4 or 8 bytes make it.
void repeatWord(std::uint8_t* at, std::uint64_t word, std::size_t bytes) {
  const auto from = [word](std::size_t byte) {
    return hn::BitCast(kBytes,
                       hn::Set(kWords64, std::rotr(word, static_cast<int>(8 * (byte % 8)))));
  };
  std::uint8_t* const tail = at + bytes - kSize;
  hn::StoreU(from(0), kBytes, at);
  hn::StoreU(from(bytes - kSize), kBytes, tail);
  const std::size_t toAligned = kSize - std::bit_cast<std::uintptr_t>(at) % kSize;
  const auto aligned = from(toAligned);
  std::uint8_t* place = at + toAligned;
  for (; place + kSize < tail; place += 2 * kSize) {
    hn::Store(aligned, kBytes, place);
    hn::Store(aligned, kBytes, place + kSize);
  }
  if (place < tail)
    hn::Store(aligned, kBytes, place);
}

/// One vector at the start, one at the end, and between them whole vectors at aligned addresses.
void repeat(std::uint8_t* at, const Block& block, std::size_t bytes) {
  if (bytes < kSize)
    return kPlainRuns.repeat(at, block, bytes);
  const auto& words = block.words();
  if (words[0] == words[1] && words[0] == words[2])
    return repeatWord(at, words[0], bytes);
  std::uint8_t* const tail = at + bytes - kSize;
  hn::StoreU(BlockVectors(block).first, kBytes, at);
  hn::StoreU(BlockVectors(block.from((bytes - kSize) % Block::kBytes)).first, kBytes, tail);
  const std::size_t toAligned = kSize - std::bit_cast<std::uintptr_t>(at) % kSize;
  const BlockVectors aligned(block.from(toAligned % Block::kBytes));
  std::uint8_t* place = at + toAligned;
  for (; place + 2 * kSize < tail; place += 3 * kSize) {
    hn::Store(aligned.first, kBytes, place);
    hn::Store(aligned.second, kBytes, place + kSize);
    hn::Store(aligned.third, kBytes, place + 2 * kSize);
  }
  if (place < tail)
    hn::Store(aligned.first, kBytes, place);
  if (place + kSize < tail)
    hn::Store(aligned.second, kBytes, place + kSize);
}

void setBits(std::uint8_t* at, const MaskedGroup& group, std::size_t groups) {
  constexpr std::size_t kGroups = kSize / 16;
  const auto kept = hn::LoadDup128(kBytes, group.kept.data());
  const auto colour = hn::AndNot(kept, hn::LoadDup128(kBytes, group.colour.data()));
  for (; groups >= kGroups; groups -= kGroups, at += kSize)
    hn::StoreU(hn::Or(hn::And(hn::LoadU(kBytes, at), kept), colour), kBytes, at);
  kPlainRuns.setBits(at, group, groups);
}

/// The last vector may repeat bytes of the one before. It is made first: loading what has just been
/// stored in part is slow.
void merge(std::uint8_t* at, const std::uint8_t* kept, const std::uint8_t* row, std::size_t bytes) {
  if (bytes < kSize)
    return kPlainRuns.merge(at, kept, row, bytes);
  const auto mergedAt = [&](std::size_t i) {
    const auto old = hn::And(hn::LoadU(kBytes, at + i), hn::LoadU(kBytes, kept + i));
    return hn::Or(old, hn::LoadU(kBytes, row + i));
  };
  const std::size_t last = bytes - kSize;
  const auto end = mergedAt(last);
  for (std::size_t i = 0; i < last; i += kSize)
    hn::StoreU(mergedAt(i), kBytes, at + i);
  hn::StoreU(end, kBytes, at + last);
}

using Doubles = hn::CappedTag<double, 4>;
constexpr Doubles kDoubles;
constexpr hn::RebindToUnsigned<Doubles> kWide;
constexpr hn::Rebind<std::uint32_t, Doubles> kWords;

/// A 32-bit number in the low bits of 2^52 makes a double that is larger by this number; both
/// conversions are exact.
constexpr double kTwoTo52 = 4503599627370496.0;

void blendWords(std::uint8_t* at, std::uint32_t colour, double alpha, std::size_t words) {
  constexpr std::size_t kLanes = hn::MaxLanes(kDoubles);
  const auto offset = hn::Set(kDoubles, kTwoTo52);
  const auto part = hn::Set(kDoubles, colour * alpha);
  const auto rest = hn::Set(kDoubles, 1.0 - alpha);
  for (; words >= kLanes; words -= kLanes, at += 4 * kLanes) {
    const auto old = hn::PromoteTo(
        kWide,
        hn::BitCast(kWords, hn::LoadU(hn::Repartition<std::uint8_t, decltype(kWords)>(), at)));
    const auto word =
        hn::Sub(hn::BitCast(kDoubles, hn::Or(old, hn::BitCast(kWide, offset))), offset);
    const auto sum = hn::Add(hn::Mul(rest, word), part);  // below 2^32, never negative
    const auto whole = hn::Add(hn::Floor(sum), offset);
    const auto result = hn::TruncateTo(kWords, hn::BitCast(kWide, whole));
    hn::StoreU(hn::BitCast(hn::Repartition<std::uint8_t, decltype(kWords)>(), result),
               hn::Repartition<std::uint8_t, decltype(kWords)>(), at);
  }
  kPlainRuns.blendWords(at, colour, alpha, words);
}

void addBytes(std::uint8_t* at, std::uint32_t addends, std::size_t words) {
  constexpr std::size_t kWordsAtOnce = kSize / 4;
  const hn::Repartition<std::uint32_t, Bytes> lanes;
  const auto addend = hn::BitCast(kBytes, hn::Set(lanes, addends & 0x00FFFFFF));
  const auto last = hn::BitCast(kBytes, hn::Set(lanes, 0xFF000000));
  for (; words >= kWordsAtOnce; words -= kWordsAtOnce, at += kSize)
    hn::StoreU(hn::Or(hn::Add(hn::LoadU(kBytes, at), addend), last), kBytes, at);
  kPlainRuns.addBytes(at, addends, words);
}

constexpr RunKernels kKernels = {repeat, setBits, merge, blendWords, addBytes};

#endif

}  // namespace
}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<RunKernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                            HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const RunKernels& runKernels(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const RunKernels& runKernels() {
  static const RunKernels& kernels = runKernels(runnableTargets());
  return kernels;
}

}  // namespace nkdraw
#endif
