// SPDX-License-Identifier: BSD-2-Clause
//
// The exact cross-fade with vectors: samples of up to ten bits in words of sixteen, larger ones in
// doubles, which hold all of their numbers.
#include <nkdraw/simd/vector_targets.h>
#include "exact_mix.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/compositor/exact_mix_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

const ExactMixKernels& kKernels = kPlainExactMix;

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::uint16_t>;
using SignedWords = hn::ScalableTag<std::int16_t>;
using Longs = hn::ScalableTag<std::uint32_t>;
using Doubles = hn::ScalableTag<double>;
using WordVector = hn::Vec<Words>;
using LongVector = hn::Vec<Longs>;
constexpr Bytes kBytes;
constexpr Words kWords;
constexpr SignedWords kSignedWords;
constexpr Longs kLongs;
constexpr Doubles kDoubles;
constexpr std::size_t kVectorBytes = hn::MaxLanes(kBytes);

/// Mixes words that hold up to ten bits. From half of the range on, the weight counts back from the
/// incoming sample, so that it fits into fifteen bits and a sign.
class SmallMixer {
 public:
  explicit SmallMixer(const ExactWeight& weight)
      : high_(hn::Set(kSignedWords, static_cast<std::int16_t>(weight.high))),
        low_(hn::Set(kSignedWords, static_cast<std::int16_t>(weight.low))),
        isLate_(weight.high >= 32768) {}

  [[nodiscard]] WordVector operator()(WordVector outgoing, WordVector incoming) const {
    const auto difference = hn::BitCast(kSignedWords, hn::Sub(incoming, outgoing));
    const auto whole = hn::BitCast(kWords, hn::MulHigh(difference, high_));
    const auto fraction = hn::BitCast(kWords, hn::Mul(difference, high_));
    // The low part of the weight is off by half a unit at most, so that halves need a little more.
    const auto more = hn::Add(hn::BitCast(kWords, hn::MulFixedPoint15(difference, low_)),
                              hn::Set(kWords, 32768 + 2));
    const auto carry = hn::VecFromMask(kWords, hn::Lt(hn::Add(fraction, more), more));
    return hn::Sub(hn::Add(isLate_ ? incoming : outgoing, whole), carry);
  }

 private:
  hn::Vec<SignedWords> high_, low_;
  bool isLate_;
};

void mixBytes(const ExactMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  const SmallMixer mixed(mix.weight);
  const auto low = hn::Set(kWords, 0xFF);
  std::size_t i = 0;
  for (; i + kVectorBytes <= count; i += kVectorBytes) {
    const auto o = hn::BitCast(kWords, hn::LoadU(kBytes, outgoing + i));
    const auto n = hn::BitCast(kWords, hn::LoadU(kBytes, incoming + i));
    const auto even = mixed(hn::And(o, low), hn::And(n, low));
    const auto odd = mixed(hn::ShiftRight<8>(o), hn::ShiftRight<8>(n));
    hn::StoreU(hn::BitCast(kBytes, hn::Or(even, hn::ShiftLeft<8>(odd))), kBytes, output + i);
  }
  kPlainExactMix.bytes(mix, outgoing + i, incoming + i, output + i, count - i);
}

LongVector loadLongs(const std::uint8_t* bytes) {
  return hn::BitCast(kLongs, hn::LoadU(kBytes, bytes));
}

/// The samples of two vectors of v210 words, in words of sixteen bits.
struct Unpacked {
  WordVector outer[2];  ///< the first and the third sample of every word
  WordVector inner;     ///< the second samples of both

  Unpacked() = default;
  Unpacked(LongVector a, LongVector b) {
    const auto low = hn::Set(kLongs, 0x3FF), high = hn::Set(kLongs, 0x3FF0000);
    const auto outerOf = [&](LongVector word) HWY_ATTR {
      return hn::BitCast(kWords, hn::OrAnd(hn::And(word, low), hn::ShiftRight<4>(word), high));
    };
    outer[0] = outerOf(a);
    outer[1] = outerOf(b);
    inner = hn::BitCast(kWords,
                        hn::OrAnd(hn::And(hn::ShiftRight<10>(a), low), hn::ShiftLeft<6>(b), high));
  }

  [[nodiscard]] LongVector word(std::size_t index) const {
    const auto low = hn::Set(kLongs, 0x3FF), middle = hn::Set(kLongs, 0xFFC00),
               high = hn::Set(kLongs, 0x3FF00000);
    const auto sides = hn::BitCast(kLongs, outer[index]), between = hn::BitCast(kLongs, inner);
    const auto centre = index == 0 ? hn::ShiftLeft<10>(between) : hn::ShiftRight<6>(between);
    return hn::OrAnd(hn::OrAnd(hn::And(sides, low), hn::ShiftLeft<4>(sides), high), centre, middle);
  }
};

void mixV210(const ExactMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
             std::uint8_t* output, std::size_t count) {
  const SmallMixer mixed(mix.weight);
  std::size_t i = 0;
  for (; i + 2 * kVectorBytes <= count * 4; i += 2 * kVectorBytes) {
    const Unpacked o(loadLongs(outgoing + i), loadLongs(outgoing + i + kVectorBytes));
    const Unpacked n(loadLongs(incoming + i), loadLongs(incoming + i + kVectorBytes));
    Unpacked result;
    result.outer[0] = mixed(o.outer[0], n.outer[0]);
    result.outer[1] = mixed(o.outer[1], n.outer[1]);
    result.inner = mixed(o.inner, n.inner);
    hn::StoreU(hn::BitCast(kBytes, result.word(0)), kBytes, output + i);
    hn::StoreU(hn::BitCast(kBytes, result.word(1)), kBytes, output + i + kVectorBytes);
  }
  kPlainExactMix.v210(mix, outgoing + i, incoming + i, output + i, count - i / 4);
}

/// As many words as a vector has doubles.
constexpr hn::Rebind<std::uint16_t, Doubles> kFewWords;
constexpr hn::Rebind<std::int32_t, Doubles> kFewLongs;
constexpr hn::Repartition<std::uint8_t, decltype(kFewWords)> kFewBytes;

void mixWords(const ExactMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  const double range = mix.range, position = mix.position;
  const auto outgoingWeight = hn::Set(kDoubles, 2 * (range - position));
  const auto incomingWeight = hn::Set(kDoubles, 2 * position);
  const auto half = hn::Set(kDoubles, range), divisor = hn::Set(kDoubles, 2 * range);
  const auto inverse = hn::Set(kDoubles, 1 / (2 * range)), one = hn::Set(kDoubles, 1);
  const auto load = [](const std::uint8_t* words) HWY_ATTR {
    const auto loaded = hn::BitCast(kFewWords, hn::LoadU(kFewBytes, words));
    return hn::PromoteTo(kDoubles, hn::PromoteTo(kFewLongs, loaded));
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(kDoubles) <= count; i += hn::Lanes(kDoubles)) {
    const auto sum = hn::Add(hn::Add(hn::Mul(load(outgoing + 2 * i), outgoingWeight),
                                     hn::Mul(load(incoming + 2 * i), incomingWeight)),
                             half);
    // The quotient may be off by one, which the rest tells.
    auto quotient = hn::Floor(hn::Mul(sum, inverse));
    const auto rest = hn::Sub(sum, hn::Mul(quotient, divisor));
    quotient = hn::Add(quotient, hn::IfThenElseZero(hn::Ge(rest, divisor), one));
    quotient = hn::Sub(quotient, hn::IfThenElseZero(hn::Lt(rest, hn::Zero(kDoubles)), one));
    const auto result = hn::DemoteTo(kFewWords, hn::DemoteTo(kFewLongs, quotient));
    hn::StoreU(hn::BitCast(kFewBytes, result), kFewBytes, output + 2 * i);
  }
  kPlainExactMix.words(mix, outgoing + 2 * i, incoming + 2 * i, output + 2 * i, count - i);
}

constexpr ExactMixKernels kKernels = {mixBytes, mixWords, mixV210};

#endif

}  // namespace
}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<ExactMixKernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                                 HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const ExactMixKernels& exactMixKernels(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const ExactMixKernels& bestExactMix() {
  static const ExactMixKernels& best = exactMixKernels(runnableTargets());
  return best;
}

}  // namespace nkdraw
#endif
