// SPDX-License-Identifier: BSD-2-Clause
//
// The loops for runs of pixels in the plain form, a byte or a word at a time.
#include "run_kernels.h"

#include <nkdraw/surface/byte_order.h>

namespace nkdraw {
namespace {

void repeat(std::uint8_t* at, const Block& block, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i)
    at[i] = block[i % Block::kBytes];
}

void setBits(std::uint8_t* at, const MaskedGroup& group, std::size_t groups) {
  for (; groups > 0; --groups) {
    for (std::size_t i = 0; i < group.kept.size(); ++i, ++at)
      *at = static_cast<std::uint8_t>((*at & group.kept[i]) | (group.colour[i] & ~group.kept[i]));
  }
}

void merge(std::uint8_t* at, const std::uint8_t* kept, const std::uint8_t* row, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i)
    at[i] = static_cast<std::uint8_t>((at[i] & kept[i]) | row[i]);
}

void blendWords(std::uint8_t* at, std::uint32_t colour, double alpha, std::size_t words) {
  for (; words > 0; --words, at += 4)
    store32(at, blendedWord(load32(at), colour, alpha));
}

void addBytes(std::uint8_t* at, std::uint32_t addends, std::size_t words) {
  for (; words > 0; --words, at += 4) {
    for (unsigned i = 0; i < 3; ++i)
      at[i] = static_cast<std::uint8_t>(at[i] + (addends >> (8 * i)));
    at[3] = 255;
  }
}

}  // namespace

constexpr RunKernels kPlainRuns = {repeat, setBits, merge, blendWords, addBytes};

}  // namespace nkdraw
