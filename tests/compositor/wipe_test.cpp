// SPDX-License-Identifier: BSD-2-Clause
//
// The numbered wipes.
#include <nkdraw/nkdraw_c.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(Wipe, ShowsTheIncomingFrameLeftOfTheEdge) {
  constexpr std::uint32_t kWidth = 10, kHeight = 3;
  const std::vector<std::uint8_t> outgoing(kWidth * kHeight * 4, 1);
  const std::vector<std::uint8_t> incoming(kWidth * kHeight * 4, 2);
  std::vector<std::uint8_t> output(kWidth * kHeight * 4);
  EXPECT_EQ(
      NKDraw_DisplayWipe(outgoing.data(), kWidth * 4, incoming.data(), kWidth * 4, output.data(),
                         kWidth * 4, 1, ptBGRA32, kWidth, kHeight, 0, 0, 0, 0, 0, 0, 10, 3),
      0U);
  for (std::size_t i = 0; i < output.size(); ++i)
    ASSERT_EQ(output[i], i / 4 % kWidth < 3 ? 2 : 1) << i;
}

}  // namespace
