// SPDX-License-Identifier: BSD-2-Clause
//
// Image sequences as inputs and outputs of burnin, and stills of every kind.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

namespace fs = std::filesystem;

constexpr int kWidth = 320, kFrames = 3;
constexpr int kUsage = 1, kInput = 2, kOutput = 3;

/// Pictures in this format, the first with the number 5.
void makePictures(const std::string& name, const std::string& format, int frames = kFrames) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=24", "-frames:v", std::to_string(frames),
          "-pix_fmt", format, "-start_number", "5", at(name)});
}

std::string picture(const std::string& head, int number, const std::string& suffix) {
  return at(head + "000" + std::to_string(number) + suffix);
}

/// Small texts at the upper left, so that all below is the picture's own.
Outcome burnSmall(Arguments arguments) {
  arguments.insert(arguments.end(), {"--position", "0,0", "--timecode-size", "1"});
  return burnin(arguments);
}
constexpr int kDrawnRows = 12, kDrawnColumns = 100;

/// Whether two pictures of packed pixels are equal outside the text, and only there.
void expectEqualOutside(const Clip& before, const Clip& after) {
  ASSERT_EQ(before.format, after.format);
  ASSERT_EQ(before.frames.size(), 1U);
  ASSERT_EQ(after.frames.size(), 1U);
  const std::size_t row = before.rowBytes();
  const std::size_t pixel = row / kWidth;
  bool drawn = false;
  for (std::size_t i = 0; i < before.frames[0].size(); ++i) {
    const bool inText = i / row < kDrawnRows && i % row < kDrawnColumns * pixel;
    const bool equal = before.frames[0][i] == after.frames[0][i];
    ASSERT_TRUE(equal || inText) << "row " << i / row << ", byte " << i % row;
    drawn = drawn || !equal;
  }
  EXPECT_TRUE(drawn);
}

Bytes bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The timecode of a DPX file, as FFmpeg reads it.
std::string timecodeOfDPX(const std::string& path) {
  const Outcome outcome = runProgram(
      "ffprobe", {"-v", "error", "-show_entries", "frame_tags=timecode", "-of", "csv=p=0", path});
  return outcome.out.substr(0, std::string_view("hh:mm:ss:ff").size());
}

}  // namespace

TEST(Sequence, OfPNGKeepsAllPixelsOutsideTheTextAndItsNumbers) {
  for (const std::string format : {"rgb24", "rgba", "rgb48be", "rgba64be", "gray"}) {
    const std::string in = "in_" + format + "_", out = "out_" + format + "_";
    makePictures(in + "%04d.png", format);
    const Outcome outcome = burnSmall({at(in + "%04d.png"), at(out + "%04d.png")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    for (int i = 5; i < 5 + kFrames; ++i)
      expectEqualOutside(decode(picture(in, i, ".png")), decode(picture(out, i, ".png")));
  }
}

TEST(Sequence, OfTIFFKeepsAllPixelsOutsideTheText) {
  for (const std::string format : {"rgb24", "rgb48le", "rgba64le"}) {
    makePictures(format + "_%04d.tif", format);
    ASSERT_EQ(burnSmall({at(format + "_%04d.tif"), at("out" + format + "_%04d.tif")}).exitCode, 0);
    expectEqualOutside(decode(picture(format + "_", 6, ".tif")),
                       decode(picture("out" + format + "_", 6, ".tif")));
  }
}

TEST(Sequence, OfDPXHasTheTimecodeInEachHeader) {
  makePictures("in%04d.dpx", "gbrp10le");
  const Outcome first =
      burnSmall({at("in%04d.dpx"), at("tc%04d.dpx"), "--start-timecode", "10:00:00:22"});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  EXPECT_EQ(timecodeOfDPX(picture("tc", 5, ".dpx")), "10:00:00:22");
  EXPECT_EQ(timecodeOfDPX(picture("tc", 7, ".dpx")), "10:00:01:00");
  const Clip before = decodeAs(picture("in", 6, ".dpx"), AV_PIX_FMT_RGB48LE);
  expectEqualOutside(before, decodeAs(picture("tc", 6, ".dpx"), AV_PIX_FMT_RGB48LE));

  ASSERT_EQ(burnSmall({at("tc%04d.dpx"), at("out%04d.png"), "--frames", "1-2"}).exitCode, 0);
  const Clip shown = decodeAs(picture("out", 7, ".png"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(shown, 0, 0, 0, 1, 11), "10:00:01:00");
  EXPECT_FALSE(exists(picture("out", 5, ".png")));
}

TEST(Sequence, OfDPXTellsDropFrameAndItsRate) {
  makePictures("in%04d.dpx", "rgb24");
  ASSERT_EQ(burnSmall({at("in%04d.dpx"), at("tc%04d.dpx"), "--start-timecode", "01:00:59;29",
                       "--input-rate", "29.97"})
                .exitCode,
            0);
  EXPECT_EQ(timecodeOfDPX(picture("tc", 6, ".dpx")), "01:01:00;02");
  const Outcome outcome = burnSmall({at("tc%04d.dpx"), at("out%04d.dpx")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(timecodeOfDPX(picture("out", 6, ".dpx")), "01:01:00;02");
}

TEST(Sequence, OfDPXAboveThirtyFramesASecondHasNoTimecodeAndTheRunSaysSo) {
  makePictures("in%04d.dpx", "rgb24");
  const std::string note = "the pictures hold no timecode: DPX counts up to 30 frames a second";
  for (const std::string rate : {"30", "50", "59.94"}) {
    const std::string out = "at" + rate + "_";
    const Arguments run = {at("in%04d.dpx"), at(out + "%04d.dpx"), "--start-timecode",
                           "10:00:00:28",    "--input-rate",       rate};
    Arguments dry = run;
    dry.emplace_back("--dry-run");
    const bool isTold = rate == "30";
    EXPECT_EQ(burnin(dry).out.find(note) == std::string::npos, isTold);
    const Outcome outcome = burnSmall(run);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, isTold ? "" : "nkdraw: note: " + note + "\n");
    for (int number = 5; number < 5 + kFrames; ++number) {
      const Bytes file = bytesOf(picture(out, number, ".dpx"));
      const bool isUnknown = std::all_of(file.begin() + 1920, file.begin() + 1924,
                                         [](std::uint8_t byte) { return byte == 0xFF; });
      EXPECT_NE(isUnknown, isTold) << rate << ", picture " << number;
    }
  }
  EXPECT_EQ(timecodeOfDPX(picture("at30_", 6, ".dpx")), "10:00:00:29");
}

TEST(Sequence, OfDPXHasAHeaderThatTellsItsOwnSizes) {
  makePictures("in%04d.dpx", "rgb48le", 1);
  for (const std::string order : {"le", "be"}) {
    const std::string out = "out" + order;
    ASSERT_EQ(
        burnSmall({at("in%04d.dpx"), at(out + "%04d.dpx"), "--codec", "dpx:pix_fmt=rgb48" + order})
            .exitCode,
        0);
    const Bytes file = bytesOf(picture(out, 5, ".dpx"));
    const auto word = [&](std::size_t at) {
      Bytes bytes(file.begin() + static_cast<std::ptrdiff_t>(at),
                  file.begin() + static_cast<std::ptrdiff_t>(at) + 4);
      if (order == "le")
        std::ranges::reverse(bytes);
      return std::size_t{bytes[0]} << 24 | std::size_t{bytes[1]} << 16 |
             std::size_t{bytes[2]} << 8 | bytes[3];
    };
    EXPECT_EQ(word(0), 0x53445058U);
    EXPECT_EQ(word(4), 2048U);
    EXPECT_EQ(word(16), file.size());
    EXPECT_EQ(word(24) + word(28), 2048U);
    EXPECT_EQ(word(808), 2048U);
    EXPECT_EQ(word(1920), 0xFFFFFFFFU) << "the clip has no timecode";
  }
}

TEST(Sequence, OfDPXKeepsWhatItsHeaderSaysOfColours) {
  makePictures("in%04d.dpx", "gbrp10le", 1);
  std::fstream file(picture("in", 5, ".dpx"), std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(801).write("\x01\x01", 2);  // printing density
  file.close();
  ASSERT_EQ(burnSmall({at("in%04d.dpx"), at("out%04d.dpx")}).exitCode, 0);
  const Bytes out = bytesOf(picture("out", 5, ".dpx"));
  EXPECT_EQ(out[801], 1);
  EXPECT_EQ(out[802], 1);
}

TEST(Sequence, OfDPXKeepsItsTenBitsAsPNG) {
  makePictures("in%04d.dpx", "gbrp10le");
  ASSERT_EQ(burnSmall({at("in%04d.dpx"), at("out%04d.png")}).exitCode, 0);
  const Clip out = decode(picture("out", 6, ".png"));
  EXPECT_EQ(out.format, AV_PIX_FMT_RGB48BE);
  ffmpeg({"-i", picture("in", 6, ".dpx"), "-pix_fmt", "rgb48be", "-sws_flags",
          "accurate_rnd+bitexact", at("expected.png")});
  expectEqualOutside(decode(at("expected.png")), out);
}

TEST(Sequence, BecomesAClipAtTheRateAskedFor) {
  makePictures("in%04d.png", "rgb24");
  ASSERT_EQ(burnSmall({at("in%04d.png"), at("out.mov"), "--input-rate", "25"}).exitCode, 0);
  const auto packets = packetsOf(at("out.mov"), AVMEDIA_TYPE_VIDEO);
  ASSERT_EQ(packets.size(), 3U);
  EXPECT_DOUBLE_EQ(packets[1].time, 1.0 / 25);
  EXPECT_EQ(decode(at("out.mov")).format, AV_PIX_FMT_RGB24);
}

TEST(Sequence, HasTwentyFourFramesASecondAndTheRunSaysSo) {
  makePictures("in%04d.png", "rgb24");
  const Outcome outcome = burnSmall({at("in%04d.png"), at("out.mov")});
  EXPECT_NE(outcome.err.find("24 frames/s"), std::string::npos) << outcome.err;
  EXPECT_DOUBLE_EQ(packetsOf(at("out.mov"), AVMEDIA_TYPE_VIDEO)[1].time, 1.0 / 24);
}

TEST(Sequence, OfAClipIsNumberedAsItsFrames) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5", "-c:v",
          "rawvideo", "-pix_fmt", "bgr24", "-timecode", "10:00:00:00", at("in.avi")});
  ASSERT_EQ(burnSmall({at("in.avi"), at("clip.avi")}).exitCode, 0);
  ASSERT_EQ(burnSmall({at("in.avi"), at("out%d.png"), "--frames", "2-3"}).exitCode, 0);
  EXPECT_FALSE(exists(at("out1.png")));
  EXPECT_FALSE(exists(at("out4.png")));
  EXPECT_TRUE(decodeAs(at("out3.png"), AV_PIX_FMT_BGR24).frames[0] ==
              decodeAs(at("clip.avi"), AV_PIX_FMT_BGR24).frames[3]);
  ASSERT_EQ(burnSmall({at("in.avi"), at("n%02d.dpx"), "--start-number", "90"}).exitCode, 0);
  EXPECT_EQ(timecodeOfDPX(at("n94.dpx")), "10:00:00:04");
}

TEST(Sequence, OfV210BecomesTenBitDPX) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "v210",
          at("in.mov")});
  const Outcome outcome = burnSmall({at("in.mov"), at("out%04d.dpx")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out0001.dpx")).format, AV_PIX_FMT_GBRP10LE);
  EXPECT_NE(outcome.err.find("yuv422p10le become gbrp10"), std::string::npos) << outcome.err;
}

TEST(Sequence, OfEXRKeepsFloatingPointOutsideTheText) {
  makePictures("in%04d.exr", "gbrpf32le");
  const Outcome outcome = burnSmall({at("in%04d.exr"), at("out%04d.exr")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err.find("drawn on in"), std::string::npos) << outcome.err;
  const Clip before = decode(picture("in", 7, ".exr")), after = decode(picture("out", 7, ".exr"));
  ASSERT_EQ(after.format, AV_PIX_FMT_GBRPF32LE);
  ASSERT_EQ(after.frames[0].size(), before.frames[0].size());
  int drawn = 0;
  for (std::size_t i = 0; i < before.frames[0].size(); ++i) {
    const std::size_t sample = i / sizeof(float);
    const bool inText = sample / kWidth % 180 < kDrawnRows && sample % kWidth < kDrawnColumns;
    const bool equal = before.frames[0][i] == after.frames[0][i];
    ASSERT_TRUE(equal || inText) << "sample " << sample;
    drawn += equal ? 0 : 1;
  }
  EXPECT_GT(drawn, 0);
}

TEST(Sequence, EndsAtAGapAndTheRunSaysSo) {
  makePictures("in%04d.png", "rgb24", 5);  // 5 to 9
  fs::remove(picture("in", 7, ".png"));
  const Outcome outcome = burnSmall({at("in%04d.png"), at("out%04d.png")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("there is no " + picture("in", 7, ".png")), std::string::npos);
  EXPECT_TRUE(exists(picture("out", 6, ".png")));
  EXPECT_FALSE(exists(picture("out", 8, ".png")));
  ASSERT_EQ(burnSmall({at("in%04d.png"), at("rest%04d.png"), "--start-number", "8"}).exitCode, 0);
  EXPECT_TRUE(exists(picture("rest", 9, ".png")));
}

TEST(Sequence, ReplacesPicturesOnlyWhenAsked) {
  makePictures("in%04d.png", "rgb24");
  std::ofstream(picture("out", 6, ".png")) << "precious";
  expectRefusal({"burnin", at("in%04d.png"), at("out%04d.png")}, kOutput, "out0006.png");
  EXPECT_EQ(fs::file_size(picture("out", 6, ".png")), 8U);
  ASSERT_EQ(burnSmall({at("in%04d.png"), at("out%04d.png"), "--overwrite"}).exitCode, 0);
  EXPECT_EQ(decode(picture("out", 6, ".png")).width, kWidth);
}

TEST(Sequence, ThatBreaksOffLeavesNothingBehind) {
  makePictures("in%04d.png", "rgb24");
  for (const int bad : {7, 5}) {
    fs::resize_file(picture("in", bad, ".png"), 300);
    const std::size_t files = filesAtWork().size();
    EXPECT_NE(burnSmall({at("in%04d.png"), at("out%04d.png")}).exitCode, 0);
    EXPECT_EQ(filesAtWork().size(), files);
  }
}

TEST(Sequence, ThatChangesItsSizeIsRefused) {
  makePictures("in%04d.png", "rgb24");
  ffmpeg({"-y", "-f", "lavfi", "-i", "testsrc2=size=160x90", "-frames:v", "1",
          picture("in", 6, ".png")});
  expectRefusal({"burnin", at("in%04d.png"), at("out%04d.png"), "--input-rate", "24"}, kInput,
                "change their size");
}

TEST(Sequence, RefusesWhatMakesNoSense) {
  makePictures("in%04d.png", "rgb24", 1);
  const std::string in = at("in%04d.png");
  expectRefusal({"burnin", at("none%04d.png"), at("o.mov")}, kInput, "there is no such picture");
  expectRefusal({"burnin", in, at("o.mov"), "--start-number", "7"}, kInput, "in0007.png");
  expectRefusal({"burnin", picture("in", 5, ".png"), at("o.mov"), "--start-number", "7"}, kUsage,
                "neither file");
  expectRefusal({"burnin", in, in, "--overwrite"}, kUsage, "the output is the input");
  expectRefusal({"burnin", in, at("o%04d.jpg")}, kUsage, "no sequences of such pictures");
  expectRefusal({"burnin", in, at("o.dpx")}, kUsage, "--still");
  expectRefusal({"burnin", in, at("o%04d.png"), "--codec", "dpx"}, kUsage, "the suffix says");
  expectRefusal({"burnin", in, at("none/o%04d.png")}, kOutput, "cannot write");
  expectRefusal({"burnin", "--layout", "uyvy", at("o%04d.png")}, kUsage, "as a clip");
}

TEST(Sequence, IsRefusedWithOptionsThatItDoesNotHave) {
  const std::string in = at("in%04d.png");
  for (const Arguments& option : {Arguments{"--lossless"}, Arguments{"--viewing-copy"},
                                  Arguments{"--container-option", "movflags=+faststart"}}) {
    Arguments run = {"burnin", in, at("o%04d.png")};
    run.insert(run.end(), option.begin(), option.end());
    expectRefusal(run, kUsage, option.front());
  }
}

TEST(Sequence, TakesAnEncodersOptions) {
  makePictures("in%04d.tif", "rgb24", 1);
  ASSERT_EQ(burnSmall({at("in%04d.tif"), at("a%04d.tif")}).exitCode, 0);
  ASSERT_EQ(burnSmall({at("in%04d.tif"), at("b%04d.tif"), "--codec", "tiff:compression_algo=raw"})
                .exitCode,
            0);
  EXPECT_GT(fs::file_size(picture("b", 5, ".tif")), fs::file_size(picture("a", 5, ".tif")));
  EXPECT_TRUE(decode(picture("a", 5, ".tif")).frames == decode(picture("b", 5, ".tif")).frames);
}

struct StillKind {
  const char* codec;
  const char* suffix;
  AVPixelFormat shallow, deep;
};
class StillKinds : public testing::TestWithParam<StillKind> {};

TEST_P(StillKinds, HoldAFrameWithItsBits) {
  const auto& [codec, suffix, shallow, deep] = GetParam();
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "ffv1",
          "-pix_fmt", "gbrp", at("8.mkv")});
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "ffv1",
          "-pix_fmt", "gbrp10le", at("10.mkv")});
  for (const std::string bits : {"8", "10"}) {
    const std::string out = at(bits + suffix);
    const Outcome outcome = burnSmall({at(bits + ".mkv"), out, "--still", "1"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(codecOf(out), codec);
    const Clip still = decode(out);
    EXPECT_EQ(still.format, bits == "8" ? shallow : deep);
    EXPECT_EQ(readText(decodeAs(out, AV_PIX_FMT_GRAY8), 0, 0, 0, 1, 11), "00:00:00:01");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Each, StillKinds,
    testing::Values(StillKind{"png", ".png", AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB48BE},
                    StillKind{"tiff", ".tif", AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB48LE},
                    StillKind{"dpx", ".dpx", AV_PIX_FMT_RGB24, AV_PIX_FMT_GBRP10LE},
                    StillKind{"mjpeg", ".jpg", AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUVJ444P}),
    [](const auto& kind) { return kind.param.codec; });

TEST(StillAsJPEG, HasTheColoursOfTheFrame) {
  ffmpeg({"-f", "lavfi", "-i", "color=0xC02040:size=1280x720:rate=25", "-frames:v", "1", "-c:v",
          "ffv1", "-pix_fmt", "gbrp", at("in.mkv")});
  ASSERT_EQ(burnSmall({at("in.mkv"), at("out.jpg"), "--still", "0"}).exitCode, 0);
  ffmpeg({"-i", at("out.jpg"), "-pix_fmt", "rgb24", at("back.png")});
  const Clip back = decode(at("back.png"));
  const std::size_t last = back.frames[0].size() - 3;
  EXPECT_NEAR(back.frames[0][last], 0xC0, 2);  // rounding of the JPEG
  EXPECT_NEAR(back.frames[0][last + 1], 0x20, 2);
  EXPECT_NEAR(back.frames[0][last + 2], 0x40, 2);
}

TEST(Sequence, WithAnEmptyPictureIsDamagedThere) {
  makePictures("in%04d.png", "rgb24");
  std::ofstream(picture("in", 6, ".png"), std::ios::trunc);
  const Outcome stopped = burnSmall({at("in%04d.png"), at("out%04d.png")});
  EXPECT_EQ(stopped.exitCode, 4) << stopped.err;
  EXPECT_NE(stopped.err.find("frame 1 "), std::string::npos) << stopped.err;
  const Outcome outcome =
      burnSmall({at("in%04d.png"), at("out%04d.png"), "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 5) << outcome.err;
  for (const int number : {5, 6, 7})
    EXPECT_TRUE(exists(picture("out", number, ".png"))) << number;
}
