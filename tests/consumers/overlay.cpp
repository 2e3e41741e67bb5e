// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a watermark and a caption, each of which needs a module at run time.
#include <nkdraw/nkdraw.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

constexpr int kWidth = 680, kHeight = 380, kLogo = 16;

class Overlay : public CNkOverlay {
 public:
  explicit Overlay(const char* logo) {
    Enabled = WatermarkEnable = CaptionsEnable = 1;
    WatermarkX = WatermarkY = 0;
    SetWatermarkPath(logo);
  }
};

/// A red square.
void writeLogo(const char* path) {
  std::ofstream file(path, std::ios::binary);
  file << "P7\nWIDTH 16\nHEIGHT 16\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
  for (int pixel = 0; pixel < kLogo * kLogo; ++pixel)
    file.write("\xFF\0\0\xFF", 4);
}

}  // namespace

int main(int, char** arguments) {
  const char* const logo = arguments[1];
  writeLogo(logo);
  HZWVIDEO video = {};
  video.biSize = sizeof video;
  video.biWidth = kWidth;
  video.biHeight = kHeight;
  video.biBitCount = 32;
  video.biSizeImage = kWidth * kHeight * 4;
  video.frameRate = 30;
  video.frameScale = 1;
  const HZWSYSTEM system = {};
  Overlay overlay(logo);
  overlay.Create(&video, &system);

  // Two rows roll up, the last of the screen is the first to write in; with their parity bits.
  const std::uint8_t pairs[][2] = {{0x94, 0x25}, {0x94, 0x25}, {0x94, 0xAD}, {0x94, 0xAD},
                                   {0x94, 0x70}, {0x94, 0x70}, {0xC8, 0xE9}, {0x80, 0x80},
                                   {0x80, 0x80}, {0x80, 0x80}};
  std::vector<char> pixels;
  for (const auto& [first, second] : pairs) {
    pixels.assign(video.biSizeImage, '\x40');
    const std::uint8_t triplet[] = {0xFC, first, second};
    QFRAME frame = {};
    frame.frameBuffer = pixels.data();
    frame.captionData = triplet;
    frame.captionBytes = sizeof triplet;
    overlay.BurnIn(&frame, nullptr, nullptr, 0);
  }
  overlay.Destroy();
  const bool watermark = pixels[0] == 0 && pixels[1] == 0 && pixels[2] == '\xFF';
  const bool caption = std::any_of(pixels.begin() + kWidth * 4 * kLogo, pixels.end(),
                                   [](char sample) { return sample != '\x40'; });
  std::printf("%s %s\n", watermark ? "watermark" : "-", caption ? "caption" : "-");
  return watermark && caption ? 0 : 1;
}
