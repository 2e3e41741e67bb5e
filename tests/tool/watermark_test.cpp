// SPDX-License-Identifier: BSD-2-Clause
//
// Watermarks in burnt clips.
#include "clip.h"
#include "layers.h"

#include <gtest/gtest.h>
#include <media/layouts.h>
#include <nkdraw/nkdraw.h>

#include <string>
#include <utility>

namespace {

using namespace layers;
using namespace nkdraw::media;

constexpr int kLogoX = 201, kLogoY = 99, kLogoWidth = 60, kLogoHeight = 30;

std::string burnLogo(const std::string& layout, const std::string& in) {
  std::string out = at("out-" + layout + ".nut");
  expectBurnt({in, out, "--no-ltc", "--watermark", makeLogo(), "--watermark-at",
               std::to_string(kLogoX) + "," + std::to_string(kLogoY), "--keep-alpha"});
  return out;
}

struct Logo {
  Logo() : pixels(decodeAs(at("logo.png"), AV_PIX_FMT_BGRA).frames.at(0)) {
    GetDraw(ptBGRA32, kLogoWidth, kLogoHeight, 0, reinterpret_cast<char*>(pixels.data()), surface);
  }
  Logo(const Logo&) = delete;
  Logo& operator=(const Logo&) = delete;
  ~Logo() { ReleaseDraw(surface); }

  Bytes pixels;
  NKDraw* surface = nullptr;
};

/// Whether the pixel is inside a logo whose left edge is there, and where in the logo.
bool inLogo(int x, int y, int left, int& logoX, int& logoY) {
  logoX = x - left;
  logoY = y - kLogoY;
  return logoX >= 0 && logoX < kLogoWidth && logoY >= 0 && logoY < kLogoHeight;
}

int blended(int over, int under, int alpha) {
  return (over * alpha + under * (255 - alpha)) / 255;
}

TEST(BurntWatermark, IsBlendedByItsAlphaInBGRA) {
  const std::string in = makeClip("bgra", "0x4080C0", 2), out = burnLogo("bgra", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  ASSERT_EQ(after.frames.size(), 2U);
  for (int i = 0; i < kWidth * kHeight * 4; ++i) {
    const auto byte = static_cast<std::size_t>(i);
    int logoX = 0, logoY = 0, expected = before.frames[1][byte];
    if (inLogo(i / 4 % kWidth, i / 4 / kWidth, kLogoX, logoX, logoY)) {
      const std::uint8_t* const pixel = logo.pixels.data() + (logoY * kLogoWidth + logoX) * 4;
      if (pixel[3] > 16)
        expected = i % 4 == 3 ? pixel[3] : blended(pixel[i % 4], expected, pixel[3]);
    }
    ASSERT_EQ(after.frames[1][byte], expected) << i / 4 % kWidth << "," << i / 4 / kWidth;
  }
}

TEST(BurntWatermark, IsBlendedInPairsFromAnEvenColumnInUYVY) {
  const std::string in = makeClip("uyvy", "0x4080C0", 2), out = burnLogo("uyvy", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  for (int i = 0; i < kWidth * kHeight * 2; ++i) {
    const auto byte = static_cast<std::size_t>(i);
    int logoX = 0, logoY = 0, expected = before.frames[1][byte];
    if (inLogo(i / 4 * 2 % kWidth, i / 2 / kWidth, kLogoX - 1, logoX, logoY)) {
      std::uint8_t y = 0, cb = 0, cr = 0, alpha = 0;
      logo.surface->GetPixelYCbCr8(logoX, logoY, y, cb, cr, alpha);
      const int samples[] = {cb, y, cr, y};
      if (alpha > 8)
        expected = blended(samples[i % 4], expected, alpha);
    }
    ASSERT_EQ(after.frames[1][byte], expected) << i;
  }
}

TEST(BurntWatermark, IsPlottedInV210) {
  const std::string in = makeClip("v210", "0x4080C0", 2), out = burnLogo("v210", in);
  const Logo logo;
  const Clip before = decode(in), after = decode(out);
  const auto sampleOf = [](const Clip& clip, int i) {
    return reinterpret_cast<const std::uint16_t*>(clip.frames[1].data())[i];
  };
  for (int i = 0; i < kWidth * kHeight; ++i) {
    int logoX = 0, logoY = 0;
    std::uint32_t expected = sampleOf(before, i);
    if (inLogo(i % kWidth, i / kWidth, kLogoX - 1, logoX, logoY)) {
      std::uint32_t y = 0, cb = 0, cr = 0, alpha = 0, own = 0;
      logo.surface->GetPixelYCbCr10(logoX, logoY, own, cb, cr, alpha);
      logo.surface->GetPixelYCbCr10(logoX | 1, logoY, y, cb, cr, alpha);
      if (alpha > 10)
        expected = own;
    }
    ASSERT_EQ(sampleOf(after, i), expected) << i % kWidth << "," << i / kWidth;
  }
}

TEST(BurntWatermark, LooksTheSameInEveryLayoutOfAKind) {
  const auto burntAs = [](const std::string& layout, AVPixelFormat format) {
    return decodeAs(burnLogo(layout, makeClip(layout, "0x4080C0", 1)), format).frames.at(0);
  };
  const Bytes rgb = burntAs("bgra", AV_PIX_FMT_RGB24);
  for (const char* layout : {"rgba", "argb", "abgr", "rgb24", "bgr24", "rgb0", "0bgr"})
    EXPECT_TRUE(burntAs(layout, AV_PIX_FMT_RGB24) == rgb) << layout;
  const Bytes uyvy = burntAs("uyvy", AV_PIX_FMT_YUV422P);
  for (const char* layout : {"yuy2", "yvyu"})
    EXPECT_TRUE(burntAs(layout, AV_PIX_FMT_YUV422P) == uyvy) << layout;
}

TEST(BurntWatermark, LeavesTheCodecsNameInTheFormatLine) {
  for (const auto& [layout, name] : {std::pair{"uyvy", "UYVY"}, std::pair{"v210", "v210"}}) {
    const std::string in = makeClip(layout, "black", 1), out = at("named.nut");
    expectBurnt({in, out, "--format-line", "--watermark", makeLogo(), "--watermark-at", "0,300",
                 "--position", "0,200", "--text-size", "3"});
    EXPECT_EQ(readText(decodeAs(out, AV_PIX_FMT_GRAY8), 0, 32, 18, 3, 24),
              std::string("29.97 NUT ") + name + " 640x360 p")
        << layout;
  }
}

}  // namespace
