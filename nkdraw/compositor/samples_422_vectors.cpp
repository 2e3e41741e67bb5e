// SPDX-License-Identifier: BSD-2-Clause
//
// Packs and expands 4:2:2 with vectors. Words first move into the block of sixteen bytes that needs
// them; then bytes move within blocks.
#include <nkdraw/simd/vector_targets.h>
#include "samples_422.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/compositor/samples_422_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

const Kernels422& kKernels = kPlain422;

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::uint32_t>;
using Block = hn::Full128<std::uint8_t>;

constexpr std::size_t kVectorBytes = hn::MaxLanes(Bytes());
constexpr std::size_t kVectorWords = kVectorBytes / 4;
constexpr std::size_t kBlockBytes = 16, kBlockWords = 4;

/// A vector of the output: which words of the input each of its blocks needs, and where each byte
/// comes from within these.
struct Gather {
  std::size_t offset = 0;  ///< of the input to load, in bytes
  HWY_ALIGN std::array<std::int32_t, kVectorWords> words{};
  HWY_ALIGN std::array<std::uint8_t, kVectorBytes> bytes{};
};

// --- pairs -----------------------------------------------------------------------------------

/// Two vectors of packed bytes give three of expanded ones.
constexpr std::size_t kExpandSteps = 3;

/// Sixteen expanded bytes come from at most four pairs, which are four words.
constexpr std::array<Gather, kExpandSteps> expansion(const PairOrder& order) {
  std::array<Gather, kExpandSteps> steps{};
  for (std::size_t step = 0; step < kExpandSteps; ++step) {
    Gather& gather = steps[step];
    const std::size_t start = step * kVectorBytes;
    const std::size_t firstPair = std::min(start / kExpandedPair, kVectorWords);
    gather.offset = firstPair * kPackedPair;
    for (std::size_t block = 0; block < kVectorBytes / kBlockBytes; ++block) {
      const std::size_t blockPair = (start + block * kBlockBytes) / kExpandedPair;
      // The last words of a block may lie past the vector when no byte needs them.
      const std::size_t base = std::min(blockPair - firstPair, kVectorWords - kBlockWords);
      for (std::size_t word = 0; word < kBlockWords; ++word)
        gather.words[block * kBlockWords + word] = static_cast<std::int32_t>(base + word);
      for (std::size_t i = 0; i < kBlockBytes; ++i) {
        const std::size_t place = start + block * kBlockBytes + i;
        const std::size_t pair = place / kExpandedPair - firstPair - base;
        gather.bytes[block * kBlockBytes + i] =
            static_cast<std::uint8_t>(pair * kPackedPair + order.expanded[place % kExpandedPair]);
      }
    }
  }
  return steps;
}

template <const PairOrder& order>
constexpr auto kExpansion = expansion(order);

template <const PairOrder& order, Kernels422::Convert Kernels422::*plain>
void expand(const std::uint8_t* packed, std::uint8_t* expanded, std::size_t pairs) {
  constexpr std::size_t kPairs = 2 * kVectorBytes / kPackedPair;
  const Bytes bytes;
  const Words words;
  const auto gather = [&](const Gather& from, std::size_t step) HWY_ATTR {
    const auto loaded = hn::BitCast(words, hn::LoadU(bytes, packed + from.offset));
    const auto placed = hn::TableLookupLanes(loaded, hn::SetTableIndices(words, from.words.data()));
    hn::StoreU(hn::TableLookupBytes(hn::BitCast(bytes, placed), hn::Load(bytes, from.bytes.data())),
               bytes, expanded + step * kVectorBytes);
  };
  for (; pairs >= kPairs; pairs -= kPairs) {
    gather(kExpansion<order>[0], 0);
    gather(kExpansion<order>[1], 1);
    gather(kExpansion<order>[2], 2);
    packed += kPairs * kPackedPair;
    expanded += kPairs * kExpandedPair;
  }
  (kPlain422.*plain)(packed, expanded, pairs);
}

/// Where the bytes of four packed pairs come from, in a block that begins with either the first two
/// or the last two of them, expanded.
constexpr std::array<std::uint8_t, kBlockBytes> packing(const PairOrder& order, std::size_t half) {
  constexpr std::uint8_t kNothing = 0x80;
  std::array<std::uint8_t, kBlockBytes> places{};
  for (std::size_t i = 0; i < kBlockBytes; ++i) {
    const std::size_t pair = i / kPackedPair;
    places[i] =
        pair / 2 == half
            ? static_cast<std::uint8_t>(pair % 2 * kExpandedPair + order.packed[i % kPackedPair])
            : kNothing;
  }
  return places;
}

template <const PairOrder& order>
HWY_ALIGN constexpr auto kFirstHalf = packing(order, 0);
template <const PairOrder& order>
HWY_ALIGN constexpr auto kSecondHalf = packing(order, 1);

template <const PairOrder& order, Kernels422::Convert Kernels422::*plain>
void pack(const std::uint8_t* expanded, std::uint8_t* packed, std::size_t pairs) {
  constexpr std::size_t kPairs = kBlockBytes / kPackedPair;
  const Block block;
  const auto first = hn::Load(block, kFirstHalf<order>.data());
  const auto second = hn::Load(block, kSecondHalf<order>.data());
  // The second load reaches into the next pair.
  for (; pairs > kPairs; pairs -= kPairs) {
    const auto low = hn::LoadU(block, expanded);
    const auto high = hn::LoadU(block, expanded + 2 * kExpandedPair);
    hn::StoreU(hn::Or(hn::TableLookupBytesOr0(low, first), hn::TableLookupBytesOr0(high, second)),
               block, packed);
    expanded += kPairs * kExpandedPair;
    packed += kPairs * kPackedPair;
  }
  (kPlain422.*plain)(expanded, packed, pairs);
}

// --- v210 ------------------------------------------------------------------------------------

/// Packs three bytes of every word into the first twelve bytes of a block.
HWY_ALIGN constexpr std::array<std::uint8_t, kBlockBytes> kThreeOfFour = {
    0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0x80, 0x80, 0x80, 0x80};
/// The reverse.
HWY_ALIGN constexpr std::array<std::uint8_t, kBlockBytes> kFourOfThree = {
    0, 1, 2, 0x80, 3, 4, 5, 0x80, 6, 7, 8, 0x80, 9, 10, 11, 0x80};

/// The first three words of every block, without gaps.
HWY_ALIGN constexpr auto kCloseGaps = [] {
  std::array<std::int32_t, kVectorWords> words{};
  for (std::size_t i = 0; i < kVectorWords * 3 / 4; ++i)
    words[i] = static_cast<std::int32_t>(i / 3 * 4 + i % 3);
  return words;
}();
/// The reverse.
HWY_ALIGN constexpr auto kOpenGaps = [] {
  std::array<std::int32_t, kVectorWords> words{};
  for (std::size_t i = 0; i < kVectorWords; ++i)
    words[i] = static_cast<std::int32_t>(i % 4 == 3 ? 0 : i / 4 * 3 + i % 4);
  return words;
}();

constexpr std::size_t kVectorGroups = kVectorBytes / kGroupBytes;

void samplesOfV210(const std::uint8_t* group, std::uint8_t* samples, std::size_t groups) {
  const Bytes bytes;
  const Words words;
  const auto inBlock = hn::LoadDup128(bytes, kThreeOfFour.data());
  const auto closed = hn::SetTableIndices(words, kCloseGaps.data());
  const auto byte0 = hn::Set(words, 0xFF), byte1 = hn::Set(words, 0xFF00),
             byte2 = hn::Set(words, 0xFF0000);
  for (; groups >= kVectorGroups; groups -= kVectorGroups) {
    const auto word = hn::BitCast(words, hn::LoadU(bytes, group));
    const auto tops = hn::Or(
        hn::Or(hn::And(hn::ShiftRight<2>(word), byte0), hn::And(hn::ShiftRight<4>(word), byte1)),
        hn::And(hn::ShiftRight<6>(word), byte2));
    const auto compact = hn::TableLookupBytesOr0(hn::BitCast(bytes, tops), inBlock);
    const auto all = hn::TableLookupLanes(hn::BitCast(words, compact), closed);
    hn::StoreU(hn::BitCast(bytes, all), bytes, samples);
    group += kVectorBytes;
    samples += kVectorGroups * kGroupSamples;
  }
  kPlain422.samplesOfV210(group, samples, groups);
}

void v210OfSamples(const std::uint8_t* samples, std::uint8_t* group, std::size_t groups) {
  const Bytes bytes;
  const Words words;
  const auto inBlock = hn::LoadDup128(bytes, kFourOfThree.data());
  const auto opened = hn::SetTableIndices(words, kOpenGaps.data());
  const auto byte0 = hn::Set(words, 0xFF), byte1 = hn::Set(words, 0xFF00),
             byte2 = hn::Set(words, 0xFF0000);
  for (; groups >= kVectorGroups; groups -= kVectorGroups) {
    const auto compact = hn::BitCast(words, hn::LoadU(bytes, samples));
    const auto apart = hn::BitCast(bytes, hn::TableLookupLanes(compact, opened));
    const auto tops = hn::BitCast(words, hn::TableLookupBytesOr0(apart, inBlock));
    const auto word = hn::Or(
        hn::Or(hn::ShiftLeft<2>(hn::And(tops, byte0)), hn::ShiftLeft<4>(hn::And(tops, byte1))),
        hn::ShiftLeft<6>(hn::And(tops, byte2)));
    hn::StoreU(hn::BitCast(bytes, word), bytes, group);
    samples += kVectorGroups * kGroupSamples;
    group += kVectorBytes;
  }
  kPlain422.v210OfSamples(samples, group, groups);
}

/// The words of a row from its sample `rest` on.
template <unsigned rest>
auto wordsFrom(const std::uint8_t* group) {
  const Words words;
  const auto first = hn::BitCast(words, hn::LoadU(Bytes(), group));
  if constexpr (rest == 0)
    return first;
  const auto next = hn::BitCast(words, hn::LoadU(Bytes(), group + 4));
  const auto clean = hn::And(first, hn::Set(words, 0x3FFFFFFF));
  return hn::Or(hn::ShiftRight<static_cast<int>(rest * 10)>(clean),
                hn::ShiftLeft<static_cast<int>(30 - rest * 10)>(next));
}

/// The bits of luma in the words of a group, whose samples alternate.
HWY_ALIGN constexpr std::array<std::uint32_t, 4> kLumaOfGroup = {0x000FFC00, 0x3FF003FF, 0x000FFC00,
                                                                 0x3FF003FF};

template <unsigned rest, bool byOne>
void moveV210So(const V210Move& move, const std::uint8_t* group, std::uint8_t* moved,
                std::size_t groups) {
  const Words words;
  const auto mask = hn::Set(words, move.mask);
  const auto luma = hn::LoadDup128(words, kLumaOfGroup.data());
  for (; groups >= kVectorGroups; groups -= kVectorGroups) {
    auto word = wordsFrom<rest>(group);
    if constexpr (byOne) {
      const auto further = wordsFrom<(rest + 2) % 3>(group + (rest + 2) / 3 * 4);
      word = hn::Or(hn::And(luma, further), hn::AndNot(luma, word));
    }
    hn::StoreU(hn::BitCast(Bytes(), hn::And(word, mask)), Bytes(), moved);
    group += kVectorBytes;
    moved += kVectorBytes;
  }
  kPlain422.moveV210(move, group, moved, groups);
}

void moveV210(const V210Move& move, const std::uint8_t* group, std::uint8_t* moved,
              std::size_t groups) {
  using Move = decltype(&moveV210);
  constexpr Move kMoves[3][2] = {{moveV210So<0, false>, moveV210So<0, true>},
                                 {moveV210So<1, false>, moveV210So<1, true>},
                                 {moveV210So<2, false>, moveV210So<2, true>}};
  kMoves[move.rest][move.byOne ? 1 : 0](move, group, moved, groups);
}

void topsOfV210(const std::uint8_t* group, std::uint8_t* tops, std::size_t groups) {
  const Words words;
  const Bytes bytes;
  const auto kept = hn::BitCast(bytes, hn::Set(words, kTopsOfWord));
  for (; groups >= kVectorGroups; groups -= kVectorGroups) {
    hn::StoreU(hn::And(hn::LoadU(bytes, group), kept), bytes, tops);
    group += kVectorBytes;
    tops += kVectorBytes;
  }
  kPlain422.topsOfV210(group, tops, groups);
}

constexpr Kernels422 kKernels = {
    expand<kOuterShared, &Kernels422::expandOuterShared>,
    expand<kChromaFirst, &Kernels422::expandChromaFirst>,
    pack<kOuterShared, &Kernels422::packOuterShared>,
    pack<kChromaFirst, &Kernels422::packChromaFirst>,
    samplesOfV210,
    v210OfSamples,
    moveV210,
    topsOfV210,
};

#endif

}  // namespace

}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<Kernels422> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                            HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const Kernels422& kernels422(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const Kernels422& bestKernels422() {
  static const Kernels422& best = kernels422(runnableTargets());
  return best;
}

}  // namespace nkdraw
#endif
