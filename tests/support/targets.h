// SPDX-License-Identifier: BSD-2-Clause
//
// The vector forms that this machine can run, to compare each with the plain one.
#pragma once

#include <nkdraw/simd/vector_targets.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nkdraw::test {

/// Every target that this machine supports, and 0 for the form that is always there.
inline std::vector<std::int64_t> everyTarget() {
  std::vector<std::int64_t> targets = {0};
  for (std::int64_t rest = runnableTargets(); rest != 0; rest &= rest - 1)
    targets.push_back(rest & -rest);
  return targets;
}

inline std::string targetName(const testing::TestParamInfo<std::int64_t>& info) {
  return info.param == 0 ? "Everywhere" : hwy::TargetName(info.param);
}

}  // namespace nkdraw::test
