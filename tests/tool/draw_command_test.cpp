// SPDX-License-Identifier: BSD-2-Clause
//
// The command `draw` as a user runs it: files, layouts, refusals, and frames that FFmpeg reads.
#include "clip.h"
#include "program.h"

#include <draw/draw_layouts.h>
#include <draw/draw_verbs.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

constexpr int kUsage = 1, kInput = 2, kOutput = 3;
constexpr int kWidth = 96, kHeight = 48;

constexpr char kPicture[] =
    "color 0.1 0.2 0.3\nfill 0 0 95 48\ncolor 1 0.5 0\ncircle 40 24 20\nline 0 0 95 47\n"
    "color 0 0.25 1\nfill 60 10 80 30\ncolor 1 1 1\ntext 4 16 20 Ab\n";

Bytes bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string write(const std::string& name, const std::string& text) {
  std::ofstream(at(name), std::ios::binary) << text;
  return at(name);
}

Arguments drawing(const std::string& output, const std::string& layout,
                  const std::string& text = kPicture) {
  return {"draw",
          write("s.nkd", text),
          at(output),
          "--layout",
          layout,
          "--size",
          std::to_string(kWidth) + "x" + std::to_string(kHeight)};
}

Bytes drawRaw(const std::string& layout, const std::string& text = kPicture) {
  const Outcome outcome = nkdrawTool(drawing(layout + ".raw", layout, text));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out + outcome.err, "");
  return bytesOf(at(layout + ".raw"));
}

Clip drawPNG(const std::string& layout, const std::string& text = kPicture) {
  const Outcome outcome = nkdrawTool(drawing(layout + ".png", layout, text));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return decode(at(layout + ".png"));
}

/// The raw frame of this name as FFmpeg reads it.
Clip decodeRaw(const std::string& raw, const std::string& format, const std::string& to) {
  ffmpeg({"-f", "rawvideo", "-pix_fmt", format, "-video_size",
          std::to_string(kWidth) + "x" + std::to_string(kHeight), "-i", at(raw), "-c:v", "rawvideo",
          "-pix_fmt", to, "-f", "nut", at("read.nut")});
  return decode(at("read.nut"));
}

int word(const Bytes& bytes, std::size_t index) {
  return bytes[2 * index] | bytes[2 * index + 1] << 8;
}

/// A byte of a channel, as pictures are written.
int channel(double value) {
  return static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

/// The library's BT.601 studio matrix on 8-bit samples.
std::array<int, 3> rgbOf(double y, double cb, double cr) {
  const double luma = (y - 16) * 1.164;
  return {channel((luma + (cr - 128) * 1.596) / 256),
          channel((luma - (cr - 128) * 0.813 - (cb - 128) * 0.391) / 256),
          channel((luma + (cb - 128) * 2.017) / 256)};
}

}  // namespace

TEST(DrawCommand, WritesEveryLayoutRawAndAsAPicture) {
  for (const auto& layout : nkdraw::tool::drawLayouts()) {
    const std::string name(layout.name);
    auto surface = layout.make(layout.type).surface;
    surface->SetCanvas(nullptr, kHeight, kWidth, 0);
    EXPECT_EQ(drawRaw(name).size(), surface->BufferLength()) << name;
    const Clip picture = drawPNG(name, "circle 40 24 20");
    EXPECT_EQ(picture.format, AV_PIX_FMT_RGB24);
    EXPECT_EQ(picture.width, kWidth);
    EXPECT_EQ(picture.height, kHeight);
    EXPECT_GT(std::ranges::max(picture.frames[0]), std::ranges::min(picture.frames[0])) << name;
  }
}

TEST(DrawCommand, ReadsTheStandardInput) {
  const Outcome outcome =
      runProgram("bash", {"-c", "printf 'color 1 0 0\\nerase' | \"$@\"", "bash", NKDRAW_TOOL,
                          "draw", "-", at("o.raw"), "--layout", "rgb24", "--size", "2x1"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(bytesOf(at("o.raw")), (Bytes{255, 0, 0, 255, 0, 0}));
  const Outcome bad =
      runProgram("bash", {"-c", "printf 'lane' | \"$@\"", "bash", NKDRAW_TOOL, "draw", "-",
                          at("p.raw"), "--layout", "rgb24", "--size", "2x1"});
  EXPECT_EQ(bad.exitCode, kInput);
  EXPECT_NE(bad.err.find("standard input:1:1, 'lane'; the nearest is line"), std::string::npos);
}

TEST(DrawCommand, RefusesAStandardInputThatCannotBeRead) {
  for (const char* const redirection : {"<&-", "< ."}) {
    const Outcome outcome =
        runProgram("bash", {"-c", std::string("\"$@\" ") + redirection, "bash", NKDRAW_TOOL, "draw",
                            "-", at("o.png"), "--layout", "rgb24", "--size", "2x1"});
    EXPECT_EQ(outcome.exitCode, kInput) << redirection;
    EXPECT_TRUE(outcome.err.starts_with("nkdraw: cannot read the script: standard input; "))
        << outcome.err;
    EXPECT_FALSE(exists(at("o.png"))) << redirection;
  }
}

TEST(DrawCommand, RefusesWhatLeavesTheFrameAndWritesNothing) {
  expectRefusal(drawing("o.png", "bgra", "erase\n  circle 90 24 20"), kInput, "s.nkd:2:3, circle");
  Arguments clipped = drawing("o.png", "bgra", "erase\n  circle 90 24 20");
  clipped.emplace_back("--clip");
  EXPECT_EQ(nkdrawTool(clipped).exitCode, 0);
}

TEST(DrawCommand, RefusesBadArguments) {
  const std::string script = write("s.nkd", "erase");
  const std::string out = at("o.png");
  const auto refused = [&](const Arguments& arguments, int code, const char* words) {
    Arguments all = {"draw"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    expectRefusal(all, code, words);
  };
  refused({}, kUsage, "no files named");
  refused({script}, kUsage, "no files named");
  refused({script, out}, kUsage, "no layout");
  refused({script, out, "--layout", "bgra"}, kUsage, "no size");
  refused({script, out, "--layout", "bgr", "--size", "8x8"}, kUsage, "the nearest is bgra");
  refused({script, out, "--layout", "yuyv", "--size", "8x8"}, kUsage, "the nearest is yuy2");
  refused({script, out, "--layout", "", "--size", "8x8"}, kUsage, "(empty)");
  for (const char* const size :
       {"8", "8x", "x8", "8x8x8", "0x8", "8x-8", "8193x8", "8x99999999999"})
    refused({script, out, "--layout", "bgra", "--size", size}, kUsage, "not a value of --size");
  refused({script, out, "--layout", "uyvy", "--size", "9x8"}, kUsage, "give an even width");
  refused({script, out, "--layout", "bayer_rggb", "--size", "8x9"}, kUsage,
          "give an even width and height");
  refused({script, at("o.jpg"), "--layout", "bgra", "--size", "8x8"}, kUsage, ".png or .raw");
  refused({script, script, "--layout", "bgra", "--size", "8x8"}, kUsage, ".png or .raw");
  refused({at("none.nkd"), out, "--layout", "bgra", "--size", "8x8"}, kInput, "No such file");
  refused({workFolder(), out, "--layout", "bgra", "--size", "8x8"}, kInput, "Is a directory");
  refused({script, at("none/o.png"), "--layout", "bgra", "--size", "8x8"}, kOutput, "cannot write");
  const std::string raw = write("s.raw", "erase");
  refused({raw, raw, "--layout", "bgra", "--size", "8x8", "--overwrite"}, kUsage,
          "the output is the script");
}

TEST(DrawCommand, ReplacesAnOutputOnlyWhenTold) {
  Arguments arguments = drawing("o.raw", "rgb24");
  write("o.raw", "old");
  expectRefusal(arguments, kOutput, "the output exists");
  EXPECT_EQ(bytesOf(at("o.raw")).size(), 3U);
  arguments.emplace_back("--overwrite");
  EXPECT_EQ(nkdrawTool(arguments).exitCode, 0);
  EXPECT_EQ(bytesOf(at("o.raw")).size(), std::size_t{kWidth} * kHeight * 3);
}

TEST(DrawCommand, RefusesHostileScripts) {
  expectRefusal(drawing("o.png", "bgra", std::string(std::size_t{2} << 20, 'x')), kInput,
                "too long a line");
  expectRefusal(drawing("o.png", "bgra", std::string(std::size_t{5} << 20, '\n')), kInput,
                "longer than 4 MiB");
  expectRefusal(drawing("o.png", "bgra", std::string("line\0 1 2 3 4", 13)), kInput,
                "s.nkd:1:1, 'line?'");
  expectRefusal(drawing("o.png", "bgra", "circle 9 9 2147483648"), kInput, "s.nkd:1:12");
  expectRefusal(drawing("o.png", "bgra", "\n\r\n\nline 1 2 3"), kInput, "s.nkd:4:11");
}

TEST(DrawCommand, DrawsWithCRLFAndWithoutALastLineEnd) {
  std::string crlf;
  for (const char letter : std::string_view(kPicture))
    crlf += letter == '\n' ? "\r\n" : std::string(1, letter);
  crlf.resize(crlf.size() - 2);
  const Bytes expected = drawRaw("bgra");
  fs::remove(at("bgra.raw"));
  EXPECT_EQ(drawRaw("bgra", crlf), expected);
}

TEST(DrawCommand, ListsItsVerbsAndLayouts) {
  const Outcome layouts = nkdrawTool({"draw", "--list-layouts"});
  EXPECT_EQ(std::ranges::count(layouts.out, '\n'),
            static_cast<std::ptrdiff_t>(nkdraw::tool::drawLayouts().size()));
  const Outcome verbs = nkdrawTool({"draw", "--list-verbs"});
  for (const auto& verb : nkdraw::tool::verbs())
    EXPECT_NE(verbs.out.find(std::string(verb.usage)), std::string::npos) << verb.name;
}

// What FFmpeg makes of the raw frames.

TEST(DrawnFrames, OfEightBitRGBAreThePictureToFFmpeg) {
  for (const char* const layout : {"rgba", "argb", "bgra", "abgr", "rgb24", "bgr24"}) {
    drawRaw(layout);
    EXPECT_EQ(decodeRaw(std::string(layout) + ".raw", layout, "rgb24").frames,
              drawPNG(layout).frames)
        << layout;
  }
}

TEST(DrawnFrames, OfDeepRGBHaveTheWordsOfThePicture) {
  constexpr char kShape[] = "circle 40 24 20\nline 0 0 95 47";
  for (const std::string layout : {"rgb48", "rgbhalf48"}) {
    drawRaw(layout, kShape);
    const Clip read = decodeRaw(layout + ".raw", "rgb48le", "rgb48le");
    const Clip picture = drawPNG(layout, kShape);
    for (std::size_t i = 0; i < picture.frames[0].size(); ++i)
      ASSERT_EQ(word(read.frames[0], i), picture.frames[0][i]) << layout;
  }
}

TEST(DrawnFrames, OfUYVYAreThePictureByTheMatrix) {
  drawRaw("uyvy");
  const Clip read = decodeRaw("uyvy.raw", "uyvy422", "yuv422p");
  const Clip picture = drawPNG("uyvy");
  const std::size_t luma = std::size_t{kWidth} * kHeight, chroma = luma / 2;
  for (std::size_t i = 0; i < luma; ++i) {
    const auto expected = rgbOf(read.frames[0][i], read.frames[0][luma + i / 2],
                                read.frames[0][luma + chroma + i / 2]);
    for (std::size_t c = 0; c < 3; ++c)
      ASSERT_EQ(picture.frames[0][3 * i + c], expected[c]) << i;
  }
}

/// The sixth pixel of a group is read with the third's luma.
TEST(DrawnFrames, OfV210HaveTheCodesOfThePictureButForEachSixthPixel) {
  drawRaw("v210");
  ffmpeg({"-f", "v210", "-video_size", "96x48", "-i", at("v210.raw"), "-c:v", "rawvideo",
          "-pix_fmt", "yuv422p10le", "-f", "nut", at("read.nut")});
  const Clip read = decode(at("read.nut"));
  const Clip picture = drawPNG("v210");
  const std::size_t luma = std::size_t{kWidth} * kHeight, chroma = luma / 2;
  for (std::size_t i = 0; i < luma; ++i) {
    if (i % kWidth % 6 == 5)
      continue;
    const double y = word(read.frames[0], i) / 1024.0,
                 cb = word(read.frames[0], luma + i / 2) / 1024.0,
                 cr = word(read.frames[0], luma + chroma + i / 2) / 1024.0;
    double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
    NKPixel().YCbCrToRGB(y, cb, cr, 0.0, r, g, b, a);
    ASSERT_EQ(picture.frames[0][3 * i], channel(r)) << i;
    ASSERT_EQ(picture.frames[0][3 * i + 1], channel(g)) << i;
    ASSERT_EQ(picture.frames[0][3 * i + 2], channel(b)) << i;
  }
}

/// A DPX file of these ten-bit words: one element, packed from the left.
void writeDPX(const std::string& path, const Bytes& words) {
  constexpr std::size_t kHeader = 2048;
  Bytes file(kHeader);
  const auto put = [&](std::size_t at, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
      file[at + static_cast<std::size_t>(i)] =
          static_cast<std::uint8_t>(value >> (8 * (bytes - 1 - i)));
  };
  std::memcpy(file.data(), "SDPX", 4);
  put(4, kHeader, 4);
  std::memcpy(&file[8], "V1.0", 4);
  put(16, static_cast<std::uint32_t>(kHeader + words.size()), 4);
  put(660, 0xFFFFFFFF, 4);  // not encrypted
  put(770, 1, 2);           // one element
  put(772, kWidth, 4);
  put(776, kHeight, 4);
  put(800, 50, 1);  // R, G, B
  put(803, 10, 1);  // bits
  put(804, 1, 2);   // filled to 32 bits, method A
  put(808, kHeader, 4);
  file.insert(file.end(), words.begin(), words.end());
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

TEST(DrawnFrames, OfTenBitRGBInADPXFileHaveTheCodesOfThePicture) {
  writeDPX(at("frame.dpx"), drawRaw("rgb30dpx"));
  const Clip read = decode(at("frame.dpx"));
  ASSERT_EQ(read.format, AV_PIX_FMT_GBRP10LE);
  const Clip picture = drawPNG("rgb30dpx");
  const std::size_t plane = std::size_t{kWidth} * kHeight;
  constexpr std::size_t kPlaneOf[] = {2, 0, 1};  // red, green, blue
  for (std::size_t i = 0; i < plane; ++i) {
    for (std::size_t c = 0; c < 3; ++c)
      ASSERT_EQ(picture.frames[0][3 * i + c],
                channel(word(read.frames[0], kPlaneOf[c] * plane + i) / 1023.0));
  }
}

/// FFmpeg has mosaics of eight bits, the upper ones of each sample. Samples of odd columns get
/// their low four bits from the neighbour's channel: whole greys come out the same, colours
/// within 15.
TEST(DrawnFrames, OfMosaicsAreTheCellsOfThePictureToFFmpeg) {
  const struct {
    const char* script;
    int tolerance;
  } kScripts[] = {{"color 1 1 1\nerase\ncolor 0 0 0\nfill 48 0 95 48", 0},
                  {"color 1 0 1\nerase\ncolor 1 1 0\nfill 48 0 95 48", 15},
                  {"color 0 0 1\nerase\ncolor 0 1 0\nfill 48 0 95 48", 15}};
  for (const std::string order : {"bggr", "rggb", "gbrg", "grbg"}) {
    for (const auto& [script, tolerance] : kScripts) {
      const Bytes packed = drawRaw("bayer_" + order, script);
      std::string samples;
      for (std::size_t i = 0; i + 2 < packed.size(); i += 3) {
        samples += static_cast<char>(packed[i]);
        samples += static_cast<char>((packed[i + 1] & 0x0F) << 4 | packed[i + 2] >> 4);
      }
      write("samples.raw", samples);
      const Clip read = decodeRaw("samples.raw", "bayer_" + order + "8", "rgb24");
      const Clip picture = drawPNG("bayer_" + order, script);
      fs::remove(at("bayer_" + order + ".raw"));
      fs::remove(at("bayer_" + order + ".png"));
      for (std::size_t i = 0; i < read.frames[0].size(); ++i) {
        const std::size_t x = i / 3 % kWidth, y = i / 3 / kWidth;
        const bool isInside = x >= 4 && x < kWidth - 4 && (x < 43 || x > 53) && y >= 4 && y < 44;
        ASSERT_TRUE(!isInside || std::abs(read.frames[0][i] - picture.frames[0][i]) <= tolerance)
            << order << " " << x << "," << y;
      }
    }
  }
}
