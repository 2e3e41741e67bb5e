// SPDX-License-Identifier: BSD-2-Clause
//
// The vector forms of a watermark's rows against the plain ones.
#include <nkdraw/overlay/watermark_rows.h>

#include <tests/support/frame.h>
#include <tests/support/targets.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace nkdraw::test;
namespace watermark = nkdraw::watermark;
using watermark::Rows;

constexpr std::size_t kMost = 70, kMisalignments = 17;

class WatermarkRows : public testing::TestWithParam<std::int64_t> {
 protected:
  /// The same run in both forms. The picture ends with the run, so that a sanitizer reports reads
  /// past it.
  template <class Sample>
  void compare(void (*Rows::*row)(const Sample*, std::uint8_t*, std::size_t),
               const std::vector<Sample>& picture, std::size_t frameBytes, std::size_t count) {
    for (std::size_t start = 0; start < kMisalignments; ++start) {
      const auto seed = static_cast<std::uint32_t>(1000 * count + start);
      Frame wanted(frameBytes + kMisalignments, seed), got(frameBytes + kMisalignments, seed);
      (watermark::kPlainRows.*row)(picture.data(), wanted.data() + start, count);
      (watermark::rows(GetParam()).*row)(picture.data(), got.data() + start, count);
      ASSERT_EQ(wanted.all(), got.all()) << count << " from " << start;
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Targets, WatermarkRows, testing::ValuesIn(everyTarget()), targetName);

/// Samples up to `most`, every part of them small at times: the limits of visibility are small.
template <class Sample>
std::vector<Sample> samples(std::size_t count, int most, Random& random) {
  std::vector<Sample> made(count);
  for (Sample& sample : made)
    sample = static_cast<Sample>(random.between(0, random.flag() ? most : 30));
  return made;
}

TEST_P(WatermarkRows, PixelsAreThePlainOnesForEveryCount) {
  Random random(1);
  for (std::size_t count = 0; count <= kMost; ++count)
    compare(&Rows::blendPixels, samples<std::uint8_t>(4 * count, 255, random), 4 * count, count);
}

TEST_P(WatermarkRows, PairsAreThePlainOnesForEveryCount) {
  Random random(2);
  for (std::size_t count = 0; count <= kMost; ++count)
    compare(&Rows::blendPairs, samples<std::uint8_t>(5 * count, 255, random), 4 * count, count);
}

TEST_P(WatermarkRows, GroupsAreThePlainOnesForEveryCount) {
  Random random(3);
  for (std::size_t count = 0; count <= kMost; ++count)
    compare(&Rows::plotGroups, samples<std::uint32_t>(15 * count, 1023, random), 16 * count, count);
}

TEST_P(WatermarkRows, PartsOfMoreThanTenBitsCarryAsInThePlainForm) {
  Random random(4);
  for (std::size_t count = 1; count <= kMost; ++count) {
    auto picture = samples<std::uint32_t>(15 * count, 1023, random);
    for (std::size_t i = 0; i < 1 + count / 8; ++i)
      picture[random.word() % picture.size()] = random.flag() ? random.word() : 1024;
    compare(&Rows::plotGroups, picture, 16 * count, count);
  }
}

/// Every source over every ground, at the alphas around the limits and at some between them.
TEST_P(WatermarkRows, BlendAllBytes) {
  constexpr int kBytes = 256;
  for (int alpha = 0; alpha < kBytes; alpha += alpha < 20 || alpha >= 250 ? 1 : 10) {
    std::vector<std::uint8_t> pixels, pairs, under;
    for (int source = 0; source < kBytes; ++source) {
      for (int ground = 0; ground < kBytes; ++ground) {
        const auto s = static_cast<std::uint8_t>(source), a = static_cast<std::uint8_t>(alpha);
        pixels.insert(pixels.end(), {s, s, s, a});
        pairs.insert(pairs.end(), {s, s, s, s, a});
        under.insert(under.end(), 4, static_cast<std::uint8_t>(ground));
      }
    }
    auto wanted = under, got = under;
    watermark::kPlainRows.blendPixels(pixels.data(), wanted.data(), wanted.size() / 4);
    watermark::rows(GetParam()).blendPixels(pixels.data(), got.data(), got.size() / 4);
    ASSERT_EQ(wanted, got) << alpha;
    wanted = got = under;
    watermark::kPlainRows.blendPairs(pairs.data(), wanted.data(), wanted.size() / 4);
    watermark::rows(GetParam()).blendPairs(pairs.data(), got.data(), got.size() / 4);
    ASSERT_EQ(wanted, got) << alpha;
  }
}

}  // namespace
