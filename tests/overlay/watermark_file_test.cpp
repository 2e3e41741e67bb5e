// SPDX-License-Identifier: BSD-2-Clause
//
// Watermarks from files that FFmpeg has made, read by the media reader that comes with the library.
#include "exposed_overlay.h"

#include <tests/tool/program.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr std::uint32_t kRgb = 0, k8 = 0x32767579, k10 = 0x76323130;
constexpr int kWidth = 46, kHeight = 31;

/// The error log during its lifetime.
class Messages {
 public:
  Messages() { nkdraw::setLogSink(collect, this); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;
  ~Messages() { nkdraw::setLogSink(nullptr, nullptr); }

  std::vector<std::string> all;

 private:
  static void collect(const char* message, void* context) {
    static_cast<Messages*>(context)->all.emplace_back(message);
  }
};

/// A picture whose alpha rises from 0 at the left to 255.
const char* const kSource =
    "color=black:size=46x31:rate=25,format=rgba,"
    "geq=r='8*Y':g='255-5*X':b='4*X+2*Y':a='min(255,6*X)'";

struct Pixel {
  int blue, green, red, alpha;
};
Pixel pixelAt(int x, int y) {
  return {4 * x + 2 * y, 255 - 5 * x, 8 * y, std::min(255, 6 * x)};
}

std::string pictureFile(const std::string& name, const Arguments& codec) {
  Arguments arguments = {"-f", "lavfi", "-i", kSource, "-frames:v", "1"};
  arguments.insert(arguments.end(), codec.begin(), codec.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
  return at(name);
}

/// Loads it for frames of a layout, and expects no message.
void load(Overlay& overlay, const std::string& path, std::uint32_t layout) {
  const Messages messages;
  overlay.SetWatermarkPath(path.c_str());
  overlay.frameLayout = layout;
  EXPECT_EQ(overlay.LoadWatermark(), 0U);
  EXPECT_EQ(messages.all, std::vector<std::string>());
}

void expectPicture(const std::string& path, int colourTolerance, int alphaTolerance) {
  Overlay o;
  load(o, path, kRgb);
  ASSERT_NE(o.watermarkRGBA, nullptr) << path;
  ASSERT_EQ(o.watermarkWidth, static_cast<std::uint32_t>(kWidth));
  ASSERT_EQ(o.watermarkHeight, static_cast<std::uint32_t>(kHeight));
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const std::uint8_t* const got = o.watermarkRGBA + (y * kWidth + x) * 4;
      const Pixel wanted = pixelAt(x, y);
      ASSERT_NEAR(got[0], wanted.blue, colourTolerance) << path << " at " << x << "," << y;
      ASSERT_NEAR(got[1], wanted.green, colourTolerance) << path << " at " << x << "," << y;
      ASSERT_NEAR(got[2], wanted.red, colourTolerance) << path << " at " << x << "," << y;
      ASSERT_NEAR(got[3], wanted.alpha, alphaTolerance) << path << " at " << x << "," << y;
    }
  }
}

TEST(WatermarkFile, OfAStillFormatIsReadByteForByte) {
  for (const char* const name : {"logo.png", "logo.tiff"})
    expectPicture(pictureFile(name, {"-pix_fmt", "rgba", "-update", "1"}), 0, 0);
  expectPicture(pictureFile("logo.tga", {"-pix_fmt", "bgra", "-update", "1"}), 0, 0);
}

TEST(WatermarkFile, MayHaveAnyName) {
  const std::string made = pictureFile("logo.png", {"-pix_fmt", "rgba"});
  for (const char* const name :
       {"logo%03d.png", "logo[1].png", "l{o}g*?.png", "a: b.png", "logo"}) {
    std::filesystem::copy_file(made, at(name));
    expectPicture(at(name), 0, 0);
  }
}

TEST(WatermarkFile, OfSixteenBitsIsRounded) {
  expectPicture(pictureFile("deep.png", {"-pix_fmt", "rgba64be"}), 1, 1);
}

TEST(WatermarkFile, OfProResKeepsColourAndAlphaWithinItsRounding) {
  expectPicture(pictureFile("logo.mov",
                            {"-c:v", "prores_ks", "-profile:v", "4444", "-pix_fmt", "yuva444p10le",
                             "-alpha_bits", "16", "-qscale:v", "1", "-vendor", "apl0"}),
                6, 1);
}

TEST(WatermarkFile, WithoutAlphaIsOpaque) {
  Overlay o;
  load(o, pictureFile("opaque.png", {"-pix_fmt", "rgb24"}), kRgb);
  ASSERT_NE(o.watermarkRGBA, nullptr);
  for (int i = 0; i < kWidth * kHeight; ++i)
    ASSERT_EQ(o.watermarkRGBA[i * 4 + 3], 255);
}

TEST(WatermarkFile, OfFullRangeLumaKeepsItsGreys) {
  for (const int grey : {0, 40, 200, 255}) {
    const std::string colour = std::to_string(grey);
    ffmpeg({"-f", "lavfi", "-i",
            "color=black:size=16x16,format=rgb24,geq=r=" + colour + ":g=" + colour + ":b=" + colour,
            "-frames:v", "1", "-pix_fmt", "yuvj420p", "-q:v", "1", at("grey.jpg")});
    Overlay o;
    load(o, at("grey.jpg"), kRgb);
    ASSERT_NE(o.watermarkRGBA, nullptr);
    for (int channel = 0; channel < 3; ++channel)
      EXPECT_NEAR(o.watermarkRGBA[channel], grey, 2);
  }
}

TEST(WatermarkFile, OfAClipIsItsFirstFrame) {
  ffmpeg({"-f", "lavfi", "-i", "color=red:size=32x16:rate=25:duration=0.2,format=rgb24", "-f",
          "lavfi", "-i", "color=blue:size=32x16:rate=25:duration=0.2,format=rgb24",
          "-filter_complex", "concat=n=2:v=1", "-c:v", "qtrle", at("clip.mov")});
  Overlay o;
  load(o, at("clip.mov"), kRgb);
  ASSERT_NE(o.watermarkRGBA, nullptr);
  EXPECT_LT(o.watermarkRGBA[0], 4);
  EXPECT_GT(o.watermarkRGBA[2], 250);
}

TEST(WatermarkFile, ThatCanNotBeReadGivesNoPictureAndOneMessage) {
  std::ofstream(at("text.png")) << "this is no picture at all";
  std::ofstream(at("empty.png"));
  std::ofstream(at("noise.mov"), std::ios::binary) << std::string(5000, '\x91');
  ffmpeg({"-f", "lavfi", "-i", "sine=duration=0.1", at("sound.wav")});
  std::string cut;
  {
    std::ostringstream whole;
    whole << std::ifstream(pictureFile("whole.png", {}), std::ios::binary).rdbuf();
    cut = whole.str().substr(0, 20);
  }
  std::ofstream(at("cut.png"), std::ios::binary) << cut;
  for (const std::string& path :
       {at("text.png"), at("empty.png"), at("noise.mov"), at("sound.wav"), at("cut.png"),
        at("missing.png"), workFolder(), std::string("http://localhost/logo.png")}) {
    for (const std::uint32_t layout : {kRgb, k8, k10}) {
      const Messages messages;
      Overlay o;
      o.SetWatermarkPath(path.c_str());
      o.frameLayout = layout;
      testing::internal::CaptureStderr();
      EXPECT_EQ(o.LoadWatermark(), 0U);
      EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << path;
      EXPECT_EQ(o.watermarkRGBA, nullptr) << path;
      EXPECT_EQ(o.watermark8, nullptr);
      EXPECT_EQ(o.watermark10, nullptr);
      ASSERT_EQ(messages.all.size(), 1U) << path;
      EXPECT_TRUE(messages.all[0].starts_with("Error: Unable to load watermark file <"));
    }
  }
}

std::vector<std::uint8_t> contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A frame of 96x48 in one grey with the watermark at (20, 8), as FFmpeg decodes it: planes of
/// 8-bit or 10-bit samples, or the BGRA bytes.
std::vector<std::uint8_t> burntFrame(std::uint32_t layout, std::vector<std::uint8_t> frame,
                                     const Arguments& input, const char* planes) {
  const std::string path = pictureFile("logo.png", {"-pix_fmt", "rgba"});
  HZWVIDEO video = videoOf(kStreams[0], 96, 48);
  video.biCompression = layout;
  const HZWSYSTEM system{};
  Overlay o;
  o.SetWatermarkPath(path.c_str());
  o.Enabled = o.WatermarkEnable = 1;
  o.WatermarkX = 20;
  o.WatermarkY = 8;
  o.Create(&video, &system);
  QFRAME record{};
  record.frameBuffer = reinterpret_cast<char*>(frame.data());
  o.ApplyWatermark(&record);

  std::ofstream(at("frame.raw"), std::ios::binary)
      .write(record.frameBuffer, static_cast<std::streamsize>(frame.size()));
  Arguments arguments = input;
  arguments.insert(arguments.end(),
                   {"-i", at("frame.raw"), "-f", "rawvideo", "-pix_fmt", planes, at("planes.raw")});
  ffmpeg(arguments);
  return contents(at("planes.raw"));
}

TEST(WatermarkFile, BlendsIntoRgbByItsAlpha) {
  const auto got = burntFrame(kRgb, std::vector<std::uint8_t>(96 * 48 * 4, 100),
                              {"-f", "rawvideo", "-pix_fmt", "bgra", "-s", "96x48"}, "rgba");
  ASSERT_EQ(got.size(), 96U * 48 * 4);
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 96; ++x) {
      const std::uint8_t* const pixel = &got[static_cast<std::size_t>((y * 96 + x) * 4)];
      const bool inside = x >= 20 && x < 20 + kWidth && y >= 8 && y < 8 + kHeight;
      const Pixel source = inside ? pixelAt(x - 20, y - 8) : Pixel{};
      const bool shows = source.alpha > 16;
      const auto blended = [&](int channel) {
        return shows ? (channel * source.alpha + 100 * (255 - source.alpha)) / 255 : 100;
      };
      ASSERT_EQ(pixel[0], blended(source.red)) << x << "," << y;
      ASSERT_EQ(pixel[1], blended(source.green));
      ASSERT_EQ(pixel[2], blended(source.blue));
      ASSERT_EQ(pixel[3], shows ? source.alpha : 100);
    }
  }
}

/// A pixel of the picture in the surface's own conversion, Y, Cb, Cr and alpha of eight or ten
/// bits.
struct YCbCr {
  int y, cb, cr, alpha;
};
YCbCr converted(int x, int y, int bits) {
  const Pixel p = pixelAt(x, y);
  std::uint8_t bytes[4] = {static_cast<std::uint8_t>(p.blue), static_cast<std::uint8_t>(p.green),
                           static_cast<std::uint8_t>(p.red), static_cast<std::uint8_t>(p.alpha)};
  NKDraw* surface = nullptr;
  GetDraw(ptBGRA32, 1, 1, 4, reinterpret_cast<char*>(bytes), surface);
  std::uint8_t few[4] = {};
  std::uint32_t many[4] = {};
  surface->GetPixelYCbCr8(0, 0, few[0], few[1], few[2], few[3]);
  surface->GetPixelYCbCr10(0, 0, many[0], many[1], many[2], many[3]);
  ReleaseDraw(surface);
  const auto channel = [&](int i) { return bits == 8 ? few[i] : static_cast<int>(many[i]); };
  return {channel(0), channel(1), channel(2), channel(3)};
}

TEST(WatermarkFile, BlendsIntoPairsOfPixelsByTheAlphaOfTheEvenOne) {
  std::vector<std::uint8_t> grey;
  for (int pair = 0; pair < 48 * 48; ++pair)
    grey.insert(grey.end(), {128, 90, 128, 90});
  const auto got =
      burntFrame(k8, grey, {"-f", "rawvideo", "-pix_fmt", "uyvy422", "-s", "96x48"}, "yuv422p");
  ASSERT_EQ(got.size(), 96U * 48 * 2);
  const std::uint8_t *const luma = got.data(), *const cb = luma + 96 * 48, *const cr = cb + 48 * 48;
  for (int y = 0; y < 48; ++y) {
    for (int pair = 0; pair < 48; ++pair) {
      const bool inside = pair >= 10 && pair < 10 + kWidth / 2 && y >= 8 && y < 8 + kHeight;
      const YCbCr source = inside ? converted(2 * (pair - 10), y - 8, 8) : YCbCr{};
      const int alpha = source.alpha > 8 ? source.alpha : 0;
      const auto blended = [alpha](int over, int under) {
        return (over * alpha + under * (255 - alpha)) / 255;
      };
      ASSERT_EQ(luma[y * 96 + 2 * pair], blended(source.y, 90)) << pair << "," << y;
      ASSERT_EQ(luma[y * 96 + 2 * pair + 1], blended(source.y, 90));
      ASSERT_EQ(cb[y * 48 + pair], blended(source.cb, 128));
      ASSERT_EQ(cr[y * 48 + pair], blended(source.cr, 128));
    }
  }
}

/// Surfaces of ten bits plot opaque.
TEST(WatermarkFile, CoversTenBitsWhereTheOddPixelShows) {
  std::vector<std::uint8_t> grey;
  while (grey.size() < std::size_t{256} * 48) {
    // Cb Y Cr, Y Cb Y, Cr Y Cb, Y Cr Y with chroma 512 and luma 360.
    for (const std::uint32_t word :
         {512U | 360U << 10 | 512U << 20, 360U | 512U << 10 | 360U << 20})
      for (int byte = 0; byte < 4; ++byte)
        grey.push_back(static_cast<std::uint8_t>(word >> (8 * byte)));
  }
  const auto bytes = burntFrame(k10, grey, {"-f", "v210", "-s", "96x48"}, "yuv422p10le");
  ASSERT_EQ(bytes.size(), 96U * 48 * 4);
  const auto sample = [&](int index) {
    const auto place = static_cast<std::size_t>(index) * 2;
    return bytes[place] | bytes[place + 1] << 8;
  };
  for (int y = 0; y < 48; ++y) {
    for (int pair = 0; pair < 48; ++pair) {
      const bool inside = pair >= 10 && pair < 10 + kWidth / 2 && y >= 8 && y < 8 + kHeight;
      const int x = 2 * (pair - 10);
      YCbCr even = {360, 512, 512, 0}, odd = even;
      if (inside && converted(x + 1, y - 8, 10).alpha > 10) {
        even = converted(x, y - 8, 10);
        odd = converted(x + 1, y - 8, 10);
      }
      ASSERT_EQ(sample(y * 96 + 2 * pair), even.y) << pair << "," << y;
      ASSERT_EQ(sample(y * 96 + 2 * pair + 1), odd.y) << pair << "," << y;
      ASSERT_EQ(sample(96 * 48 + y * 48 + pair), odd.cb) << pair << "," << y;
      ASSERT_EQ(sample(144 * 48 + y * 48 + pair), odd.cr) << pair << "," << y;
    }
  }
}

}  // namespace
