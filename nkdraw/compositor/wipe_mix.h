// SPDX-License-Identifier: BSD-2-Clause
//
// The arithmetic of a cross-fade, a row at a time.
#pragma once

#include "wipe_frames.h"

#include <nkdraw/surface/truncate.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>

namespace nkdraw {

/// How far a cross-fade has gone. An empty range makes both not-a-number or infinite.
struct MixWeights {
  MixWeights(std::uint32_t position, std::uint32_t range)
      : incoming(static_cast<double>(position) / static_cast<double>(range)),
        outgoing(1.0 - incoming) {}

  double incoming;
  double outgoing;
};

/// What the result is, of bytes and words: the low bits of the truncated number. Not rounded and
/// not clamped: equal parts may come out one lower, and progress beyond the range wraps, however
/// far.
template <class Part>
[[nodiscard]] inline Part mixed(const MixWeights& weights, Part outgoing, Part incoming) {
  return static_cast<Part>(
      truncateToLow32(outgoing * weights.outgoing + incoming * weights.incoming));
}

/// Mixes `count` parts of two rows. `output` may be one of the inputs. No alignment is asked for.
using MixRow = void (*)(const MixWeights& weights, const std::uint8_t* outgoing,
                        const std::uint8_t* incoming, std::uint8_t* output, std::size_t count);

/// The plain form, which states the result, for parts of `kind`; null for no kind.
[[nodiscard]] MixRow plainMixRow(PartKind kind);

/// A set of bytes: bit v / 16 of row v % 16 stands for v.
class ByteSet {
 public:
  void insert(std::uint8_t value) {
    rows_[value % 16] = static_cast<std::uint16_t>(rows_[value % 16] | 1U << (value / 16));
  }
  [[nodiscard]] bool empty() const { return rows_ == std::array<std::uint16_t, 16>{}; }
  /// The members below 128, or those from there on, as bit v / 16 % 8 of row v % 16.
  [[nodiscard]] std::array<std::uint8_t, 16> half(bool upper) const {
    std::array<std::uint8_t, 16> rows{};
    for (std::size_t i = 0; i < rows.size(); ++i)
      rows[i] = static_cast<std::uint8_t>(upper ? rows_[i] >> 8 : rows_[i]);
    return rows;
  }

 private:
  std::array<std::uint16_t, 16> rows_{};
};

/// A cross-fade of bytes in integers. With d = incoming - outgoing, progress p of range R, and all
/// in real numbers, the result is outgoing + floor(d * p / R), but that doubles may fall just short
/// of a whole number and give one less. A pair is `whole` when d * p / R is a whole number.
///
/// The floor is that of d * weight / 65536 for every d but those of whole pairs: fractions with
/// divisors up to 255 lie more than 1/65536 apart, so a multiple of 1/65536 has the same floors as
/// p / R.
struct ByteMix {
  MixWeights weights;
  std::uint32_t weight = 0;  ///< in 1/65536
  /// Pairs other than equal ones may be whole. These lie within 128 of a multiple of 65536, and no
  /// others do.
  bool rounds = false;
  bool streams = false;  ///< past the caches
  /// A whole pair that comes out one less has its outgoing part in the first and its incoming one
  /// in the second.
  ByteSet outgoingOneLess{}, incomingOneLess{};

  [[nodiscard]] bool corrects() const { return !outgoingOneLess.empty(); }
};

/// A cross-fade of words in integers: outgoing * (2^32 - weight) + incoming * weight, cut to
/// sixteen bits of fraction. That lies less than `kWordBelow` below the real result and at most
/// `kWordAbove` above it, in 1/65536; where a whole number may lie between, doubles decide.
struct WordMix {
  MixWeights weights;
  std::uint32_t weight = 0;  ///< in 2^-32
  bool exact = false;        ///< the weight is, and so is the result; it has sixteen bits
  bool streams = false;      ///< past the caches
};
inline constexpr std::uint16_t kWordBelow = 3, kWordAbove = 1;

/// Ways to mix rows that equal the plain form for progress inside the range, both ends left out.
struct MixKernels {
  void (*bytes)(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count);
  void (*words)(const WordMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count);
};

/// The fastest of `targets`, Highway's bits.
[[nodiscard]] const MixKernels& mixKernels(std::int64_t targets);

/// Progress inside the range, both ends left out.
[[nodiscard]] ByteMix byteMix(std::uint32_t position, std::uint32_t range);
[[nodiscard]] WordMix wordMix(std::uint32_t position, std::uint32_t range);

/// Mixes rows of one cross-fade by the fastest way that there is.
class RowMixer {
 public:
  /// `parts` are how many will be mixed in all: few are not worth the preparation, many are better
  /// stored past the caches, unless they are `readSoon`.
  RowMixer(PartKind kind, std::uint32_t position, std::uint32_t range, std::uint64_t parts,
           bool readSoon = false);

  /// As MixRow.
  void operator()(const std::uint8_t* outgoing, const std::uint8_t* incoming, std::uint8_t* output,
                  std::size_t count) const;

 private:
  struct Plain {
    MixWeights weights;
    MixRow row;
  };
  struct Copy {
    bool incoming;
    std::uint8_t partBytes;
  };
  using Way = std::variant<Plain, Copy, ByteMix, WordMix>;
  static Way wayOf(PartKind kind, std::uint32_t position, std::uint32_t range, std::uint64_t parts,
                   bool readSoon);

  Way way_;
};

}  // namespace nkdraw
