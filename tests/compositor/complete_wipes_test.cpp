// SPDX-License-Identifier: BSD-2-Clause
//
// Callers of the complete wipes get complete frames, even if workers take longer than the bounded
// wait.
#include <nkdraw/compositor/wipe_bands.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t kWidth = 5, kHeight = 4;

/// Writes ones, well after the bounded wait is over.
std::uint32_t drawLate(const nkdraw::WipeTask& task) {
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    for (std::uint32_t x = task.left; x < task.right; ++x)
      task.dst[y * kWidth + x] = 1;
  }
  return 0;
}

TEST(CompleteWipes, WaitForEveryWorker) {
  std::vector<std::uint8_t> frame(kWidth * kHeight);
  nkdraw::WipeTask task = {};
  task.dst = frame.data();
  task.width = kWidth;
  task.height = kHeight;
  EXPECT_EQ(nkdraw::RunWipeBands(task, {drawLate}, nkdraw::WipeWait::kComplete), 0U);
  EXPECT_EQ(frame, std::vector<std::uint8_t>(kWidth * kHeight, 1));
}

}  // namespace
