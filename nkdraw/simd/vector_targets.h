// SPDX-License-Identifier: BSD-2-Clause
//
// Picks, among the forms of a kernel that Highway compiled for several instruction sets, the one
// for the machine at hand. Doing it here keeps Highway's own library out: the core needs its
// headers alone.
//
// A file of vector kernels ends each of its passes with a constant `kKernels` of its namespace, and
// its last pass with
//
//   constexpr ByTarget<Kernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
//                                            HWY_CHOOSE_FALLBACK(kKernels)};
#pragma once

#include <hwy/targets.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// Null where a target was not compiled; the last one runs everywhere.
template <class Kernels>
using ByTarget = std::array<const Kernels*, HWY_MAX_DYNAMIC_TARGETS + 1>;

/// The targets, as Highway's bits, whose instructions this machine has.
[[nodiscard]] std::int64_t runnableTargets();

/// Waits until what this thread stored past the caches is in memory, for other threads to see. To
/// be called once, behind all rows of a frame.
void finishStreamedRows();

/// The best of the kernels among `targets`.
template <class Kernels>
[[nodiscard]] const Kernels& bestKernels(const ByTarget<Kernels>& kernels, std::int64_t targets) {
  constexpr int kFirstBit = HWY_HIGHEST_TARGET_BIT + 1 - HWY_MAX_DYNAMIC_TARGETS;
  for (std::size_t i = 0; i < HWY_MAX_DYNAMIC_TARGETS; ++i) {
    const bool wanted = ((targets >> (static_cast<int>(i) + kFirstBit)) & 1) != 0;
    if (wanted && kernels[i] != nullptr)
      return *kernels[i];
  }
  return *kernels.back();
}

}  // namespace nkdraw
