// SPDX-License-Identifier: BSD-2-Clause
//
// The arithmetic of a cross-fade, a row at a time.
#pragma once

#include "wipe_frames.h"

#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// How far a cross-fade has gone. An empty range makes both not-a-number or infinite.
struct MixWeights {
  MixWeights(std::uint32_t position, std::uint32_t range)
      : incoming(static_cast<double>(position) / static_cast<double>(range)),
        outgoing(1.0 - incoming) {}

  double incoming;
  double outgoing;
};

/// Mixes `count` parts of two rows. `output` may be one of the inputs. No alignment is asked for.
using MixRow = void (*)(const MixWeights& weights, const std::uint8_t* outgoing,
                        const std::uint8_t* incoming, std::uint8_t* output, std::size_t count);

/// The plain form, which states the result, for parts of `kind`; null for no kind.
[[nodiscard]] MixRow plainMixRow(PartKind kind);

}  // namespace nkdraw
