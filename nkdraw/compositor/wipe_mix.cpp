// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade in its plain form: one part after the other, in doubles.
#include "wipe_mix.h"

#include <nkdraw/surface/truncate.h>

#include <cstring>
#include <type_traits>

namespace nkdraw {
namespace {

/// Truncated, not rounded and not clamped: equal parts may come out one lower, and progress beyond
/// the range wraps.
template <class Part>
Part mixed(const MixWeights& weights, Part outgoing, Part incoming) {
  return static_cast<Part>(
      truncateToInt32(outgoing * weights.outgoing + incoming * weights.incoming));
}

/// The incoming part counts as an integer, so that values below 1.0 add nothing; that is meant.
template <>
float mixed(const MixWeights& weights, float outgoing, float incoming) {
  const auto whole = static_cast<double>(truncateToInt32(static_cast<double>(incoming)));
  return static_cast<float>(whole * weights.incoming +
                            static_cast<double>(outgoing) * weights.outgoing);
}

template <class Part>
void mixRow(const MixWeights& weights, const std::uint8_t* outgoing, const std::uint8_t* incoming,
            std::uint8_t* output, std::size_t count) {
  for (std::size_t i = 0; i < count * sizeof(Part); i += sizeof(Part)) {
    Part o, n;
    std::memcpy(&o, outgoing + i, sizeof o);
    std::memcpy(&n, incoming + i, sizeof n);
    const Part result = mixed(weights, o, n);
    std::memcpy(output + i, &result, sizeof result);
  }
}

/// By PartKind.
constexpr MixRow kPlainRows[] = {nullptr, mixRow<std::uint8_t>, mixRow<std::uint16_t>,
                                 mixRow<float>};

}  // namespace

MixRow plainMixRow(PartKind kind) {
  return kPlainRows[static_cast<std::size_t>(kind)];
}

}  // namespace nkdraw
