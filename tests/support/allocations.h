// SPDX-License-Identifier: BSD-2-Clause
//
// Counts what is allocated; for programs that are made with allocations.cpp.
#pragma once

namespace nkdraw::test {

/// From here on the calling thread's allocations are counted.
void countAllocations();
/// Ends that; how many there were.
int countedAllocations();

/// How often `work` allocates.
template <class Work>
[[nodiscard]] int allocationsOf(Work work) {
  countAllocations();
  work();
  return countedAllocations();
}

}  // namespace nkdraw::test
