// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of a watermark with vectors of up to 32 bytes of the frame.
#include "watermark_rows.h"

#include <nkdraw/simd/vector_targets.h>
#include <nkdraw/surface/v210_group.h>

#include <array>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/overlay/watermark_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::watermark::HWY_NAMESPACE {
namespace {

// SSE2 can't look bytes up in a vector.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SSE2

constexpr const Rows& kKernels = kPlainRows;

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::CappedTag<std::uint8_t, 32>;
using Halves = hn::Repartition<std::uint16_t, Bytes>;
using Words = hn::Repartition<std::uint32_t, Bytes>;
using Wide = hn::Repartition<std::uint64_t, Bytes>;
using ByteVector = hn::Vec<Bytes>;
using HalfVector = hn::Vec<Halves>;
using WordVector = hn::Vec<Words>;

constexpr std::size_t kSize = hn::MaxLanes(Bytes()), kBlock = 16;

using Indices = std::array<std::uint8_t, kBlock>;
constexpr std::uint8_t kZero = 0x80;  ///< an index that gives 0

HWY_INLINE ByteVector table(const Indices& indices) {
  alignas(kBlock) const Indices aligned = indices;
  return hn::LoadDup128(Bytes(), aligned.data());
}

/// Sixteen bytes for each block of the vector; those of the next block begin `stride` bytes later.
template <class Tag>
HWY_INLINE hn::Vec<Tag> loadBlocks(Tag d, const void* at, std::size_t stride) {
  const auto* const bytes = static_cast<const std::uint8_t*>(at);
  if constexpr (hn::MaxLanes(Tag()) == kBlock) {
    return hn::LoadU(d, bytes);
  } else {
    const hn::Half<Tag> block;
    return hn::Combine(d, hn::LoadU(block, bytes + stride), hn::LoadU(block, bytes));
  }
}

// --- blending --------------------------------------------------------------------------------

/// Divides by 255 and truncates; exact for all sixteen bits.
HWY_INLINE HalfVector by255(HalfVector products) {
  return hn::ShiftRight<7>(hn::MulHigh(products, hn::Set(Halves(), 0x8081)));
}

/// The bytes of even places and those of odd places, weighted by lanes of alphas from 0 to 255.
HWY_INLINE ByteVector blended(ByteVector source, ByteVector under, HalfVector evenAlpha,
                              HalfVector oddAlpha) {
  const Halves d;
  const HalfVector most = hn::Set(d, 255);
  const HalfVector s = hn::BitCast(d, source), u = hn::BitCast(d, under);
  const HalfVector even = hn::Add(hn::Mul(hn::And(s, most), evenAlpha),
                                  hn::Mul(hn::And(u, most), hn::Sub(most, evenAlpha)));
  const HalfVector odd = hn::Add(hn::Mul(hn::ShiftRight<8>(s), oddAlpha),
                                 hn::Mul(hn::ShiftRight<8>(u), hn::Sub(most, oddAlpha)));
  return hn::BitCast(Bytes(), hn::Or(by255(even), hn::ShiftLeft<8>(by255(odd))));
}

HWY_INLINE void storeWhere(hn::Mask<Halves> shown, ByteVector yes, ByteVector no,
                           std::uint8_t* at) {
  const Halves d;
  const auto chosen = hn::IfThenElse(shown, hn::BitCast(d, yes), hn::BitCast(d, no));
  hn::StoreU(hn::BitCast(Bytes(), chosen), Bytes(), at);
}

void blendPixels(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pixels) {
  constexpr std::size_t kAtOnce = kSize / kPixelBytes;
  const Halves d;
  const ByteVector ofAlpha =
      table({3, kZero, 3, kZero, 7, kZero, 7, kZero, 11, kZero, 11, kZero, 15, kZero, 15, kZero});
  // The picture's alpha replaces the frame's: it is blended with a weight of 255.
  const HalfVector alphaByte = hn::BitCast(d, hn::Set(Words(), 0x00FF0000));
  const HalfVector invisible = hn::Set(d, kInvisibleRgb);
  for (; pixels >= kAtOnce; pixels -= kAtOnce, picture += kSize, frame += kSize) {
    const ByteVector source = hn::LoadU(Bytes(), picture), under = hn::LoadU(Bytes(), frame);
    const HalfVector alpha = hn::BitCast(d, hn::TableLookupBytesOr0(source, ofAlpha));
    storeWhere(hn::Gt(alpha, invisible), blended(source, under, alpha, hn::Or(alpha, alphaByte)),
               under, frame);
  }
  kPlainRows.blendPixels(picture, frame, pixels);
}

/// Four pairs of twenty bytes for each block: the first three begin in its first sixteen bytes, the
/// last one lies in its last sixteen.
void blendPairs(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pairs) {
  constexpr std::size_t kAtOnce = kSize / kPairBytes, kStride = kBlock / kPairBytes * kPairParts;
  const Halves d;
  constexpr std::uint8_t z = kZero;
  const ByteVector firstParts = table({1, 0, 3, 2, 6, 5, 8, 7, 11, 10, 13, 12, z, z, z, z});
  const ByteVector lastParts = table({z, z, z, z, z, z, z, z, z, z, z, z, 12, 11, 14, 13});
  const ByteVector firstAlphas = table({4, z, 4, z, 9, z, 9, z, 14, z, 14, z, z, z, z, z});
  const ByteVector lastAlphas = table({z, z, z, z, z, z, z, z, z, z, z, z, 15, z, 15, z});
  const HalfVector invisible = hn::Set(d, kInvisible8);
  for (; pairs >= kAtOnce; pairs -= kAtOnce, picture += kAtOnce * kPairParts, frame += kSize) {
    const ByteVector first = loadBlocks(Bytes(), picture, kStride);
    const ByteVector last = loadBlocks(Bytes(), picture + kStride - kBlock, kStride);
    const ByteVector source = hn::Or(hn::TableLookupBytesOr0(first, firstParts),
                                     hn::TableLookupBytesOr0(last, lastParts));
    const HalfVector alpha = hn::BitCast(d, hn::Or(hn::TableLookupBytesOr0(first, firstAlphas),
                                                   hn::TableLookupBytesOr0(last, lastAlphas)));
    const ByteVector under = hn::LoadU(Bytes(), frame);
    storeWhere(hn::Gt(alpha, invisible), blended(source, under, alpha, alpha), under, frame);
  }
  kPlainRows.blendPairs(picture, frame, pairs);
}

// --- plotting --------------------------------------------------------------------------------

/// The three pairs of each group, alphas left out.
struct Pairs {
  WordVector first, second, third;

  explicit HWY_INLINE Pairs(const std::uint32_t* picture)
      : first(load(picture)),
        second(load(picture + kPairParts)),
        third(load(picture + 2 * kPairParts)) {}

  /// The words of each group from here on.
  static HWY_INLINE WordVector load(const std::uint32_t* at) {
    return hn::BitCast(Words(), loadBlocks(Bytes(), at, 3 * kPairParts * sizeof *at));
  }
};

/// The upper half of each block from `upper`, the lower one from `lower`.
HWY_INLINE WordVector halves(WordVector upper, WordVector lower) {
  const Wide d;
  return hn::BitCast(Words(), hn::OddEven(hn::BitCast(d, upper), hn::BitCast(d, lower)));
}

/// The groups in the pairs' colours, if no part is larger than ten bits. Lane by lane the words are
///
///     Cb0 + (Y0 << 10) + (Cr0 << 20), Y1 + (Cb1 << 10) + (Y2 << 20),
///     Cr1 + (Y3 << 10) + (Cb2 << 20), Y4 + (Cr2 << 10) + (Y5 << 20)
///
/// and what is shifted alike lies in different lanes of the three pairs.
HWY_INLINE WordVector groupsOf(const Pairs& pairs) {
  const WordVector p = halves(pairs.second, pairs.first), q = halves(pairs.third, pairs.second),
                   r = halves(pairs.first, pairs.third);
  const WordVector low = hn::Shuffle0321(hn::OddEven(p, r));
  const WordVector middle = hn::OddEven(q, p);
  const WordVector high = hn::Shuffle2103(hn::OddEven(r, q));
  return hn::Or(low, hn::Or(hn::ShiftLeft<10>(middle), hn::ShiftLeft<20>(high)));
}

/// The bits of the pairs that show. Words 1 and 2 of a group belong to two pairs.
HWY_INLINE WordVector shownBits(const std::uint32_t* picture) {
  alignas(kBlock) static constexpr std::uint32_t kLow[] = {0x3FFFFFFF, 0x3FF, 0xFFFFF, 0x3FFFFFFF};
  alignas(kBlock) static constexpr std::uint32_t kHigh[] = {0x3FFFFFFF, 0x3FFFFC00, 0x3FF00000,
                                                            0x3FFFFFFF};
  const Words d;
  // Lanes 0, 1 and 3: the alphas, words 4, 9 and 14 of the picture.
  const WordVector alphas = hn::OddEven(halves(Pairs::load(picture + 11), Pairs::load(picture + 8)),
                                        Pairs::load(picture + 4));
  const auto shown =
      hn::BitCast(Bytes(), hn::VecFromMask(d, hn::Gt(alphas, hn::Set(d, kInvisible10))));
  const auto low = hn::BitCast(
      d, hn::TableLookupBytes(shown, table({0, 1, 2, 3, 0, 1, 2, 3, 4, 5, 6, 7, 12, 13, 14, 15})));
  const auto high = hn::BitCast(
      d,
      hn::TableLookupBytes(shown, table({0, 1, 2, 3, 4, 5, 6, 7, 12, 13, 14, 15, 12, 13, 14, 15})));
  return hn::Or(hn::And(low, hn::LoadDup128(d, kLow)), hn::And(high, hn::LoadDup128(d, kHigh)));
}

HWY_INLINE bool haveTenBits(const Pairs& pairs) {
  const Words d;
  const WordVector all = hn::Or(pairs.first, hn::Or(pairs.second, pairs.third));
  return hn::AllTrue(d, hn::Eq(hn::ShiftRight<10>(all), hn::Zero(d)));
}

void plotGroups(const std::uint32_t* picture, std::uint8_t* frame, std::size_t groups) {
  constexpr std::size_t kAtOnce = kSize / kBlock;
  for (; groups >= kAtOnce;
       groups -= kAtOnce, picture += kAtOnce * 3 * kPairParts, frame += kSize) {
    const Pairs pairs(picture);
    if (HWY_UNLIKELY(!haveTenBits(pairs))) {  // a larger part carries into the next
      kPlainRows.plotGroups(picture, frame, kAtOnce);
      continue;
    }
    const WordVector shown = shownBits(picture);
    const WordVector old = hn::BitCast(Words(), hn::LoadU(Bytes(), frame));
    const WordVector made = hn::Or(hn::And(shown, groupsOf(pairs)), hn::AndNot(shown, old));
    hn::StoreU(hn::BitCast(Bytes(), made), Bytes(), frame);
  }
  kPlainRows.plotGroups(picture, frame, groups);
}

constexpr Rows kKernels = {blendPixels, blendPairs, plotGroups};

#endif

}  // namespace
}  // namespace nkdraw::watermark::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw::watermark {
namespace {

constexpr ByTarget<Rows> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                      HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const Rows& rows(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const Rows& rows() {
  static const Rows& best = rows(runnableTargets());
  return best;
}

}  // namespace nkdraw::watermark
#endif
