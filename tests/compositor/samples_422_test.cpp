// SPDX-License-Identifier: BSD-2-Clause
//
// The vector forms of packed 4:2:2 against the plain one.
#include <tests/support/frame.h>
#include <tests/support/targets.h>

#include <nkdraw/compositor/samples_422.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using nkdraw::Kernels422;
using nkdraw::test::Frame;

struct Conversion {
  const char* name;
  Kernels422::Convert Kernels422::*convert;
  std::size_t sourceBytes, targetBytes;  ///< of one pair or group
  std::size_t sourceSlack, targetSlack;
};

constexpr Conversion kConversions[] = {
    {"expandOuterShared", &Kernels422::expandOuterShared, 4, 6, 0, 0},
    {"expandChromaFirst", &Kernels422::expandChromaFirst, 4, 6, 0, 0},
    {"packOuterShared", &Kernels422::packOuterShared, 6, 4, 0, 0},
    {"packChromaFirst", &Kernels422::packChromaFirst, 6, 4, 0, 0},
    {"samplesOfV210", &Kernels422::samplesOfV210, 16, 12, 0, nkdraw::kSampleSlack},
    {"v210OfSamples", &Kernels422::v210OfSamples, 12, 16, nkdraw::kSampleSlack, 0},
    {"topsOfV210", &Kernels422::topsOfV210, 16, 16, 0, 0},
};

class Samples422 : public testing::TestWithParam<std::int64_t> {};

/// A source that ends with the run, so that a sanitizer reports reads past it.
std::vector<std::uint8_t> noise(std::size_t bytes, std::uint32_t seed) {
  Frame frame(bytes, seed, 0);
  return frame.all();
}

TEST_P(Samples422, EqualThePlainFormForEveryCountAndTouchNothingElse) {
  const Kernels422& kernels = nkdraw::kernels422(GetParam());
  for (const Conversion& conversion : kConversions) {
    for (std::size_t count = 0; count <= 170; ++count) {
      const auto source = noise(count * conversion.sourceBytes + conversion.sourceSlack,
                                static_cast<std::uint32_t>(count));
      const std::size_t bytes = count * conversion.targetBytes;
      Frame wanted(bytes, 9), got(bytes, 9);
      (nkdraw::kPlain422.*conversion.convert)(source.data(), wanted.data(), count);
      (kernels.*conversion.convert)(source.data(), got.data(), count);
      ASSERT_TRUE(std::ranges::equal(wanted.bytes(), got.bytes())) << conversion.name << count;
      if (conversion.targetSlack == 0) {
        ASSERT_TRUE(got.guardsIntact()) << conversion.name << ' ' << count;
      }
    }
  }
}

TEST_P(Samples422, MoveV210AsThePlainFormDoes) {
  const Kernels422& kernels = nkdraw::kernels422(GetParam());
  for (const std::uint32_t mask : {0x3FFFFFFFU, nkdraw::kTopsOfWord}) {
    for (unsigned way = 0; way < 6; ++way) {
      for (std::size_t groups = 0; groups <= 20; ++groups) {
        const auto source = noise((groups * 4 + nkdraw::kMoveSlack) * 4, way);
        Frame wanted(groups * 16, 9), got(groups * 16, 9);
        const nkdraw::V210Move move = {way / 2, way % 2 != 0, mask};
        nkdraw::kPlain422.moveV210(move, source.data(), wanted.data(), groups);
        kernels.moveV210(move, source.data(), got.data(), groups);
        ASSERT_TRUE(wanted.all() == got.all()) << way << ' ' << groups;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, Samples422, testing::ValuesIn(nkdraw::test::everyTarget()),
                         nkdraw::test::targetName);

TEST(Samples422Plain, KeepTheTopEightBitsOfEverySampleAndTheirOrder) {
  const std::uint32_t words[4] = {0x3FF003FF & 0x3FFFFFFF, 0, 0, 0};
  std::uint8_t group[16] = {}, samples[12] = {};
  for (std::size_t i = 0; i < 16; ++i)
    group[i] = static_cast<std::uint8_t>(words[i / 4] >> (8 * (i % 4)));
  nkdraw::kPlain422.samplesOfV210(group, samples, 1);
  const std::uint8_t wanted[12] = {255, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_TRUE(std::ranges::equal(samples, wanted));
}

TEST(Samples422Plain, PackingV210AgainClearsTheLowBits) {
  const auto samples = noise(12, 5);
  std::uint8_t group[16] = {}, again[12] = {};
  nkdraw::kPlain422.v210OfSamples(samples.data(), group, 1);
  nkdraw::kPlain422.samplesOfV210(group, again, 1);
  EXPECT_TRUE(std::ranges::equal(samples, again));
  for (std::size_t word = 0; word < 4; ++word) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i)
      bits |= std::uint32_t{group[word * 4 + i]} << (8 * i);
    EXPECT_EQ(bits & 0xC0300C03U, 0U);
  }
}

}  // namespace
