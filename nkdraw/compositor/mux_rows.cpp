// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of the multiplexed display as vectors: at most sixteen pixels at a time, from the first
// aligned output address on.
#include "mux_rows.h"
#include "vector_targets.h"

#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/compositor/mux_rows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

constexpr MuxRows kKernels = kPlainMuxRows;

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Pixels as words.
using Words = hn::CappedTag<std::uint32_t, 16>;
using Halves = hn::Repartition<std::uint16_t, Words>;
using SignedHalves = hn::Repartition<std::int16_t, Words>;
using Bytes = hn::Repartition<std::uint8_t, Words>;
using Vector = hn::Vec<Words>;

HWY_INLINE Vector loadPixels(const std::uint8_t* at) {
  return hn::BitCast(Words(), hn::LoadU(Bytes(), at));
}
HWY_INLINE void storePixels(Vector pixels, std::uint8_t* at) {
  hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), at);
}

/// The lowest byte of every word in all four bytes of it; the others are 0.
HWY_INLINE Vector inAllBytes(Vector low) {
  const Vector two = hn::Or(low, hn::ShiftLeft<8>(low));
  return hn::Or(two, hn::ShiftLeft<16>(two));
}

HWY_INLINE Vector lowBytes(Vector words) {
  return hn::And(words, hn::Set(Words(), 0xFF));
}

HWY_INLINE Vector mixed(const ChannelMix& rule, Vector first, Vector second) {
  const Words d;
  return hn::Or(hn::And(first, hn::Set(d, rule.first)), hn::And(second, hn::Set(d, rule.second)));
}

/// No sum of two halved bytes carries into the next byte.
HWY_INLINE Vector mixed(const Average& /*rule*/, Vector first, Vector second) {
  const Vector kept = hn::Set(Words(), 0x7F7F7F7F);
  return hn::Add(hn::And(hn::ShiftRight<1>(first), kept), hn::And(hn::ShiftRight<1>(second), kept));
}

/// Bytes 0 and 2 of every pixel in its two 16-bit lanes; bytes 1 and 3.
HWY_INLINE hn::Vec<Halves> evenBytes(Vector pixels) {
  const Halves d;
  return hn::And(hn::BitCast(d, pixels), hn::Set(d, 0xFF));
}
HWY_INLINE hn::Vec<Halves> oddBytes(Vector pixels) {
  return hn::ShiftRight<8>(hn::BitCast(Halves(), pixels));
}

/// (a - b) >> 1, of lanes that hold bytes.
HWY_INLINE hn::Vec<SignedHalves> halvedDifference(hn::Vec<Halves> a, hn::Vec<Halves> b) {
  return hn::ShiftRight<1>(hn::BitCast(SignedHalves(), hn::Sub(a, b)));
}

/// In the low lane of every pixel; what the high lane holds is dropped.
HWY_INLINE Vector mixed(const Difference& rule, Vector first, Vector second) {
  const Words d;
  const SignedHalves signedHalves;
  const auto even = halvedDifference(evenBytes(first), evenBytes(second));
  const auto odd = halvedDifference(oddBytes(first), oddBytes(second));
  const auto byte2 = hn::BitCast(signedHalves, hn::ShiftRight<16>(hn::BitCast(d, even)));
  const auto largest = hn::Max(hn::Max(even, odd), byte2);
  const auto amplified = hn::Mul(largest, hn::Set(signedHalves, rule.gain));
  const auto clamped =
      hn::Min(hn::Max(amplified, hn::Set(signedHalves, -127)), hn::Set(signedHalves, 127));
  const auto grey = hn::Add(clamped, hn::Set(signedHalves, 128));
  return hn::And(inAllBytes(lowBytes(hn::BitCast(d, grey))), hn::Set(d, 0x00FFFFFF));
}

HWY_INLINE Vector mixed(const Compare& rule, Vector first, Vector second) {
  const Words d;
  const Bytes bytes;
  const auto f = hn::BitCast(bytes, first), s = hn::BitCast(bytes, second);
  const auto distance = hn::Or(hn::SaturatedSub(f, s), hn::SaturatedSub(s, f));
  const auto limit = static_cast<std::uint8_t>(std::min(rule.threshold, 255U));
  const auto excess = hn::BitCast(d, hn::SaturatedSub(distance, hn::Set(bytes, limit)));
  const Vector other = hn::Set(d, rule.other * 0x01010101U);
  return hn::IfThenElse(hn::Eq(excess, hn::Zero(d)), second, other);
}

/// Bits 8 to 15 of s * second + f * first, of lanes that hold bytes, in the high half of the lane.
HWY_INLINE hn::Vec<Halves> weighted(const Fade& rule, hn::Vec<Halves> f, hn::Vec<Halves> s) {
  const Halves d;
  return hn::Add(hn::Mul(f, hn::Set(d, static_cast<std::uint16_t>(rule.first))),
                 hn::Mul(s, hn::Set(d, static_cast<std::uint16_t>(rule.second))));
}

HWY_INLINE Vector mixed(const Fade& rule, Vector first, Vector second) {
  const Halves d;
  const auto even = weighted(rule, evenBytes(first), evenBytes(second));
  const auto odd = weighted(rule, oddBytes(first), oddBytes(second));
  return hn::BitCast(Words(), hn::Or(hn::ShiftRight<8>(even), hn::And(odd, hn::Set(d, 0xFF00))));
}

HWY_INLINE Vector mixed(const GreyByte& rule, Vector first, Vector /*second*/) {
  return inAllBytes(lowBytes(hn::ShiftRightSame(first, 8 * rule.place)));
}

/// x / 3 is (x * 0xAAAB) >> 17 for every x of 16 bits.
HWY_INLINE Vector mixed(const GreyMean& /*rule*/, Vector first, Vector /*second*/) {
  const Words d;
  const Halves halves;
  const auto even = evenBytes(first);
  const auto byte2 = hn::BitCast(halves, hn::ShiftRight<16>(hn::BitCast(d, even)));
  const auto sum = hn::Add(hn::Add(even, oddBytes(first)), byte2);
  const auto mean = hn::ShiftRight<1>(hn::MulHigh(sum, hn::Set(halves, 0xAAAB)));
  return inAllBytes(lowBytes(hn::BitCast(d, mean)));
}

/// A rule that is the same in every column.
template <class Rule>
struct Everywhere {
  Rule rule;

  [[nodiscard]] HWY_INLINE Vector operator()(Vector first, Vector second) const {
    return mixed(rule, first, second);
  }
  HWY_INLINE void pass(std::size_t /*pixels*/) {}
};

/// Which frame each pixel of a period shows, with as many pixels of the next as a vector may reach.
class RunPattern {
 public:
  HWY_INLINE explicit RunPattern(Runs runs) : period_(2 * runs.run) {
    for (std::size_t i = 0; i < period_ + hn::Lanes(Words()); ++i)
      fromFirst_[i] = i / runs.run % 2 == 0 ? ~0U : 0;
  }
  [[nodiscard]] HWY_INLINE Vector operator()(Vector first, Vector second) const {
    return hn::IfVecThenElse(hn::LoadU(Words(), fromFirst_.data() + at_), first, second);
  }
  HWY_INLINE void pass(std::size_t pixels) { at_ = (at_ + pixels) % period_; }

 private:
  std::array<std::uint32_t, 2 * Runs::kLongest + hn::MaxLanes(Words())> fromFirst_;
  std::size_t period_;
  std::size_t at_ = 0;
};

/// Fewer pixels than a vector has, by way of memory of their own.
template <bool firstAlone, class Mix>
HWY_INLINE void mixPart(const Mix& mix, const std::uint8_t* first, const std::uint8_t* second,
                        std::uint8_t* output, std::size_t pixels) {
  alignas(64) std::array<std::uint8_t, hn::MaxLanes(Bytes())> f{}, s{};
  const std::size_t bytes = pixels * kMuxPixelBytes;
  std::memcpy(f.data(), first, bytes);
  if constexpr (!firstAlone)
    std::memcpy(s.data(), second, bytes);
  storePixels(mix(loadPixels(f.data()), loadPixels(s.data())), f.data());
  std::memcpy(output, f.data(), bytes);
}

/// Pixels before the first output address that a vector is aligned at; 0 where there is none.
HWY_INLINE std::size_t pixelsToAligned(const std::uint8_t* output, std::size_t vectorBytes) {
  const std::size_t bytes = (0 - reinterpret_cast<std::uintptr_t>(output)) % vectorBytes;
  return bytes % kMuxPixelBytes == 0 ? bytes / kMuxPixelBytes : 0;
}

template <bool firstAlone, class Mix>
HWY_INLINE void mixPixels(Mix mix, const std::uint8_t* first, const std::uint8_t* second,
                          std::uint8_t* output, std::size_t width) {
  const std::size_t lanes = hn::Lanes(Words());
  const std::size_t head = std::min(width, pixelsToAligned(output, lanes * kMuxPixelBytes));
  if (head != 0) {
    mixPart<firstAlone>(mix, first, second, output, head);
    mix.pass(head);
  }
  std::size_t x = head;
  for (; width - x >= lanes; x += lanes) {
    const std::size_t at = x * kMuxPixelBytes;
    const Vector f = loadPixels(first + at);
    storePixels(mix(f, firstAlone ? f : loadPixels(second + at)), output + at);
    mix.pass(lanes);
  }
  if (x < width) {
    const std::size_t at = x * kMuxPixelBytes;
    mixPart<firstAlone>(mix, first + at, second + at, output + at, width - x);
  }
}

template <class Rule>
void mixRow(Rule rule, const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* output,
            std::size_t width) {
  mixPixels<kReadsFirstAlone<Rule> >(Everywhere<Rule>{rule}, first, second, output, width);
}

void alternateRow(Runs runs, const std::uint8_t* first, const std::uint8_t* second,
                  std::uint8_t* output, std::size_t width) {
  mixPixels<false>(RunPattern(runs), first, second, output, width);
}

/// The source's last pixel is the last one taken: a vector is read only where two more are left.
void takeEveryOther(const std::uint8_t* source, std::uint8_t* output, std::size_t count) {
  const std::size_t lanes = hn::Lanes(Words()), bytes = lanes * kMuxPixelBytes;
  std::size_t i = 0;
  for (; count - i > lanes; i += lanes) {
    const std::uint8_t* const from = source + 2 * i * kMuxPixelBytes;
    storePixels(hn::ConcatEven(Words(), loadPixels(from + bytes), loadPixels(from)),
                output + i * kMuxPixelBytes);
  }
  plain::takeEveryOther(source + 2 * i * kMuxPixelBytes, output + i * kMuxPixelBytes, count - i);
}

void takeBackwards(const std::uint8_t* source, std::uint8_t* output, std::size_t count) {
  const std::size_t lanes = hn::Lanes(Words());
  std::size_t i = 0;
  for (; count - i >= lanes; i += lanes)
    storePixels(hn::Reverse(Words(), loadPixels(source - (i + lanes - 1) * kMuxPixelBytes)),
                output + i * kMuxPixelBytes);
  plain::takeBackwards(source - i * kMuxPixelBytes, output + i * kMuxPixelBytes, count - i);
}

constexpr MuxRows kKernels = {
    mixRow<ChannelMix>, mixRow<Average>,  mixRow<Difference>, mixRow<Compare>, mixRow<Fade>,
    mixRow<GreyByte>,   mixRow<GreyMean>, alternateRow,       takeEveryOther,  takeBackwards,
};

#endif

}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<MuxRows> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                         HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const MuxRows& muxRowsFor(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const MuxRows& muxRows() {
  static const MuxRows& best = muxRowsFor(runnableTargets());
  return best;
}

}  // namespace nkdraw
#endif
