// SPDX-License-Identifier: BSD-2-Clause
//
// Burns timecode and a text into a run of UYVY frames, as a host does.
#include <nkdraw/nkdraw.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

/// The overlay's settings are its protected fields.
class Overlay : public CNkOverlay {
 public:
  Overlay() {
    Enabled = 1;
    TimeCodeLTCEnable = 1;
    TimeCodeX = 32;
    TimeCodeY = 280;
    TimeCodeSize = 3;
    CustomTextEnabled[0] = 1;
    CustomTextX[0] = 32;
    CustomTextY[0] = 32;
    CustomText[0] = new char[128]{"CAMERA 1"};
  }
};

}  // namespace

int main() {
  HZWVIDEO video = {};
  video.biSize = sizeof video;
  video.biWidth = 640;
  video.biHeight = 360;
  video.biCompression = 'U' | 'Y' << 8 | 'V' << 16 | 'Y' << 24;
  video.biSizeImage = 640 * 360 * 2;
  video.frameRate = 25;
  video.frameScale = 1;
  const HZWSYSTEM system = {sizeof system, hzwFileNone, {}};

  Overlay overlay;
  overlay.Create(&video, &system);
  std::vector<char> pixels(video.biSizeImage);
  for (std::uint32_t count = 0; count < 25; ++count) {
    std::fill(pixels.begin(), pixels.end(), '\x80');
    QFRAME frame = {};
    frame.ltcCount = 10 * 60 * 60 * 25 + count;  // from 10:00:00:00 on
    frame.frameBuffer = pixels.data();
    overlay.BurnIn(&frame, nullptr, nullptr, 0);
  }
  overlay.Destroy();
  const auto changed =
      std::count_if(pixels.begin(), pixels.end(), [](char sample) { return sample != '\x80'; });
  std::printf("%td samples carry the overlay\n", changed);
  return changed > 0 ? 0 : 1;
}
