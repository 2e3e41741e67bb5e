// SPDX-License-Identifier: BSD-2-Clause
//
// Two clips joined by a wipe: every frame as FFmpeg decodes it.
#include "clip.h"
#include "program.h"

#include <media/layouts.h>
#include <wipe/wipe_names.h>

#include <nkdraw/nkdraw_c.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace nkdraw::tool;

namespace {

constexpr int kWidth = 102, kHeight = 36;  // no whole groups of v210, pairs of 4:2:2
constexpr std::size_t kAt = 5, kDuration = 4, kFramesA = 12, kFramesB = 10;
constexpr std::size_t kFrames = kAt + kFramesB;

/// Frames that have no pixel in common with those of another seed.
void makeClip(const std::string& path, const std::string& codec, const std::string& format,
              std::size_t frames, int seed) {
  const std::string source = "nullsrc=size=102x36:rate=25,format=gbrp,geq=r='mod(X*7+Y*3+N*11+" +
                             std::to_string(seed * 101) + ",256)':g='mod(X*5+Y*13+N*3+" +
                             std::to_string(seed * 77) + ",256)':b='mod(X+Y*9+N*5+" +
                             std::to_string(seed * 53) + ",256)'";
  Arguments arguments = {"-f",   "lavfi", "-i", source, "-frames:v", std::to_string(frames),
                         "-c:v", codec};
  if (!format.empty())
    arguments.insert(arguments.end(), {"-pix_fmt", format});
  arguments.push_back(path);
  ffmpeg(arguments);
}

struct Pair {
  std::string a, b;
};

Pair makePair(const std::string& suffix, const std::string& codec, const std::string& format) {
  Pair pair = {at("a" + suffix), at("b" + suffix)};
  makeClip(pair.a, codec, format, kFramesA, 1);
  makeClip(pair.b, codec, format, kFramesB, 2);
  return pair;
}

void join(const Pair& pair, const std::string& output, const Arguments& more = {}) {
  Arguments arguments = {"wipe", pair.a, pair.b, output, "--at", "5f", "--duration", "4f"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Outcome outcome = nkdrawTool(arguments);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

/// The first column of the old picture behind a vertical edge.
int edgeOf(std::size_t step) {
  return kWidth * static_cast<int>(step + 1) / static_cast<int>(kDuration + 1);
}

/// Where a byte of a packed frame, or a sample of a planar one, belongs.
struct Form {
  const char* name;
  const char* suffix;
  const char* codec;
  const char* format;
  std::size_t (*columnOf)(std::size_t byte);  // the column that decides, of a byte in its row
  bool classic = false;

  [[nodiscard]] Arguments with(Arguments more) const {
    if (classic)
      more.emplace_back("--classic");
    return more;
  }
};

std::size_t ofFour(std::size_t byte) {
  return byte / 4;
}
std::size_t ofThree(std::size_t byte) {
  return byte / 3;
}
std::size_t ofSix(std::size_t byte) {
  return byte / 6;
}
std::size_t ofEight(std::size_t byte) {
  return byte / 8;
}
/// An edge between the pixels of a pair moves to their left.
std::size_t ofPair(std::size_t byte) {
  return byte / 4 * 2 + 1;
}
/// In classic wipes luma belongs to its pixel, chroma to the first pixel of the pair.
std::size_t ofUYVY(std::size_t byte) {
  return byte / 4 * 2 + (byte % 4 == 3 ? 1 : 0);
}
std::size_t ofYUYV(std::size_t byte) {
  return byte / 4 * 2 + (byte % 4 == 2 ? 1 : 0);
}

constexpr Form kForms[] = {
    {"BGRA", ".mov", "rawvideo", "bgra", ofFour},
    {"RGBAInAVI", ".avi", "rawvideo", "rgba", ofFour},
    {"RGB24", ".mov", "rawvideo", "rgb24", ofThree},
    {"BGR24InAVI", ".avi", "rawvideo", "bgr24", ofThree},
    {"UYVY", ".mov", "rawvideo", "uyvy422", ofPair},
    {"YUY2", ".avi", "rawvideo", "yuyv422", ofPair},
    {"SignedYUV2", ".mov", "rawvideo", "yuyv422", ofPair},
    {"YVYU", ".nut", "rawvideo", "yvyu422", ofPair},
    {"ClassicUYVY", ".mov", "rawvideo", "uyvy422", ofUYVY, true},
    {"ClassicYUY2", ".avi", "rawvideo", "yuyv422", ofYUYV, true},
    {"RGB48", ".nut", "rawvideo", "rgb48le", ofSix},
    {"RGBA64", ".nut", "rawvideo", "rgba64le", ofEight},
    {"DecodedBGR0", ".mkv", "ffv1", "bgr0", ofFour},
    {"DecodedRGB48", ".mkv", "ffv1", "rgb48le", ofSix},
};

class EachForm : public testing::TestWithParam<Form> {};

}  // namespace

TEST_P(EachForm, ShowsEachClipBitForBitOnItsSideOfTheEdge) {
  const Form& form = GetParam();
  const Pair pair = makePair(form.suffix, form.codec, form.format);
  const std::string output = at(std::string("joined") + form.suffix);
  join(pair, output, form.with({"--wipe", "edge-horz"}));
  const AVPixelFormat format = av_get_pix_fmt(form.format);  // FFV1 has planes of its own for some
  const Clip a = decodeAs(pair.a, format), b = decodeAs(pair.b, format);
  const Clip joined = decodeAs(output, format);
  ASSERT_EQ(decode(output).format, decode(pair.a).format);
  ASSERT_EQ(joined.frames.size(), kFrames);
  const std::size_t row = joined.rowBytes();
  for (std::size_t frame = 0; frame < kFrames; ++frame) {
    const std::size_t step = frame - kAt;
    for (std::size_t i = 0; i < joined.frames[frame].size(); ++i) {
      const bool isB =
          frame >= kAt + kDuration ||
          (frame >= kAt && form.columnOf(i % row) < static_cast<std::size_t>(edgeOf(step)));
      if (format == AV_PIX_FMT_BGR0 && i % 4 == 3)
        continue;  // the byte that nobody reads
      ASSERT_EQ(joined.frames[frame][i], isB ? b.frames[frame - kAt][i] : a.frames[frame][i])
          << "frame " << frame << " row " << i / row << " byte " << i % row;
    }
  }
}

TEST_P(EachForm, WritesEveryFrameAtItsTime) {
  const Form& form = GetParam();
  const Pair pair = makePair(form.suffix, form.codec, form.format);
  const std::string output = at(std::string("joined") + form.suffix);
  join(pair, output);
  const auto packets = packetsOf(output, AVMEDIA_TYPE_VIDEO);
  ASSERT_EQ(packets.size(), kFrames);
  for (std::size_t i = 0; i < kFrames; ++i)
    EXPECT_NEAR(packets[i].time, static_cast<double>(i) / 25.0, 0.0006)
        << i;  // milliseconds in .mkv
}

INSTANTIATE_TEST_SUITE_P(All, EachForm, testing::ValuesIn(kForms),
                         [](const testing::TestParamInfo<Form>& each) {
                           return std::string(each.param.name);
                         });

namespace {

/// Samples of three planes of 16-bit words.
const std::uint16_t* samplesOf(const Bytes& frame) {
  return reinterpret_cast<const std::uint16_t*>(frame.data());
}

/// In a classic transition, samples have their top eight bits, and an edge may lie within a pair.
void expectV210Wipe(const Clip& a, const Clip& b, const Clip& joined, bool classic) {
  ASSERT_EQ(joined.format, AV_PIX_FMT_YUV422P10);
  ASSERT_EQ(joined.frames.size(), kFrames);
  constexpr std::size_t kLuma = std::size_t{kWidth} * kHeight;
  for (std::size_t frame = 0; frame < kFrames; ++frame) {
    const bool mixed = frame >= kAt && frame < kAt + kDuration;
    for (std::size_t i = 0; i < 2 * kLuma; ++i) {
      const std::size_t own = i < kLuma ? i % kWidth : (i - kLuma) % (kWidth / 2) * 2;
      const std::size_t column = classic ? own : own / 2 * 2 + 1;
      const bool isB = frame >= kAt + kDuration ||
                       (mixed && column < static_cast<std::size_t>(edgeOf(frame - kAt)));
      const int source = isB ? samplesOf(b.frames[frame - kAt])[i] : samplesOf(a.frames[frame])[i];
      ASSERT_EQ(samplesOf(joined.frames[frame])[i], mixed && classic ? source & ~3 : source)
          << "frame " << frame << " sample " << i;
    }
  }
}

}  // namespace

TEST(WipeOfV210, KeepsAllTenBits) {
  const Pair pair = makePair(".mov", "v210", "");
  join(pair, at("joined.mov"), {"--wipe", "1"});
  expectV210Wipe(decode(pair.a), decode(pair.b), decode(at("joined.mov")), false);
}

TEST(WipeOfV210, KeepsTheTopEightBitsWhileAClassicOneRuns) {
  const Pair pair = makePair(".mov", "v210", "");
  join(pair, at("joined.mov"), {"--wipe", "1", "--classic"});
  expectV210Wipe(decode(pair.a), decode(pair.b), decode(at("joined.mov")), true);
}

TEST(WipeOfV210, MixesToTheNearestValue) {
  const Pair pair = makePair(".mov", "v210", "");
  join(pair, at("joined.mov"));
  const Clip a = decode(pair.a), b = decode(pair.b), joined = decode(at("joined.mov"));
  for (std::size_t step = 0; step < kDuration; ++step) {
    const std::size_t p = step + 1, range = kDuration + 1;
    for (std::size_t i = 0; i < std::size_t{2} * kWidth * kHeight; ++i) {
      const std::size_t sum =
          samplesOf(a.frames[kAt + step])[i] * (range - p) + samplesOf(b.frames[step])[i] * p;
      ASSERT_EQ(samplesOf(joined.frames[kAt + step])[i], (2 * sum + range) / (2 * range)) << i;
    }
  }
}

TEST(WipeOfV210, OfDecodedTenBitsIsTheSame) {
  const Pair pair = makePair(".mkv", "ffv1", "yuv422p10le");
  join(pair, at("joined.mkv"), {"--wipe", "1"});
  EXPECT_EQ(codecOf(at("joined.mkv")), "v210");
  expectV210Wipe(decode(pair.a), decode(pair.b), decode(at("joined.mkv")), false);
}

TEST(Wipe, CopiesPacketsOutsideTheTransitionBitForBit) {
  for (const auto& [suffix, codec, format] : {std::tuple{".mov", "v210", ""},
                                              {".avi", "rawvideo", "bgr24"},
                                              {".nut", "rawvideo", "rgb48le"}}) {
    const Pair pair = makePair(suffix, codec, format);
    const std::string output = at(std::string("joined") + suffix);
    join(pair, output, {"--overwrite"});
    const auto a = packetsOf(pair.a, AVMEDIA_TYPE_VIDEO), b = packetsOf(pair.b, AVMEDIA_TYPE_VIDEO);
    const auto joined = packetsOf(output, AVMEDIA_TYPE_VIDEO);
    ASSERT_EQ(joined.size(), kFrames);
    for (std::size_t i = 0; i < kAt; ++i)
      EXPECT_EQ(joined[i].bytes, a[i].bytes) << suffix << i;
    for (std::size_t i = kAt + kDuration; i < kFrames; ++i)
      EXPECT_EQ(joined[i].bytes, b[i - kAt].bytes) << suffix << i;
  }
}

TEST(Wipe, OfTwoKindsOfFilesIntoAThird) {
  const Pair pair = {at("a.avi"), at("b.mov")};  // bottom row first, top row first
  makeClip(pair.a, "rawvideo", "bgra", kFramesA, 1);
  makeClip(pair.b, "rawvideo", "bgra", kFramesB, 2);
  join(pair, at("joined.nut"));
  const Clip a = decode(pair.a), b = decode(pair.b), joined = decode(at("joined.nut"));
  ASSERT_EQ(joined.frames.size(), kFrames);
  EXPECT_EQ(joined.format, AV_PIX_FMT_BGRA);
  EXPECT_EQ(joined.frames[0], a.frames[0]);
  EXPECT_EQ(joined.frames[kAt - 1], a.frames[kAt - 1]);
  EXPECT_EQ(joined.frames[kFrames - 1], b.frames[kFramesB - 1]);
}

TEST(Wipe, OfTwoLayoutsTakesTheFirstOnesColours) {
  const Pair pair = {at("a.mov"), at("b.mov")};
  makeClip(pair.a, "rawvideo", "uyvy422", kFramesA, 1);
  makeClip(pair.b, "rawvideo", "rgb24", kFramesB, 2);
  join(pair, at("joined.mov"));
  const Clip a = decode(pair.a), joined = decode(at("joined.mov"));
  EXPECT_EQ(joined.format, AV_PIX_FMT_UYVY422);
  ASSERT_EQ(joined.frames.size(), kFrames);
  EXPECT_EQ(joined.frames[0], a.frames[0]);
}

TEST(Wipe, IntoAnotherCodec) {
  const Pair pair = makePair(".mov", "rawvideo", "uyvy422");
  join(pair, at("joined.mp4"), {"--codec", "mpeg4:b=2000000"});
  EXPECT_EQ(codecOf(at("joined.mp4")), "mpeg4");
  EXPECT_EQ(decode(at("joined.mp4")).frames.size(), kFrames);
}

namespace {

/// What the library draws for frame `step` of the transition.
Bytes drawn(const Clip& a, const Clip& b, std::size_t step, std::uint32_t word,
            std::uint32_t position, decltype(&NKDraw_ExactWipe) draw) {
  Bytes frame(a.frames[0].size());
  const NKWipe wipe = {a.frames[kAt + step].data(),
                       kWidth * 4,
                       b.frames[step].data(),
                       kWidth * 4,
                       frame.data(),
                       kWidth * 4,
                       word,
                       ptBGRA32,
                       kWidth,
                       kHeight,
                       position,
                       kDuration + 1};
  EXPECT_EQ(draw(&wipe), NKStatusOk);
  return frame;
}

void expectWipe(const std::string& output, const Pair& pair, std::uint32_t word, bool backwards,
                decltype(&NKDraw_ExactWipe) draw = NKDraw_ExactWipe) {
  const Clip a = decode(pair.a), b = decode(pair.b), joined = decode(output);
  ASSERT_EQ(joined.frames.size(), kFrames);
  for (std::size_t step = 0; step < kDuration; ++step) {
    const auto position = static_cast<std::uint32_t>(backwards ? kDuration - step : step + 1);
    ASSERT_EQ(joined.frames[kAt + step], drawn(a, b, step, word, position, draw)) << step;
  }
}

}  // namespace

TEST(Wipe, OfEveryNameIsWhatTheLibraryDraws) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  for (const WipeName& wipe : wipeNames()) {
    SCOPED_TRACE(wipe.name);
    join(pair, at("joined.mov"), {"--overwrite", "--wipe", std::string(wipe.name)});
    expectWipe(at("joined.mov"), pair, wipe.number, false);
  }
}

TEST(Wipe, ClassicIsWhatTheOlderCallDraws) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  join(pair, at("joined.mov"), {"--classic"});
  expectWipe(at("joined.mov"), pair, NKWipeDissolve, false, NKDraw_CompleteWipe);
}

TEST(Wipe, SwapGoesFromTheSecondToTheFirst) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  join(pair, at("joined.mov"), {"--wipe", "corner-tl", "--swap"});
  expectWipe(at("joined.mov"), pair, 3U | NKWipeSwap, false);
}

TEST(Wipe, ReverseRunsThePatternBackwardsFromTheFirstToTheSecond) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  join(pair, at("joined.mov"), {"--wipe", "iris", "--reverse"});
  expectWipe(at("joined.mov"), pair, 41U | NKWipeSwap, true);
}

TEST(Wipe, OfOneFrameIsHalfWay) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  const Outcome outcome = nkdrawTool({"wipe", pair.a, pair.b, at("joined.mov"), "--wipe",
                                      "edge-horz", "--at", "0f", "--duration", "1f"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip a = decode(pair.a), b = decode(pair.b), joined = decode(at("joined.mov"));
  ASSERT_EQ(joined.frames.size(), kFramesB);
  for (std::size_t i = 0; i < joined.frames[0].size(); ++i)
    ASSERT_EQ(joined.frames[0][i], (i / 4 % kWidth < kWidth / 2 ? b : a).frames[0][i]) << i;
}

TEST(Wipe, TakesTimesInEveryForm) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  const char* const forms[][2] = {{"0.2", "0.16"},
                                  {"5f", "4f"},
                                  {"00:00:00:05", "00:00:00:04"},
                                  {"0:00:00.200", "00:00:00.16"}};
  for (const auto& form : forms) {
    const Outcome outcome = nkdrawTool({"wipe", pair.a, pair.b, at("joined.mov"), "--at", form[0],
                                        "--duration", form[1], "--dry-run"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("frame 5 (0.200 s), for 4 frames"), std::string::npos)
        << outcome.out;
  }
}

TEST(Wipe, UsesAllOfBothClips) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  const Outcome outcome =
      nkdrawTool({"wipe", pair.a, pair.b, at("joined.mov"), "--at", "2f", "--duration", "10f"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("joined.mov")).frames.size(), kFramesA);
}

TEST(Wipe, TakesATimecodeForOneOfTheFirstClip) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  ffmpeg({"-i", pair.a, "-c", "copy", "-timecode", "23:59:59:22", at("timed.mov")});
  const auto plan = [&](const char* time) {
    return nkdrawTool({"wipe", at("timed.mov"), pair.b, at("joined.mov"), "--at", time,
                       "--duration", "4f", "--dry-run"});
  };
  EXPECT_NE(plan("23:59:59:24").out.find("frame 2 ("), std::string::npos);
  EXPECT_NE(plan("00:00:00:02").out.find("frame 5 ("), std::string::npos) << "over midnight";
  EXPECT_NE(plan("5f").out.find("frame 5 ("), std::string::npos);
  const Outcome before = plan("23:59:59:21");
  EXPECT_EQ(before.exitCode, 1);
  EXPECT_NE(before.err.find("begins at 23:59:59:22"), std::string::npos) << before.err;
  EXPECT_EQ(plan("00:00:10:00").exitCode, 1) << "past its end";
  EXPECT_EQ(plan("00:00:00:25").exitCode, 1) << "no frame has this number";
}

TEST(Wipe, KeepsTheFirstClipsTimecode) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  ffmpeg({"-i", pair.a, "-c", "copy", "-timecode", "10:00:00:00", at("timed.mov")});
  join({at("timed.mov"), pair.b}, at("joined.mov"));
  EXPECT_EQ(decode(at("joined.mov")).timecode, "10:00:00:00");
}

TEST(WipeDryRun, TellsAndWritesNothing) {
  const Pair pair = makePair(".mov", "rawvideo", "bgra");
  const auto before = filesAtWork();
  const Outcome outcome = nkdrawTool({"wipe", pair.a, pair.b, at("joined.mov"), "--wipe", "iris",
                                      "--at", "5f", "--duration", "4f", "--dry-run"});
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* words : {"iris", "in place", "bgra", "15 frames", "frame 5"})
    EXPECT_NE(outcome.out.find(words), std::string::npos) << words << " in " << outcome.out;
  EXPECT_EQ(filesAtWork(), before);
}

TEST(WipeList, NamesEveryWipe) {
  const Outcome outcome = nkdrawTool({"wipe", "--list"});
  EXPECT_EQ(outcome.exitCode, 0);
  for (const WipeName& wipe : wipeNames())
    EXPECT_NE(outcome.out.find(wipe.name), std::string::npos) << wipe.name;
}
