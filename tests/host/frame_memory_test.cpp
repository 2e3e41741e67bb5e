// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/platform/frame_memory.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

TEST(FrameMemory, GivesAlignedFramesOfTheirOwnWithEmptyRecords) {
  std::vector<QFRAME*> frames;
  for (const std::uint32_t bytes : {0U, 1U, 63U, 64U, 65U, 1'000'003U, 16U << 20}) {
    QFRAME* frame = nullptr;
    ASSERT_EQ(QFrameMem(10, bytes, 0x2120, &frame), 0U) << bytes;
    ASSERT_NE(frame, nullptr);
    ASSERT_NE(frame->frameBuffer, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame->frameBuffer) % 64, 0U);
    EXPECT_EQ(frame->ltcCount, 0U);
    EXPECT_EQ(frame->vitcCount, 0U);
    EXPECT_EQ(frame->captionData, nullptr);
    EXPECT_EQ(frame->captionBytes, 0U);
    frame->ltcCount = bytes;
    std::memset(frame->frameBuffer, static_cast<int>(frames.size() + 1), bytes);
    frames.push_back(frame);
  }
  char number = 0;
  for (QFRAME*& frame : frames) {
    ++number;
    for (std::uint32_t i = 0; i < frame->ltcCount; ++i)
      ASSERT_EQ(frame->frameBuffer[i], number);
    EXPECT_EQ(QFrameMem(11, 0, 0, &frame), 0U);
    EXPECT_EQ(frame, nullptr);
  }
}

TEST(FrameMemory, FreesNothingForANullFrame) {
  QFRAME* frame = nullptr;
  EXPECT_EQ(QFrameMem(kFrameFree, 0, 0, &frame), 0U);
  EXPECT_EQ(frame, nullptr);
}

TEST(FrameMemory, ReadsNoFlags) {
  for (const std::uint32_t flags : {0U, 0x2120U, 0xFFFFFFFFU}) {
    QFRAME* frame = nullptr;
    EXPECT_EQ(QFrameMem(kFrameAllocate, 100, flags, &frame), 0U);
    EXPECT_EQ(QFrameMem(kFrameFree, 100, flags, &frame), 0U);
  }
}

TEST(FrameMemory, RefusesSizesThatNoBlockHasAndSetsTheFrameToNull) {
  for (const std::uint32_t bytes : {0xFFFFFFFFU, 0xFFFFFFFFU - 40, 0xFFFFFFFFU - 63}) {
    QFRAME unused{};
    QFRAME* frame = &unused;
    EXPECT_EQ(QFrameMem(kFrameAllocate, bytes, kFrameFlags, &frame), 0xFFFFFFFFU);
    EXPECT_EQ(frame, nullptr);
  }
}

TEST(FrameMemory, RefusesOtherCodesAndANullAddress) {
  for (const std::uint32_t code : {0U, 9U, 12U, 0xFFFFFFFFU}) {
    QFRAME unused{};
    QFRAME* frame = &unused;
    EXPECT_EQ(QFrameMem(code, 10, kFrameFlags, &frame), 0xFFFFFFFFU);
    EXPECT_EQ(frame, &unused);
  }
  EXPECT_EQ(QFrameMem(kFrameAllocate, 10, kFrameFlags, nullptr), 0xFFFFFFFFU);
  EXPECT_EQ(QFrameMem(kFrameFree, 0, 0, nullptr), 0xFFFFFFFFU);
}

}  // namespace
