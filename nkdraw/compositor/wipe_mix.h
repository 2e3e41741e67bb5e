// SPDX-License-Identifier: BSD-2-Clause
//
// The arithmetic of a cross-fade, one row at a time.
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

/// The result for bytes and words: the low bits of the truncated number. It is not rounded and not
/// clamped: two equal parts may give one less, and progress beyond the range wraps, however far.
template <class Part>
[[nodiscard]] inline Part mixed(const MixWeights& weights, Part outgoing, Part incoming) {
  return static_cast<Part>(
      truncateToLow32(outgoing * weights.outgoing + incoming * weights.incoming));
}

/// Mixes `count` parts of two rows. `output` may be one of the inputs. Needs no alignment.
using MixRow = void (*)(const MixWeights& weights, const std::uint8_t* outgoing,
                        const std::uint8_t* incoming, std::uint8_t* output, std::size_t count);

/// The plain form for parts of `kind`, which defines the result; null if there is no such kind.
[[nodiscard]] MixRow plainMixRow(PartKind kind);

/// A set of bytes: bit v / 16 of row v % 16 stands for v.
class ByteSet {
 public:
  void insert(std::uint8_t value) {
    rows_[value % 16] = static_cast<std::uint16_t>(rows_[value % 16] | 1U << (value / 16));
  }
  [[nodiscard]] bool empty() const { return rows_ == std::array<std::uint16_t, 16>{}; }
  /// The members below 128, or those from 128 on, as bit v / 16 % 8 of row v % 16.
  [[nodiscard]] std::array<std::uint8_t, 16> half(bool upper) const {
    std::array<std::uint8_t, 16> rows{};
    for (std::size_t i = 0; i < rows.size(); ++i)
      rows[i] = static_cast<std::uint8_t>(upper ? rows_[i] >> 8 : rows_[i]);
    return rows;
  }

 private:
  std::array<std::uint16_t, 16> rows_{};
};

/// A cross-fade of bytes in integers. Let d = incoming - outgoing, with progress p of range R. In
/// real numbers the result is outgoing + floor(d * p / R), but doubles may fall just short of a
/// whole number and give one less. A pair is `whole` if d * p / R is a whole number.
///
/// For all other pairs d * weight / 65536 has the same floor: fractions with divisors up to 255 are
/// more than 1/65536 apart, so a multiple of 1/65536 can stand for p / R.
struct ByteMix {
  MixWeights weights;
  std::uint32_t weight = 0;  ///< in 1/65536
  /// Pairs of unequal parts may be whole. These, and no others, lie within 128 of a multiple of
  /// 65536.
  bool rounds = false;
  bool streams = false;  ///< past the caches
  /// If a whole pair gives one less, its outgoing part is in the first set and its incoming part in
  /// the second.
  ByteSet outgoingOneLess{}, incomingOneLess{};

  [[nodiscard]] bool corrects() const { return !outgoingOneLess.empty(); }
};

/// A cross-fade of words in integers: outgoing * (2^32 - weight) + incoming * weight, cut to
/// sixteen fractional bits. In units of 1/65536 it is less than `kWordBelow` below the real result,
/// and at most `kWordAbove` above it. If a whole number may lie between, doubles decide.
struct WordMix {
  MixWeights weights;
  std::uint32_t weight = 0;  ///< in 2^-32
  bool exact = false;        ///< weight and result are exact; the weight has sixteen bits
  bool streams = false;      ///< past the caches
};
inline constexpr std::uint16_t kWordBelow = 3, kWordAbove = 1;

/// Ways to mix rows that equal the plain form for progress strictly inside the range.
struct MixKernels {
  void (*bytes)(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count);
  void (*words)(const WordMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count);
  /// Bytes of v210 words, whose samples are mixed in their top eight bits; the others become 0.
  void (*v210)(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
               std::uint8_t* output, std::size_t count);
};

/// The plain form of MixKernels::v210, which defines its result.
void mixV210Plainly(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                    std::uint8_t* output, std::size_t count);

/// The fastest of `targets`, Highway's bits.
[[nodiscard]] const MixKernels& mixKernels(std::int64_t targets);

/// Progress strictly inside the range.
[[nodiscard]] ByteMix byteMix(std::uint32_t position, std::uint32_t range);
[[nodiscard]] WordMix wordMix(std::uint32_t position, std::uint32_t range);

/// Mixes the rows of one cross-fade in the fastest way available.
class RowMixer {
 public:
  /// `parts` is the total number to be mixed. A few are not worth the preparation; many are better
  /// stored past the caches, unless they are `readSoon`.
  RowMixer(PartKind kind, std::uint32_t position, std::uint32_t range, std::uint64_t parts,
           bool readSoon = false);

  /// As MixRow.
  void operator()(const std::uint8_t* outgoing, const std::uint8_t* incoming, std::uint8_t* output,
                  std::size_t count) const;
  /// Mixes v210 rows of `bytes` bytes in the top eight bits of their samples. False, with nothing
  /// done, if that takes samples in bytes.
  [[nodiscard]] bool mixV210(const std::uint8_t* outgoing, const std::uint8_t* incoming,
                             std::uint8_t* output, std::size_t bytes) const;

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
