// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of the multiplexed display with vectors: up to sixteen pixels at a time, from the first
// aligned output address on.
#include "mux_rows.h"
#include <nkdraw/simd/vector_targets.h>

#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "nkdraw/compositor/mux_rows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

constexpr MuxForms kKernels = {kPlainMuxRows, kPlainMuxRows};

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Pixels as words.
using Words = hn::CappedTag<std::uint32_t, Runs::kPixelsAtOnce>;
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

/// Stores whole vectors through the caches, at any address.
struct Kept {
  static constexpr bool kAnywhere = true;
  HWY_INLINE static void store(Vector pixels, std::uint8_t* at) { storePixels(pixels, at); }
};

/// Stores past the caches, so that overwritten memory need not be read; needs aligned addresses.
struct Streamed {
  static constexpr bool kAnywhere = false;
  HWY_INLINE static void store(Vector pixels, std::uint8_t* at) {
    hn::Stream(pixels, Words(), reinterpret_cast<std::uint32_t*>(at));
  }
};

/// Copies the lowest byte of every word, whose other bytes are 0, into all its four bytes.
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

/// The sum of two halved bytes never carries into the next byte.
HWY_INLINE Vector mixed(const Average& /*rule*/, Vector first, Vector second) {
  const Vector kept = hn::Set(Words(), 0x7F7F7F7F);
  return hn::Add(hn::And(hn::ShiftRight<1>(first), kept), hn::And(hn::ShiftRight<1>(second), kept));
}

/// Bytes 0 and 2, or bytes 1 and 3, of every pixel in its two 16-bit lanes.
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

/// The result is in the low lane of every pixel; the high lane is ignored.
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

/// A rule that is the same for every column.
template <class Rule>
struct Everywhere {
  Rule rule;

  [[nodiscard]] HWY_INLINE Vector operator()(Vector first, Vector second) const {
    return mixed(rule, first, second);
  }
  HWY_INLINE void begin(std::size_t /*pixels*/) {}
  HWY_INLINE void pass() {}
};

/// Follows the runs from the start of the row.
class Alternate {
 public:
  HWY_INLINE explicit Alternate(const Runs& runs)
      : fromFirst_(runs.fromFirst.data()),
        period_(runs.period()),
        step_(hn::Lanes(Words()) % period_) {}

  [[nodiscard]] HWY_INLINE Vector operator()(Vector first, Vector second) const {
    return hn::IfVecThenElse(hn::LoadU(Words(), fromFirst_ + at_), first, second);
  }
  HWY_INLINE void begin(std::size_t pixels) { at_ = pixels % period_; }
  HWY_INLINE void pass() {
    at_ += step_;
    if (at_ >= period_)
      at_ -= period_;
  }

 private:
  const std::uint32_t* fromFirst_;
  std::size_t period_;
  std::size_t step_;  ///< of a vector, less whole periods
  std::size_t at_ = 0;
};

/// Draws fewer pixels than a vector has, through a buffer.
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

/// Whether any pixel of a row is at an address that vectors are aligned to.
HWY_INLINE bool canAlign(const std::uint8_t* row) {
  return reinterpret_cast<std::uintptr_t>(row) % kMuxPixelBytes == 0;
}

/// Pixels before the first aligned address; if there is no such address, any small number.
HWY_INLINE std::size_t pixelsToAligned(const std::uint8_t* row) {
  const std::size_t vectorBytes = hn::Lanes(Words()) * kMuxPixelBytes;
  return (0 - reinterpret_cast<std::uintptr_t>(row)) % vectorBytes / kMuxPixelBytes;
}

template <class Store, bool firstAlone, class Mix>
HWY_INLINE void mixPixels(Mix mix, const std::uint8_t* first, const std::uint8_t* second,
                          std::uint8_t* output, std::size_t width) {
  const std::size_t lanes = hn::Lanes(Words());
  const std::size_t head = std::min(width, pixelsToAligned(output));
  if (head != 0) {
    mixPart<firstAlone>(mix, first, second, output, head);
    mix.begin(head);
  }
  std::size_t x = head;
  for (; width - x >= lanes; x += lanes) {
    const std::size_t at = x * kMuxPixelBytes;
    const Vector f = loadPixels(first + at);
    Store::store(mix(f, firstAlone ? f : loadPixels(second + at)), output + at);
    mix.pass();
  }
  if (x < width) {
    const std::size_t at = x * kMuxPixelBytes;
    mixPart<firstAlone>(mix, first + at, second + at, output + at, width - x);
  }
}

template <class Store, class Rule>
void mixRow(Rule rule, const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* output,
            std::size_t width) {
  if (!Store::kAnywhere && !canAlign(output))
    return mixRow<Kept>(rule, first, second, output, width);
  mixPixels<Store, kReadsFirstAlone<Rule> >(Everywhere<Rule>{rule}, first, second, output, width);
}

template <class Store>
void alternateRow(const Runs& runs, const std::uint8_t* first, const std::uint8_t* second,
                  std::uint8_t* output, std::size_t width) {
  if (!Store::kAnywhere && !canAlign(output))
    return alternateRow<Kept>(runs, first, second, output, width);
  mixPixels<Store, false>(Alternate(runs), first, second, output, width);
}

/// Orders of a source's pixels. Each has a vector form, which takes the pixels from the i-th on and
/// needs one pixel more after them, and a plain form.
struct EveryOther {
  const std::uint8_t* source;

  [[nodiscard]] HWY_INLINE Vector vectorAt(std::size_t i) const {
    const std::uint8_t* const from = source + 2 * i * kMuxPixelBytes;
    const std::size_t bytes = hn::Lanes(Words()) * kMuxPixelBytes;
    return hn::ConcatEven(Words(), loadPixels(from + bytes), loadPixels(from));
  }
  void take(std::size_t i, std::uint8_t* output, std::size_t count) const {
    plain::takeEveryOther(source + 2 * i * kMuxPixelBytes, output, count);
  }
};

struct Backwards {
  const std::uint8_t* source;

  [[nodiscard]] HWY_INLINE Vector vectorAt(std::size_t i) const {
    const std::size_t last = i + hn::Lanes(Words()) - 1;
    return hn::Reverse(Words(), loadPixels(source - last * kMuxPixelBytes));
  }
  void take(std::size_t i, std::uint8_t* output, std::size_t count) const {
    plain::takeBackwards(source - i * kMuxPixelBytes, output, count);
  }
};

template <class Store, class Order>
void walk(const std::uint8_t* source, std::uint8_t* output, std::size_t count) {
  if (!Store::kAnywhere && !canAlign(output))
    return walk<Kept, Order>(source, output, count);
  const Order order{source};
  const std::size_t lanes = hn::Lanes(Words());
  std::size_t i = std::min(count, pixelsToAligned(output));
  order.take(0, output, i);
  for (; count - i > lanes; i += lanes)
    Store::store(order.vectorAt(i), output + i * kMuxPixelBytes);
  order.take(i, output + i * kMuxPixelBytes, count - i);
}

template <class Store>
constexpr MuxRows kRows = {
    mixRow<Store, ChannelMix>, mixRow<Store, Average>, mixRow<Store, Difference>,
    mixRow<Store, Compare>,    mixRow<Store, Fade>,    mixRow<Store, GreyByte>,
    mixRow<Store, GreyMean>,   alternateRow<Store>,    walk<Store, EveryOther>,
    walk<Store, Backwards>,
};

constexpr MuxForms kKernels = {kRows<Kept>, kRows<Streamed>};

#endif

}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<MuxForms> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                          HWY_CHOOSE_FALLBACK(kKernels)};

}  // namespace

const MuxForms& muxFormsFor(std::int64_t targets) {
  return bestKernels(kByTarget, targets);
}

const MuxForms& muxForms() {
  static const MuxForms& best = muxFormsFor(runnableTargets());
  return best;
}

}  // namespace nkdraw
#endif
