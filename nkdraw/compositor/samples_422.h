// SPDX-License-Identifier: BSD-2-Clause
//
// Packs and expands 4:2:2 one row at a time. The expanded form has three bytes a pixel. A pair is
// two pixels: four bytes packed, six expanded.
#pragma once

#include <nkdraw/surface/v210_group.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// Where the bytes of a pair come from. When expanded, both pixels get both chroma samples; packing
/// takes them from the first pixel.
struct PairOrder {
  std::array<std::uint8_t, 6> expanded;  ///< the packed byte that each expanded one is
  std::array<std::uint8_t, 4> packed;    ///< the expanded byte that each packed one is
};

/// The first and the last byte are shared, the second is the first pixel's, the third the second
/// pixel's.
inline constexpr PairOrder kOuterShared = {{1, 0, 3, 2, 0, 3}, {1, 0, 3, 2}};

/// Cb, Y, Cr, Y: an expanded pixel is Y, Cb, Cr.
inline constexpr PairOrder kChromaFirst = {{1, 0, 2, 3, 0, 2}, {1, 0, 2, 3}};

inline constexpr std::size_t kPackedPair = 4, kExpandedPair = 6;

// A v210 group: its samples are in the order of kChromaFirst; the top eight bits of each are kept.
inline constexpr std::size_t kGroupBytes = v210::kGroupBytes, kGroupPixels = v210::kGroupPixels;
inline constexpr std::size_t kGroupSamples = sampleCount(v210::kFacts);

/// The top eight bits of the samples of a v210 word.
inline constexpr std::uint32_t kTopsOfWord = 0x3FCFF3FC;

/// Bytes past the samples of a row that the two v210 functions may read or write.
inline constexpr std::size_t kSampleSlack = 64;

/// Which samples of a v210 row the words of another take.
struct V210Move {
  unsigned rest = 0;       ///< samples of the first word to skip: 0 to 2
  bool byOne = false;      ///< luma comes from one pixel further on than chroma
  std::uint32_t mask = 0;  ///< the bits to keep of every word
};
/// Words past those of the output that a move may read.
inline constexpr std::size_t kMoveSlack = 2;

/// Functions on a run of pairs or groups. Source and target must not overlap. Only the bytes of
/// those pairs and groups are touched, except for the slack of `samples`.
struct Kernels422 {
  using Convert = void (*)(const std::uint8_t* source, std::uint8_t* target, std::size_t count);

  Convert expandOuterShared;  ///< pairs
  Convert expandChromaFirst;
  Convert packOuterShared;
  Convert packChromaFirst;
  Convert samplesOfV210;  ///< groups to twelve bytes each
  Convert v210OfSamples;
  void (*moveV210)(const V210Move& move, const std::uint8_t* group, std::uint8_t* moved,
                   std::size_t groups);  ///< reads kMoveSlack words more
  Convert topsOfV210;  ///< groups to groups, whose samples keep their top eight bits; no others
};

extern const Kernels422 kPlain422;

/// The fastest of `targets`, Highway's bits.
[[nodiscard]] const Kernels422& kernels422(std::int64_t targets);

/// The fastest that this machine runs.
[[nodiscard]] const Kernels422& bestKernels422();

}  // namespace nkdraw
