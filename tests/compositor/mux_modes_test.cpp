// SPDX-License-Identifier: BSD-2-Clause
//
// Every mode of the multiplexed display against the rule of its pixels.
#include "mux_frames.h"

#include <gtest/gtest.h>

namespace {

using nkdraw::test::actsAsReference;
using nkdraw::test::kMuxValues;
using nkdraw::test::MuxCall;
using nkdraw::test::Random;

constexpr std::uint32_t kGreyMasks[] = {0xFF000000, 0x00FF0000, 0x0000FF00, 0x000000FF, 0};
constexpr std::uint32_t kWipes[] = {0, 1, 2, 7, 22, 41, 500, 503, 516, 0x80000001, 0x80000000};

/// A call of random settings that the contract allows.
MuxCall randomCall(Random& random, std::uint32_t value, std::uint32_t width, std::uint32_t height) {
  const auto upTo = [&random](std::uint32_t last) {
    return static_cast<std::uint32_t>(random.between(0, static_cast<int>(last)));
  };
  MuxCall call;
  call.mode = value;
  call.width = width;
  call.height = height;
  call.pitch = 4 * width + upTo(9);
  call.sizeA = upTo(call.pitch * height);
  call.sizeB = upTo(call.pitch * height);
  call.wipe = kWipes[upTo(std::size(kWipes) - 1)];
  call.amount = random.flag() ? upTo(65536) : upTo(3000);
  call.threshold = random.flag() ? upTo(3) : upTo(300);
  if (value == 8388608)
    call.threshold = kGreyMasks[upTo(std::size(kGreyMasks) - 1)];
  call.splitX = upTo(width + 3);
  call.splitY = upTo(height + 3);
  return call;
}

class EveryMode : public testing::TestWithParam<std::uint32_t> {};

TEST_P(EveryMode, FollowsItsRuleAtEverySizePitchAndAlignment) {
  Random random(GetParam() + 1);
  for (std::uint32_t width = 0; width <= 70; width += width < 40 ? 1 : 7) {
    for (std::uint32_t height = 0; height <= 6; ++height) {
      for (std::uint32_t turn = 0; turn < 2; ++turn) {
        MuxCall call = randomCall(random, GetParam(), width, height);
        call.mode |= random.word() & (0xFEU << 24);
        ASSERT_TRUE(actsAsReference(call, random.word() % 4, 100 * width + 10 * height + turn));
      }
    }
  }
}

TEST_P(EveryMode, HeedsEveryCombinationOfFlags) {
  Random random(GetParam() + 2);
  for (const std::uint32_t height : {20U, 21U}) {
    for (std::uint32_t flags = 0; flags < 256; ++flags) {
      MuxCall call = randomCall(random, GetParam(), 41 + height % 2, height);
      call.mode |= flags << 24;
      ASSERT_TRUE(actsAsReference(call, flags % 4, flags));
    }
  }
}

TEST_P(EveryMode, CarriesTheGridOnTop) {
  Random random(GetParam() + 3);
  for (const std::uint32_t gridX : {1U, 2U, 3U, 7U, 10U, 33U, 34U, 50U, 51U, 100U}) {
    for (const std::uint32_t gridType : {0U, 1U, 2U, 0xFFFFFFFFU}) {
      const std::uint32_t cells = 100 / gridX;
      MuxCall call = randomCall(random, GetParam(), cells + gridX % 5, cells + gridX % 11);
      call.mode |= random.flag() ? 1U << 24 : 0;
      call.gridType = gridType;
      call.gridX = gridX;
      call.gridY = 1 + random.word() % 120;
      ASSERT_TRUE(actsAsReference(call, gridX % 4, gridX));
    }
  }
}

TEST_P(EveryMode, DrawsNothingWithoutRowsButItsBlock) {
  for (std::uint32_t flags = 0; flags < 256; ++flags) {
    MuxCall call;
    call.mode = GetParam() | flags << 24;
    call.width = 9;
    call.pitch = 40;
    call.gridType = flags % 3;
    nkdraw::test::MuxBuffers buffers(call);
    EXPECT_EQ(buffers.show(call), 0U);
    EXPECT_TRUE(buffers.dst.untouched()) << flags;
    EXPECT_TRUE(buffers.a.untouched()) << flags;
  }
}

INSTANTIATE_TEST_SUITE_P(, EveryMode, testing::ValuesIn(kMuxValues),
                         [](const auto& mode) { return "mode" + std::to_string(mode.param); });

/// A wipe of this many pixels may outlast its wait.
TEST(Mux, FollowsTheRuleOfEveryModeButTheWipeOnADisplayLargerThanTheCaches) {
  constexpr std::uint32_t kWipe = 65536;
  for (const std::uint32_t value : kMuxValues) {
    if (value == kWipe)
      continue;
    Random random(value + 4);
    MuxCall call = randomCall(random, value, 1201, 901);
    call.pitch = 4 * 1201 + 16;
    ASSERT_TRUE(actsAsReference(call, 0, 1)) << value;
  }
}

TEST(Mux, FollowsTheOnePixelRuleWhereTheDisplayLiesAcrossAnInput) {
  constexpr std::uint32_t kPixelwise[] = {4,     8,     16,     32,     128,    256,
                                          16384, 32768, 262144, 524288, 8388608};
  Random random(5);
  for (const std::uint32_t value : kPixelwise) {
    for (std::ptrdiff_t shift = -40; shift <= 40; ++shift) {
      MuxCall call = randomCall(random, value, 33, 4);
      nkdraw::test::Frame shared(2000, 3), other(2000, 4);
      nkdraw::test::Frame expected(2000, 3);
      const bool first = random.flag();
      std::uint8_t* const dst = shared.data() + 200 + 4 * shift;
      std::uint8_t* const expectedDst = expected.data() + 200 + 4 * shift;
      std::uint8_t* const apart = other.data() + 200;
      if (first) {
        display(call, shared.data() + 200, apart, dst);
        referenceDisplay(call, expected.data() + 200, apart, expectedDst);
      } else {
        display(call, apart, shared.data() + 200, dst);
        referenceDisplay(call, apart, expected.data() + 200, expectedDst);
      }
      ASSERT_EQ(shared.all(), expected.all()) << value << " shifted by " << shift;
    }
  }
}

TEST(Mux, MayShowInPlaceOfAnInput) {
  constexpr std::uint32_t kInPlace[] = {0,   2,    4,     8,     16,     32,     64,     128,
                                        256, 2048, 16384, 32768, 262144, 524288, 8388608};
  Random random(6);
  for (const std::uint32_t value : kInPlace) {
    for (const bool ofFirst : {true, false}) {
      MuxCall call = randomCall(random, value, 37, 6);
      call.mode |= (random.word() & 1) << 28;
      nkdraw::test::MuxBuffers apart(call), inPlace(call);
      std::memcpy(apart.dst.data(), (ofFirst ? apart.a : apart.b).data(), apart.dst.bytes().size());
      apart.show(call);
      nkdraw::test::Frame& shared = ofFirst ? inPlace.a : inPlace.b;
      display(call, inPlace.a.data(), inPlace.b.data(), shared.data());
      ASSERT_TRUE(std::ranges::equal(shared.bytes(), apart.dst.bytes())) << value;
    }
  }
}

}  // namespace
