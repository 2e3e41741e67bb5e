// SPDX-License-Identifier: BSD-2-Clause
//
// Counts allocations, in programs built with allocations.cpp.
#pragma once

namespace nkdraw::test {

/// Starts counting the calling thread's allocations.
void countAllocations();
/// Stops, and returns how many there were.
int countedAllocations();

/// How often `work` allocates.
template <class Work>
[[nodiscard]] int allocationsOf(Work work) {
  countAllocations();
  work();
  return countedAllocations();
}

}  // namespace nkdraw::test
