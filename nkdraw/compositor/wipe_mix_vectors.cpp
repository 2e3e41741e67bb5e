// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade of bytes and words with vectors, in integers wherever these are enough.
#include <nkdraw/simd/vector_targets.h>
#include "wipe_mix.h"

#include <array>
#include <bit>
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
                                 mixPlainly<PartKind::kWord, WordMix>, mixV210Plainly};

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

/// Half of the bytes of a vector, mixed, and which pairs are whole and may need correction.
struct MixedHalf {
  WordVector result;
  WordVector whole;
};

/// `start` is the outgoing part and `weight` the progress. Beyond half of the range both are taken
/// from the other side, so that the weight fits into fifteen bits and a sign.
template <bool rounds>
MixedHalf mixHalf(WordVector outgoing, WordVector incoming, WordVector start, WordVector weight) {
  const auto difference = hn::BitCast(kSignedWords, hn::Sub(incoming, outgoing));
  const auto floor =
      hn::BitCast(kWords, hn::MulHigh(difference, hn::BitCast(kSignedWords, weight)));
  auto result = hn::Add(start, floor);
  if constexpr (rounds) {
    // Whole pairs lie within 128 of the next multiple of 65536; those below it are one too small.
    const auto near = hn::Set(kWords, 128), span = hn::Set(kWords, 256);
    const auto fraction =
        hn::Add(hn::BitCast(kWords, hn::Mul(difference, hn::BitCast(kSignedWords, weight))), near);
    result = hn::Sub(result, hn::VecFromMask(kWords, hn::Lt(fraction, near)));
    return {result, hn::VecFromMask(kWords, hn::Lt(fraction, span))};
  }
  return {result, result};
}

/// `result` with the pairs of `doubtful` mixed again, in doubles.
ByteVector decide(const MixWeights& weights, ByteVector outgoing, ByteVector incoming,
                  hn::Mask<Bytes> doubtful, ByteVector result) {
  constexpr std::size_t kCount = hn::MaxLanes(kBytes);
  HWY_ALIGN std::uint8_t o[kCount], n[kCount], results[kCount], bits[sizeof(std::uint64_t)] = {};
  hn::Store(outgoing, kBytes, o);
  hn::Store(incoming, kBytes, n);
  hn::Store(result, kBytes, results);
  hn::StoreMaskBits(kBytes, doubtful, bits);
  std::uint64_t left;
  std::memcpy(&left, bits, sizeof left);
  for (; left != 0; left &= left - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(left));
    results[i] = mixed(weights, o[i], n[i]);
  }
  return hn::Load(kBytes, results);
}

/// How the vectors of a row are stored: past the caches, if nobody reads the row soon and it begins
/// at a vector's boundary.
class Output {
 public:
  Output(std::uint8_t* output, bool streams) : output_(output), streams_(streams) {}
  void store(std::size_t place, ByteVector vector) const {
    if (streams_)
      hn::Stream(vector, kBytes, output_ + place);
    else
      hn::StoreU(vector, kBytes, output_ + place);
  }

 private:
  std::uint8_t* output_;
  bool streams_;
};

/// Whether rows may be stored past the caches: aligned vectors must hold whole parts, and bytes
/// written twice must not be read in between.
bool mayStream(const std::uint8_t* outgoing, const std::uint8_t* incoming,
               const std::uint8_t* output, std::size_t partBytes) {
  return output != outgoing && output != incoming &&
         reinterpret_cast<std::uintptr_t>(output) % partBytes == 0;
}

/// Calls `vector(place, output)` for every vector of `bytes` bytes, and returns where the rest
/// begins. A row stored past the caches begins with a vector that reaches past the first boundary.
template <class Vector>
std::size_t forVectors(std::uint8_t* output, std::size_t bytes, bool streams, Vector vector) {
  constexpr std::size_t kStep = hn::MaxLanes(kBytes);
  std::size_t i = 0;
  if (bytes < kStep)
    return i;
  if (streams) {
    vector(i, Output(output, false));
    i = kStep - reinterpret_cast<std::uintptr_t>(output) % kStep;
  }
  const Output target(output, streams);
  for (; i + kStep <= bytes; i += kStep)
    vector(i, target);
  return i;
}

/// Bytes as they are.
struct WholeBytes {
  static constexpr std::size_t kPartBytes = 1;
  static ByteVector load(const std::uint8_t* bytes) { return hn::LoadU(kBytes, bytes); }
  static ByteVector stored(ByteVector bytes) { return bytes; }
  static constexpr auto mixRest = [](const ByteMix& mix, const std::uint8_t* outgoing,
                                     const std::uint8_t* incoming, std::uint8_t* output,
                                     std::size_t count) {
    plainMixRow(PartKind::kByte)(mix.weights, outgoing, incoming, output, count);
  };
};

/// The top eight bits of the three samples of a v210 word, in its lower bytes. The fourth byte is
/// 0, which mixes to 0.
struct V210Tops {
  static constexpr std::size_t kPartBytes = 4;
  using Longs = hn::ScalableTag<std::uint32_t>;
  static ByteVector load(const std::uint8_t* bytes) {
    const Longs longs;
    const auto word = hn::BitCast(longs, hn::LoadU(kBytes, bytes));
    const auto low = hn::And(hn::ShiftRight<2>(word), hn::Set(longs, 0xFF));
    const auto two = hn::OrAnd(low, hn::ShiftRight<4>(word), hn::Set(longs, 0xFF00));
    return hn::BitCast(kBytes, hn::OrAnd(two, hn::ShiftRight<6>(word), hn::Set(longs, 0xFF0000)));
  }
  static ByteVector stored(ByteVector bytes) {
    const Longs longs;
    const auto tops = hn::BitCast(longs, bytes);
    const auto low = hn::And(hn::ShiftLeft<2>(tops), hn::Set(longs, 0x3FC));
    const auto two = hn::OrAnd(low, hn::ShiftLeft<4>(tops), hn::Set(longs, 0xFF000));
    return hn::BitCast(kBytes, hn::OrAnd(two, hn::ShiftLeft<6>(tops), hn::Set(longs, 0x3FC00000)));
  }
  static constexpr auto mixRest = mixV210Plainly;
};

template <class Form, bool rounds, bool corrects>
void mixBytesSo(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count) {
  const auto weight = hn::Set(kWords, static_cast<std::uint16_t>(mix.weight));
  const bool late = mix.weight >= 32768;
  const Membership outgoingOneLess(mix.outgoingOneLess), incomingOneLess(mix.incomingOneLess);
  const auto mixVector = [&](std::size_t place, const Output& target) HWY_ATTR {
    const auto o = Form::load(outgoing + place), n = Form::load(incoming + place);
    const auto start = late ? n : o;
    const auto even = mixHalf<rounds>(evenBytes(o), evenBytes(n), evenBytes(start), weight);
    const auto odd = mixHalf<rounds>(oddBytes(o), oddBytes(n), oddBytes(start), weight);
    auto result = joined(even.result, odd.result);
    if constexpr (corrects) {
      const auto whole = rounds ? joined(hn::And(even.whole, hn::Set(kWords, 0xFF)), odd.whole)
                                : hn::VecFromMask(kBytes, hn::Eq(o, n));
      const auto possible = hn::And(hn::Ne(outgoingOneLess(o), hn::Zero(kBytes)),
                                    hn::Ne(incomingOneLess(n), hn::Zero(kBytes)));
      const auto doubtful = hn::And(possible, hn::MaskFromVec(whole));
      if (!hn::AllFalse(kBytes, doubtful))
        result = decide(mix.weights, o, n, doubtful, result);
    }
    target.store(place, Form::stored(result));
  };
  const bool streams = mix.streams && mayStream(outgoing, incoming, output, Form::kPartBytes);
  const std::size_t done = forVectors(output, count, streams, mixVector);
  Form::mixRest(mix, outgoing + done, incoming + done, output + done, count - done);
}

template <class Form>
void mixBytes(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  using Mix = decltype(MixKernels::bytes);
  constexpr Mix kWays[2][2] = {{mixBytesSo<Form, false, false>, mixBytesSo<Form, false, true>},
                               {mixBytesSo<Form, true, false>, mixBytesSo<Form, true, true>}};
  kWays[mix.rounds ? 1 : 0][mix.corrects() ? 1 : 0](mix, outgoing, incoming, output, count);
}

// --- words -----------------------------------------------------------------------------------

/// A sum of words, and whether it overflowed.
struct Sum {
  WordVector low;
  WordVector carry;  ///< -1 or 0
};
Sum add(WordVector a, WordVector b) {
  const auto low = hn::Add(a, b);
  return {low, hn::VecFromMask(kWords, hn::Lt(low, a))};
}

ByteVector mixInDoubles(const MixWeights& weights, WordVector outgoing, WordVector incoming) {
  constexpr hn::ScalableTag<double> kDoubles;
  constexpr hn::Rebind<std::int32_t, hn::ScalableTag<double> > kIntegers;
  constexpr hn::Rebind<std::uint16_t, hn::ScalableTag<double> > kFewWords;
  constexpr std::size_t kCount = hn::MaxLanes(kWords);
  HWY_ALIGN std::uint16_t o[kCount], n[kCount], results[kCount];
  hn::Store(outgoing, kWords, o);
  hn::Store(incoming, kWords, n);
  const auto beta = hn::Set(kDoubles, weights.outgoing);
  const auto alpha = hn::Set(kDoubles, weights.incoming);
  const auto inDoubles = [&](const std::uint16_t* words) HWY_ATTR {
    return hn::PromoteTo(kDoubles, hn::PromoteTo(kIntegers, hn::Load(kFewWords, words)));
  };
  for (std::size_t i = 0; i < kCount; i += hn::Lanes(kDoubles)) {
    const auto sum = hn::Add(hn::Mul(inDoubles(o + i), beta), hn::Mul(inDoubles(n + i), alpha));
    hn::Store(hn::DemoteTo(kFewWords, hn::DemoteTo(kIntegers, sum)), kFewWords, results + i);
  }
  return hn::BitCast(kBytes, hn::Load(kWords, results));
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
  const auto mixVector = [&](std::size_t place, const Output& target) HWY_ATTR {
    const auto o = hn::BitCast(kWords, hn::LoadU(kBytes, outgoing + place));
    const auto n = hn::BitCast(kWords, hn::LoadU(kBytes, incoming + place));
    const Sum high = add(hn::Mul(o, restHigh), hn::Mul(n, weightHigh));
    auto result =
        hn::Sub(hn::Add(hn::MulHigh(o, restHigh), hn::MulHigh(n, weightHigh)), high.carry);
    if constexpr (!exact) {
      // The low halves of the weights have the sum 65536, so this sum does not overflow.
      const auto low = hn::Add(hn::MulHigh(o, restLow), hn::MulHigh(n, weightLow));
      const Sum fraction = add(high.low, low);
      result = hn::Sub(result, fraction.carry);
      const auto doubtful = hn::Lt(hn::Add(fraction.low, hn::Set(kWords, kWordBelow)),
                                   hn::Set(kWords, kWordBelow + kWordAbove + 1));
      if (!hn::AllFalse(kWords, doubtful))
        return target.store(place, mixInDoubles(mix.weights, o, n));
    }
    target.store(place, hn::BitCast(kBytes, result));
  };
  const bool streams = mix.streams && mayStream(outgoing, incoming, output, 2);
  const std::size_t done = forVectors(output, count * 2, streams, mixVector);
  plainMixRow(PartKind::kWord)(mix.weights, outgoing + done, incoming + done, output + done,
                               count - done / 2);
}

void mixWords(const WordMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
              std::uint8_t* output, std::size_t count) {
  (mix.exact ? mixWordsSo<true> : mixWordsSo<false>)(mix, outgoing, incoming, output, count);
}

constexpr MixKernels kKernels = {mixBytes<WholeBytes>, mixWords, mixBytes<V210Tops>};

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
