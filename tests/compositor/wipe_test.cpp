// SPDX-License-Identifier: BSD-2-Clause
//
// The numbered wipes, on threads and memory of the default host.
#include <nkdraw/compositor/wipe_bands.h>
#include <nkdraw/nkdraw_c.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

/// A busy machine may keep workers longer than the usual wait.
class Wipe : public testing::Test {
  const nkdraw::PatientWipes wait_;
};

TEST_F(Wipe, ShowsTheIncomingFrameLeftOfTheEdge) {
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

TEST_F(Wipe, ShowsTheIncomingFrameInPairsOfYCbCr) {
  constexpr std::uint32_t kWidth = 8, kHeight = 4, kPitch = kWidth * 2;
  const std::vector<std::uint8_t> outgoing(kPitch * kHeight, 1), incoming(kPitch * kHeight, 2);
  std::vector<std::uint8_t> output(kPitch * kHeight);
  EXPECT_EQ(NKDraw_DisplayWipeYCbCr(outgoing.data(), kPitch, incoming.data(), kPitch, output.data(),
                                    kPitch, 1, 0, kWidth, kHeight, 0, 0, 0, 0, 0, 0, 4, 2),
            0U);
  for (std::size_t i = 0; i < output.size(); ++i)
    ASSERT_EQ(output[i], i % kPitch < kPitch / 2 ? 2 : 1) << i;
}

TEST_F(Wipe, ShowsTheIncomingFrameInGroupsOfV210) {
  constexpr std::uint32_t kWidth = 48, kHeight = 4, kPitch = 128;
  const std::vector<std::uint8_t> outgoing(kPitch * kHeight, 0), incoming(kPitch * kHeight, 0x3F);
  std::vector<std::uint8_t> output(kPitch * kHeight, 0x55);
  EXPECT_EQ(NKDraw_DisplayWipeV210(outgoing.data(), kPitch, incoming.data(), kPitch, output.data(),
                                   kPitch, 2, 0, kWidth, kHeight, 0, 0, 0, 0, 0, 0, 4, 3),
            0U);
  constexpr std::uint8_t kShown[] = {0x3C, 0x33, 0x0F, 0x3F};
  for (std::size_t i = 0; i < output.size(); ++i)
    ASSERT_EQ(output[i], i < std::size_t{3} * kPitch ? kShown[i % 4] : 0) << i;
}

}  // namespace
