// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/memory.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "failing_new.h"

namespace {

using Bytes = std::vector<unsigned char>;

constexpr unsigned char kGuard = 0xA5;
constexpr std::size_t kGuardBytes = 80;

/// Fills byte by byte.
void fillPlainly(unsigned char* target, std::uint32_t value, std::uint32_t bytes) {
  unsigned char pattern[4];
  std::memcpy(pattern, &value, sizeof pattern);
  for (std::uint32_t i = 0; i < bytes; ++i)
    target[i] = pattern[i % 4];
}

void expectSameFill(std::size_t offset, std::uint32_t value, std::uint32_t bytes) {
  alignas(64) static unsigned char room[1 << 20];
  const std::size_t size = kGuardBytes + offset + bytes + kGuardBytes;
  ASSERT_LE(size, sizeof room);
  std::fill_n(room, size, kGuard);
  Bytes expected(size, kGuard);
  SetMemoryFast(room + kGuardBytes + offset, value, bytes);
  fillPlainly(expected.data() + kGuardBytes + offset, value, bytes);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), room))
      << bytes << " bytes at " << offset;
}

TEST(SetMemoryFast, FillsAnyCountAtAnyAlignmentAndNothingBesides) {
  for (std::size_t offset = 0; offset < 64; ++offset)
    for (std::uint32_t bytes = 0; bytes <= 600; ++bytes)
      expectSameFill(offset, 0x44332211, bytes);
}

TEST(SetMemoryFast, FillsLargeBlocksOfAnyPattern) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::uint32_t> anyValue, anyCount(0, 500'000);
  std::uniform_int_distribution<std::size_t> anyOffset(0, 63);
  for (int round = 0; round < 200; ++round)
    expectSameFill(anyOffset(random), anyValue(random), anyCount(random));
}

TEST(SetMemoryFast, TakesNullForNoBytes) {
  SetMemoryFast(nullptr, 1, 0);
}

TEST(Memory, CopiesAnyCountAndNothingBesides) {
  Bytes source(700);
  std::iota(source.begin(), source.end(), static_cast<unsigned char>(1));
  for (const auto copy : {CopyMemoryFast, nkOSCopyMemory})
    for (std::uint32_t bytes = 0; bytes <= 600; ++bytes) {
      Bytes target(source.size() + kGuardBytes, kGuard), expected = target;
      std::copy_n(source.begin() + 3, bytes, expected.begin() + 1);
      copy(target.data() + 1, source.data() + 3, bytes);
      ASSERT_EQ(target, expected) << bytes;
    }
}

TEST(Memory, ZeroesAnyCountAndNothingBesides) {
  for (std::uint32_t bytes = 0; bytes <= 600; ++bytes) {
    Bytes target(601 + kGuardBytes, kGuard), expected = target;
    std::fill_n(expected.begin() + 1, bytes, static_cast<unsigned char>(0));
    nkOSZeroMemory(target.data() + 1, bytes);
    ASSERT_EQ(target, expected) << bytes;
  }
}

TEST(Memory, CopyAndZeroTakeNullForNoBytes) {
  CopyMemoryFast(nullptr, nullptr, 0);
  nkOSCopyMemory(nullptr, nullptr, 0);
  nkOSZeroMemory(nullptr, 0);
}

TEST(NKAlloc, GivesBlocksOfTheirOwnAlignedTo64Bytes) {
  std::vector<void*> blocks;
  for (std::uint32_t bytes : {0u, 1u, 63u, 64u, 65u, 100'000u}) {
    void* const block = NKAlloc(bytes);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u);
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), block), 0);
    std::memset(block, kGuard, bytes);
    blocks.push_back(block);
  }
  std::for_each(blocks.begin(), blocks.end(), NKFree);
}

TEST(NKAlloc, GivesNullWithoutMemory) {
  const nkdraw::test::FailingNew failing(0);
  EXPECT_EQ(NKAlloc(16), nullptr);
}

constexpr std::uint32_t kFrame = 5 << 20;

TEST(NKAlloc, GivesAKeptFrameOnceAndToNoOther) {
  NKFree(NKAlloc(kFrame));
  NKFree(NKAlloc(kFrame + 1));
  std::vector<void*> blocks;
  for (int i = 0; i < 4; ++i) {
    void* const block = NKAlloc(kFrame);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), block), 0);
    std::memset(block, kGuard, kFrame);
    blocks.push_back(block);
  }
  std::for_each(blocks.begin(), blocks.end(), NKFree);
}

TEST(NKAlloc, GivesALargerBlockThanTheOnesKept) {
  NKFree(NKAlloc(kFrame));
  NKFree(NKAlloc(kFrame));
  void* const block = NKAlloc(3 * kFrame);
  ASSERT_NE(block, nullptr);
  std::memset(block, kGuard, std::size_t{3} * kFrame);
  NKFree(block);
}

TEST(NKAlloc, ServesSeveralThreadsWithFrames) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      for (int frame = 0; frame < 20; ++frame) {
        auto* const block = static_cast<unsigned char*>(NKAlloc(kFrame));
        ASSERT_NE(block, nullptr);
        block[0] = block[kFrame - 1] = static_cast<unsigned char>(i);
        std::this_thread::yield();
        EXPECT_EQ(block[0], i);
        EXPECT_EQ(block[kFrame - 1], i);
        NKFree(block);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST(NKFree, LeavesNullAlone) {
  NKFree(nullptr);
}

}  // namespace
