// SPDX-License-Identifier: BSD-2-Clause
//
// The plain form of the cross-fade, one part after the other in doubles, and the choice of a faster
// form.
#include "wipe_mix.h"
#include <nkdraw/simd/vector_targets.h>

#include <cstring>
#include <initializer_list>
#include <numeric>

namespace nkdraw {
namespace {

/// Deliberate: callers rely on the value. The incoming part counts as an integer, so values below
/// 1.0 add nothing.
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

constexpr std::uint32_t kOne = 65536;
/// With a larger divisor, a fraction of a difference of bytes is a whole number only for a
/// difference of 0.
constexpr std::uint32_t kLargestDifference = 255;

/// Whether, for every difference of bytes d other than 0, d * `weight` / 65536 has the floor of d *
/// position / range and is not itself a whole number.
bool hasTheFloors(std::uint32_t weight, std::uint64_t position, std::uint32_t range) {
  for (std::uint32_t d = 1; d <= kLargestDifference; ++d) {
    const std::uint32_t product = d * weight;
    if (product / kOne != d * position / range || product % kOne == 0)
      return false;
  }
  return true;
}

/// Checks every whole pair. The differences of these are multiples of `step`, and each step adds
/// `rise` to the result.
void findCorrections(ByteMix& mix, std::uint32_t step, std::uint32_t rise) {
  for (std::uint32_t o = 0; o <= kLargestDifference; ++o) {
    std::uint32_t whole = o - o / step * rise;
    for (std::uint32_t n = o % step; n <= kLargestDifference; n += step, whole += rise) {
      const auto outgoing = static_cast<std::uint8_t>(o), incoming = static_cast<std::uint8_t>(n);
      if (mixed(mix.weights, outgoing, incoming) == whole)
        continue;
      mix.outgoingOneLess.insert(outgoing);
      mix.incomingOneLess.insert(incoming);
    }
  }
}

/// With fewer parts than this, a cross-fade ends sooner than its preparation would.
constexpr std::uint64_t kFewParts = 16384;
/// This many parts don't fit into a core's caches.
constexpr std::uint64_t kManyParts = 1 << 20;

const MixKernels& kernels() {
  static const MixKernels& best = mixKernels(runnableTargets());
  return best;
}

}  // namespace

MixRow plainMixRow(PartKind kind) {
  return kPlainRows[static_cast<std::size_t>(kind)];
}

ByteMix byteMix(std::uint32_t position, std::uint32_t range) {
  ByteMix mix{MixWeights(position, range)};
  const std::uint64_t scaled = std::uint64_t{position} * kOne;
  mix.weight = static_cast<std::uint32_t>(scaled / range);
  if (scaled % range == 0)  // and doubles are exact, too
    return mix;
  const std::uint32_t common = std::gcd(position, range), step = range / common;
  mix.rounds = step <= kLargestDifference;
  if (mix.rounds)
    mix.weight = static_cast<std::uint32_t>((scaled + range / 2) / range);
  else if (!hasTheFloors(mix.weight, position, range))
    ++mix.weight;
  findCorrections(mix, step, position / common);
  return mix;
}

WordMix wordMix(std::uint32_t position, std::uint32_t range) {
  const std::uint64_t scaled = std::uint64_t{position} << 32;
  const auto weight = static_cast<std::uint32_t>(scaled / range);
  return {MixWeights(position, range), weight, scaled % range == 0 && weight % kOne == 0, false};
}

void mixV210Plainly(const ByteMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                    std::uint8_t* output, std::size_t count) {
  for (std::size_t i = 0; i < count; i += 4) {
    std::uint32_t o, n, result = 0;
    std::memcpy(&o, outgoing + i, sizeof o);
    std::memcpy(&n, incoming + i, sizeof n);
    for (const int shift : {2, 12, 22}) {
      const auto sample = mixed(mix.weights, static_cast<std::uint8_t>(o >> shift),
                                static_cast<std::uint8_t>(n >> shift));
      result |= std::uint32_t{sample} << shift;
    }
    std::memcpy(output + i, &result, sizeof result);
  }
}

RowMixer::RowMixer(PartKind kind, std::uint32_t position, std::uint32_t range, std::uint64_t parts,
                   bool readSoon)
    : way_(wayOf(kind, position, range, parts, readSoon)) {}

RowMixer::Way RowMixer::wayOf(PartKind kind, std::uint32_t position, std::uint32_t range,
                              std::uint64_t parts, bool readSoon) {
  const bool bytes = kind == PartKind::kByte, words = kind == PartKind::kWord;
  const bool inside = position <= range && range != 0;
  if (inside && (bytes || words)) {
    if (position == 0 || position == range)
      return Copy{position != 0, bytes ? std::uint8_t{1} : std::uint8_t{2}};
    const auto streaming = [&](auto mix) -> Way {
      mix.streams = parts >= kManyParts && !readSoon;
      return mix;
    };
    if (bytes && parts >= kFewParts)
      return streaming(byteMix(position, range));
    if (words)
      return streaming(wordMix(position, range));
  }
  return Plain{MixWeights(position, range), plainMixRow(kind)};
}

bool RowMixer::mixV210(const std::uint8_t* outgoing, const std::uint8_t* incoming,
                       std::uint8_t* output, std::size_t bytes) const {
  const auto* const mix = std::get_if<ByteMix>(&way_);
  if (mix != nullptr)
    kernels().v210(*mix, outgoing, incoming, output, bytes);
  return mix != nullptr;
}

void RowMixer::operator()(const std::uint8_t* outgoing, const std::uint8_t* incoming,
                          std::uint8_t* output, std::size_t count) const {
  struct Mix {
    const std::uint8_t* outgoing;
    const std::uint8_t* incoming;
    std::uint8_t* output;
    std::size_t count;

    void operator()(const Plain& way) const {
      way.row(way.weights, outgoing, incoming, output, count);
    }
    void operator()(const Copy& way) const {
      copyBlock(output, way.incoming ? incoming : outgoing,
                static_cast<std::uint32_t>(count * way.partBytes));
    }
    void operator()(const ByteMix& way) const {
      kernels().bytes(way, outgoing, incoming, output, count);
    }
    void operator()(const WordMix& way) const {
      kernels().words(way, outgoing, incoming, output, count);
    }
  };
  std::visit(Mix{outgoing, incoming, output, count}, way_);
}

}  // namespace nkdraw
