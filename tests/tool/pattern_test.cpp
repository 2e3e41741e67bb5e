// SPDX-License-Identifier: BSD-2-Clause
//
// The test pattern looks the same in every layout to whoever decodes it.
#include "clip.h"
#include "program.h"

#include <media/layouts.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>

using namespace nkdraw::media;

namespace {

constexpr int kWidth = 640, kHeight = 360;

struct Colour {
  int r, g, b;
};

/// 75 % bars: white, yellow, cyan, green, magenta, red, blue, black.
constexpr int kOn = 191;
constexpr std::array<Colour, 8> kBars = {{{kOn, kOn, kOn},
                                          {kOn, kOn, 0},
                                          {0, kOn, kOn},
                                          {0, kOn, 0},
                                          {kOn, 0, kOn},
                                          {kOn, 0, 0},
                                          {0, 0, kOn},
                                          {0, 0, 0}}};

/// RGB is stored as it is. YCbCr has 8 bits here, whose rounding the matrix (factors up to 2.1)
/// brings to some 3 steps of RGB, and FFmpeg's conversion, with its 8-bit tables, adds as much.
constexpr int kTolerance = 6;

Colour pixel(const Clip& clip, std::size_t frame, int x, int y) {
  const std::uint8_t* const at =
      clip.frames[frame].data() + 3 * static_cast<std::size_t>(y * clip.width + x);
  return {at[0], at[1], at[2]};
}

void expectNear(Colour got, Colour expected, int tolerance, const std::string& where) {
  EXPECT_LE(std::abs(got.r - expected.r), tolerance) << where << ", red";
  EXPECT_LE(std::abs(got.g - expected.g), tolerance) << where << ", green";
  EXPECT_LE(std::abs(got.b - expected.b), tolerance) << where << ", blue";
}

Arguments patternArguments(const std::string& layout, const std::string& out) {
  return {"--layout", layout, "--pattern-size", "640x360", "--pattern-frames", "3", out};
}

class Pattern : public testing::TestWithParam<const Layout*> {};

}  // namespace

TEST_P(Pattern, HasTheColoursOfTheBarsAndTheTimecodeInEveryFrame) {
  const Layout& layout = *GetParam();
  const std::string out = at("out.nut");
  const Outcome outcome = burnin(patternArguments(std::string(layout.name), out));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(out).format, layout.pixelFormat);

  const Clip rgb = decodeAs(out, AV_PIX_FMT_RGB24);
  ASSERT_EQ(rgb.frames.size(), 3U);
  const int tolerance = isYCbCr(layout.type) ? kTolerance : 0;
  for (std::size_t bar = 0; bar < kBars.size(); ++bar) {
    const int left = kWidth * static_cast<int>(bar) / 8;
    for (const int x : {left + 4, left + kWidth / 16, left + kWidth / 8 - 4})
      expectNear(pixel(rgb, 1, x, 20), kBars[bar], tolerance, "bar " + std::to_string(bar));
  }
  // Steps of grey from black to 0.9, and neutral.
  int last = -1;
  for (int step = 0; step < 16; ++step) {
    const Colour grey = pixel(rgb, 1, kWidth * step / 16 + kWidth / 32, kHeight - 5);
    EXPECT_GT(grey.g, last);
    last = grey.g;
    expectNear(grey, {grey.g, grey.g, grey.g}, tolerance == 0 ? 0 : 2,
               "step " + std::to_string(step));
  }
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  for (std::size_t i = 0; i < 3; ++i) {
    // At the lower left of 640 by 360: margins of a twentieth, size 2.
    EXPECT_EQ(readText(grey, i, 32, 320, 2, 11), "00:00:00:0" + std::to_string(i));
    // The pattern's own number, 12 characters, in the middle of the bars.
    EXPECT_EQ(readText(grey, i, 224, 98, 2, 12), "FRAME 00000" + std::to_string(i));
  }
}

TEST_P(Pattern, MovesFromFrameToFrame) {
  const std::string out = at("out.nut");
  ASSERT_EQ(burnin(patternArguments(std::string(GetParam()->name), out)).exitCode, 0);
  const Clip rgb = decodeAs(out, AV_PIX_FMT_RGB24);
  const Colour before = pixel(rgb, 0, 1, 240), after = pixel(rgb, 2, 1, 240);
  EXPECT_GT(before.r, 180) << "the box stands at the left";
  EXPECT_LT(after.r, 80) << "and has left it";
}

TEST_P(Pattern, TakesOddSizes) {
  const std::string out = at("out.nut");
  const Outcome outcome = burnin({"--layout", std::string(GetParam()->name), "--pattern-size",
                                  "321x181", "--pattern-frames", "1", out});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip rgb = decodeAs(out, AV_PIX_FMT_RGB24);
  EXPECT_EQ(rgb.height, 181);
  expectNear(pixel(rgb, 0, 320, 20), kBars[7], isYCbCr(GetParam()->type) ? kTolerance : 0,
             "the last column");
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 0, 16, 162, 1, 11), "00:00:00:00");
}

TEST_P(Pattern, IsThereToBeLookedAt) {
  const std::string picture =
      std::string(NKDRAW_PICTURE_FOLDER) + "/pattern_" + std::string(GetParam()->name) + ".png";
  const Outcome outcome =
      burnin({"--layout", std::string(GetParam()->name), "--still", "33", "--clock",
              "--format-line", "--text", "1200,800,Reel 7", "--overwrite", picture});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(readText(decodeAs(picture, AV_PIX_FMT_GRAY8), 0, 1200, 800, 3, 6), "Reel 7");
}

namespace {

std::vector<const Layout*> allLayouts() {
  std::vector<const Layout*> all;
  for (const Layout& layout : layouts())
    all.push_back(&layout);
  return all;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Layouts, Pattern, testing::ValuesIn(allLayouts()),
                         [](const testing::TestParamInfo<const Layout*>& each) {
                           return "as_" + std::string(each.param->name);
                         });

TEST(PatternClips, HaveTheRateTheLengthAndTheTimecodeAskedFor) {
  ASSERT_EQ(burnin({"--layout", "uyvy", "--pattern-size", "320x180", "--pattern-rate", "29.97",
                    "--pattern-frames", "4", "--start-timecode", "00:00:59;28", at("out.mov")})
                .exitCode,
            0);
  const Clip grey = decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8);
  ASSERT_EQ(grey.frames.size(), 4U);
  EXPECT_EQ(grey.timecode, "00:00:59;28");
  EXPECT_EQ(readText(grey, 2, 16, 160, 1, 11), "00:01:00;02");
  const auto packets = packetsOf(at("out.mov"), AVMEDIA_TYPE_VIDEO);
  EXPECT_NEAR(packets[3].time, 3 * 1001.0 / 30000.0, 1e-6);
}

TEST(PatternClips, MayBeEncoded) {
  const Outcome outcome = burnin({"--layout", "v210", "--pattern-size", "640x360",
                                  "--pattern-frames", "4", "--codec", "prores_ks", at("out.mov")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(codecOf(at("out.mov")), "prores");
  EXPECT_EQ(readText(decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8), 3, 32, 320, 2, 11), "00:00:00:03");
}

TEST(PatternClips, MayBeAPictureOrARange) {
  ASSERT_EQ(
      burnin({"--layout", "bgra", "--pattern-size", "640x360", "--still", "77", at("out.png")})
          .exitCode,
      0);
  const Clip picture = decodeAs(at("out.png"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(picture, 0, 224, 98, 2, 12), "FRAME 000077");
  EXPECT_EQ(readText(picture, 0, 32, 320, 2, 11), "00:00:03:02");
  ASSERT_EQ(
      burnin({"--layout", "bgra", "--pattern-size", "640x360", "--frames", "20-21", at("out.nut")})
          .exitCode,
      0);
  const Clip range = decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8);
  ASSERT_EQ(range.frames.size(), 2U);
  EXPECT_EQ(readText(range, 1, 224, 98, 2, 12), "FRAME 000021");
}

TEST(PatternFailures, AreToldInOneLine) {
  const std::pair<Arguments, const char*> kBad[] = {
      {{"--layout", "nosuch", at("out.mov")}, "--layout"},
      {{"--layout", "v210", "--pattern-size", "wide", at("out.mov")}, "--pattern-size"},
      {{"--layout", "v210", "--pattern-size", "16x16", at("out.mov")}, "--pattern-size"},
      {{"--layout", "v210", "--pattern-rate", "0", at("out.mov")}, "--pattern-rate"},
      {{"--layout", "v210", "--pattern-rate", "fast", at("out.mov")}, "--pattern-rate"},
      {{"--layout", "v210", "--pattern-frames", "0", at("out.mov")},
       "not a value of --pattern-frames: 0"},
      {{"--layout", "v210", "--pattern-frames", "99999999999999999999", "--dry-run", at("out.mov")},
       "not a value of --pattern-frames"},
      {{"--layout", "v210", "--pattern-frames", "", at("out.mov")}, "--pattern-frames: (empty)"},
      {{"--layout", "v210", "--pattern-size", "", at("out.mov")}, "--pattern-size: (empty)"},
      {{"--layout", "v210", "--pattern-rate", "", at("out.mov")}, "--pattern-rate: (empty)"},
      {{"--layout", "", at("out.mov")}, "--layout: (empty)"},
      {{"--layout", "v210", "--frames", "250-251", at("out.mov")}, "ends before"},
      {{"--layout", "v210", "--pattern-size", "64x64", at("out.mov")}, "leaves the frame"},
      {{"--layout", "rgb24", at("out.avi")}, "does not keep the layout"},
      {{"--layout", "yvyu", at("out.mov")}, "does not keep the layout"},
      {{"--pattern-size", "64x64", at("out.mov")}, "only one file"},
  };
  for (const auto& [arguments, words] : kBad) {
    const Outcome outcome = burnin(arguments);
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    EXPECT_NE(outcome.err.find(words), std::string::npos) << outcome.err;
  }
  EXPECT_TRUE(filesAtWork().empty());
}
