// SPDX-License-Identifier: BSD-2-Clause
//
// Highway compiles a kernel for several instruction sets; this chooses the form for the machine.
// Choosing here avoids linking Highway's library: the core needs only its headers.
//
// A file of vector kernels ends each pass with a constant `kKernels` in its namespace, and the last
// pass with
//
//   constexpr ByTarget<Kernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
//                                            HWY_CHOOSE_FALLBACK(kKernels)};
#pragma once

#include <hwy/targets.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// Null if a target was not compiled; the last one runs everywhere.
template <class Kernels>
using ByTarget = std::array<const Kernels*, HWY_MAX_DYNAMIC_TARGETS + 1>;

/// The targets, as Highway's bits, that this machine supports.
[[nodiscard]] std::int64_t runnableTargets();

/// Waits until everything that this thread stored past the caches is visible to other threads. Call
/// it once, after all rows of a frame.
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
