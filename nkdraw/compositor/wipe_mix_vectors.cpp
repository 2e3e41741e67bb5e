// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade of bytes and words in vectors, in integers wherever these decide.
#include "vector_targets.h"
#include "wipe_mix.h"

#include <array>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/compositor/wipe_mix_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

template <PartKind kind, class Mix>
void mixPlainly(const Mix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count) {
  plainMixRow(kind)(mix.weights, outgoing, incoming, output, count);
}

constexpr MixKernels kKernels = {mixPlainly<PartKind::kByte, ByteMix>,
                                 mixPlainly<PartKind::kWord, WordMix>};

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::uint16_t>;
using SignedWords = hn::ScalableTag<std::int16_t>;
using ByteVector = hn::Vec<Bytes>;
using WordVector = hn::Vec<Words>;
constexpr Bytes kBytes;
constexpr Words kWords;
constexpr SignedWords kSignedWords;

// --- bytes -----------------------------------------------------------------------------------

/// Tells which bytes of a vector a ByteSet holds.
class Membership {
 public:
  explicit Membership(const ByteSet& set) : lower_(row(set, false)), upper_(row(set, true)) {}

  /// Nonzero for members.
  [[nodiscard]] ByteVector operator()(ByteVector value) const {
    alignas(16) static constexpr std::uint8_t kBits[16] = {1, 2, 4, 8, 16, 32, 64, 128,
                                                           1, 2, 4, 8, 16, 32, 64, 128};
    const auto index = hn::Set(kBytes, 0x8F);  // a place with its top bit set gives 0
    const auto low = hn::TableLookupBytesOr0(lower_, hn::And(value, index));
    const auto high =
        hn::TableLookupBytesOr0(upper_, hn::And(hn::Xor(value, hn::Set(kBytes, 0x80)), index));
    const auto column =
        hn::TableLookupBytes(hn::LoadDup128(kBytes, kBits), hn::ShiftRight<4>(value));
    return hn::And(hn::Or(low, high), column);
  }

 private:
  static ByteVector row(const ByteSet& set, bool upper) {
    alignas(16) const std::array<std::uint8_t, 16> half = set.half(upper);
    return hn::LoadDup128(kBytes, half.data());
  }
  ByteVector lower_, upper_;
};

/// The even or the odd bytes of a vector, each in a word.
WordVector evenBytes(ByteVector bytes) {
  return hn::And(hn::BitCast(kWords, bytes), hn::Set(kWords, 0xFF));
}
WordVector oddBytes(ByteVector bytes) {
  return hn::ShiftRight<8>(hn::BitCast(kWords, bytes));
}
ByteVector joined(WordVector even, WordVector odd) {
  return hn::BitCast(kBytes, hn::Or(even, hn::ShiftLeft<8>(odd)));
}

/// Half of the bytes of a vector, mixed; and which pairs are whole, where these need rounding.
struct MixedHalf {
  WordVector result;
  WordVector whole;
};

/// `start` is the outgoing part, and `weight` the progress, or both of the other side for more than
/// half of it, so that the weight fits in fifteen bits and a sign.
template <bool rounds>
MixedHalf mixHalf(WordVector outgoing, WordVector incoming, WordVector start, WordVector weight) {
  const auto difference = hn::BitCast(kSignedWords, hn::Sub(incoming, outgoing));
  const auto floor =
      hn::BitCast(kWords, hn::MulHigh(difference, hn::BitCast(kSignedWords, weight)));
  auto result = hn::Add(start, floor);
  if constexpr (rounds) {
    // Whole pairs lie within 128 of the next multiple of 65536; those below it are one short.
    const auto near = hn::Set(kWords, 128), span = hn::Set(kWords, 256);
    const auto fraction =
        hn::Add(hn::BitCast(kWords, hn::Mul(difference, hn::BitCast(kSignedWords, weight))), near);
    result = hn::Sub(result, hn::VecFromMask(kWords, hn::Lt(fraction, near)));
    return {result, hn::VecFromMask(kWords, hn::Lt(fraction, span))};
  }
  return {result, result};
}

/// Mixes again in doubles the pairs whose byte in `doubtful` is not 0.
void decide(const MixWeights& weights, ByteVector outgoing, ByteVector incoming,
            ByteVector doubtful, std::uint8_t* output) {
  HWY_ALIGN std::uint8_t o[hn::MaxLanes(kBytes)], n[hn::MaxLanes(kBytes)], in[hn::MaxLanes(kBytes)];
  hn::Store(outgoing, kBytes, o);
  hn::Store(incoming, kBytes, n);
  hn::Store(doubtful, kBytes, in);
  for (std::size_t i = 0; i < hn::Lanes(kBytes); ++i) {
    if (in[i] != 0)
      output[i] = mixed(weights, o[i], n[i]);
  }
}

template <bool rounds, bool corrects>
void mixBytesSo(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count) {
  const auto weight = hn::Set(kWords, static_cast<std::uint16_t>(mix.weight));
  const bool late = mix.weight >= 32768;
  const Membership outgoingOneLess(mix.outgoingOneLess), incomingOneLess(mix.incomingOneLess);
  std::size_t i = 0;
  for (; i + hn::Lanes(kBytes) <= count; i += hn::Lanes(kBytes)) {
    const auto o = hn::LoadU(kBytes, outgoing + i), n = hn::LoadU(kBytes, incoming + i);
    const auto start = late ? n : o;
    const auto even = mixHalf<rounds>(evenBytes(o), evenBytes(n), evenBytes(start), weight);
    const auto odd = mixHalf<rounds>(oddBytes(o), oddBytes(n), oddBytes(start), weight);
    hn::StoreU(joined(even.result, odd.result), kBytes, output + i);
    if constexpr (corrects) {
      const auto whole = rounds ? joined(hn::And(even.whole, hn::Set(kWords, 0xFF)), odd.whole)
                                : hn::VecFromMask(kBytes, hn::Eq(o, n));
      const auto zero = hn::Zero(kBytes);
      const auto doubtful = hn::AndNot(
          hn::VecFromMask(
              kBytes, hn::Or(hn::Eq(outgoingOneLess(o), zero), hn::Eq(incomingOneLess(n), zero))),
          whole);
      if (!hn::AllTrue(kBytes, hn::Eq(doubtful, zero)))
        decide(mix.weights, o, n, doubtful, output + i);
    }
  }
  plainMixRow(PartKind::kByte)(mix.weights, outgoing + i, incoming + i, output + i, count - i);
}

void mixBytes(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  using Mix = decltype(&mixBytes);
  constexpr Mix kWays[2][2] = {{mixBytesSo<false, false>, mixBytesSo<false, true>},
                               {mixBytesSo<true, false>, mixBytesSo<true, true>}};
  kWays[mix.rounds ? 1 : 0][mix.corrects() ? 1 : 0](mix, outgoing, incoming, output, count);
}

// --- words -----------------------------------------------------------------------------------

/// A sum of words, and where it ran over.
struct Sum {
  WordVector low;
  WordVector carry;  ///< -1 or 0
};
Sum add(WordVector a, WordVector b) {
  const auto low = hn::Add(a, b);
  return {low, hn::VecFromMask(kWords, hn::Lt(low, a))};
}

/// Mixes a vector of words in doubles.
void mixInDoubles(const MixWeights& weights, WordVector outgoing, WordVector incoming,
                  std::uint8_t* output) {
  constexpr hn::ScalableTag<double> kDoubles;
  constexpr hn::Rebind<std::int32_t, hn::ScalableTag<double> > kIntegers;
  constexpr hn::Rebind<std::uint16_t, hn::ScalableTag<double> > kFewWords;
  constexpr std::size_t kCount = hn::MaxLanes(kWords);
  HWY_ALIGN std::uint16_t o[kCount], n[kCount], result[kCount];
  hn::Store(outgoing, kWords, o);
  hn::Store(incoming, kWords, n);
  const auto beta = hn::Set(kDoubles, weights.outgoing),
             alpha = hn::Set(kDoubles, weights.incoming);
  const auto inDoubles = [&](const std::uint16_t* words) HWY_ATTR {
    return hn::PromoteTo(kDoubles, hn::PromoteTo(kIntegers, hn::Load(kFewWords, words)));
  };
  for (std::size_t i = 0; i < kCount; i += hn::Lanes(kDoubles)) {
    const auto sum = hn::Add(hn::Mul(inDoubles(o + i), beta), hn::Mul(inDoubles(n + i), alpha));
    hn::Store(hn::DemoteTo(kFewWords, hn::DemoteTo(kIntegers, sum)), kFewWords, result + i);
  }
  std::memcpy(output, result, sizeof result);
}

template <bool exact>
void mixWordsSo(const WordMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count) {
  const auto part = [](std::uint32_t weight, int shift) HWY_ATTR {
    return hn::Set(kWords, static_cast<std::uint16_t>(weight >> shift));
  };
  const std::uint32_t rest = 0U - mix.weight;
  const auto restHigh = part(rest, 16), restLow = part(rest, 0);
  const auto weightHigh = part(mix.weight, 16), weightLow = part(mix.weight, 0);
  const std::size_t step = hn::Lanes(kBytes);
  std::size_t i = 0;
  for (; i + step <= count * 2; i += step) {
    const auto o = hn::BitCast(kWords, hn::LoadU(kBytes, outgoing + i));
    const auto n = hn::BitCast(kWords, hn::LoadU(kBytes, incoming + i));
    const auto [sum, carry] = add(hn::Mul(o, restHigh), hn::Mul(n, weightHigh));
    auto result = hn::Sub(hn::Add(hn::MulHigh(o, restHigh), hn::MulHigh(n, weightHigh)), carry);
    if constexpr (!exact) {
      // The low halves of the weights add up to 65536, so this sum does not run over.
      const auto lows = hn::Add(hn::MulHigh(o, restLow), hn::MulHigh(n, weightLow));
      const auto [fraction, lowCarry] = add(sum, lows);
      result = hn::Sub(result, lowCarry);
      const auto doubtful = hn::Lt(hn::Add(fraction, hn::Set(kWords, kWordBelow)),
                                   hn::Set(kWords, kWordBelow + kWordAbove + 1));
      if (!hn::AllFalse(kWords, doubtful)) {
        mixInDoubles(mix.weights, o, n, output + i);
        continue;
      }
    }
    hn::StoreU(hn::BitCast(kBytes, result), kBytes, output + i);
  }
  plainMixRow(PartKind::kWord)(mix.weights, outgoing + i, incoming + i, output + i, count - i / 2);
}

void mixWords(const WordMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  (mix.exact ? mixWordsSo<true> : mixWordsSo<false>)(mix, outgoing, incoming, output, count);
}

constexpr MixKernels kKernels = {mixBytes, mixWords};

#endif

}  // namespace
}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<MixKernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                            HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const MixKernels& mixKernels(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

}  // namespace nkdraw
#endif
