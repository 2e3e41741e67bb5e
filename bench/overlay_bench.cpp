// SPDX-License-Identifier: BSD-2-Clause
//
// A whole burn-in pass over a 1920x1080 frame: three timecode rows, the format line, two texts of
// 20 characters.
#include "frame.h"

namespace {

class Overlay : public CNkOverlay {
 public:
  explicit Overlay(bool fill) {
    Enabled = 1;
    FillBackground = fill ? 1 : 0;
    TimeCodeLTCEnable = TimeCodeVITCEnable = TimeCodeVsyncEnable = 1;
    SourceFormatEnable = 1;
    for (int slot = 0; slot < 2; ++slot) {
      CustomTextEnabled[slot] = 1;
      CustomText[slot] = new char[128]{"TWENTY CHARACTERS 01"};
      CustomTextX[slot] = 100;
      CustomTextY[slot] = 100 + slot * 60;
    }
  }
};

void burnIn(benchmark::State& state, const bench::Layout& layout, bool fill) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  HZWVIDEO video = {};
  video.biSize = sizeof video;
  video.biWidth = bench::kWidth;
  video.biHeight = bench::kHeight;
  video.biBitCount = 32;
  video.biCompression = layout.compression;
  video.biSizeImage = layout.frameBytes;
  video.frameRate = 25;
  video.frameScale = 1;
  const HZWSYSTEM system = {sizeof system, hzwFileMOV, {}};
  Overlay overlay(fill);
  overlay.Create(&video, &system);
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  bench::measure(state, layout.frameBytes, [&] {
    ++frame.ltcCount;
    overlay.BurnIn(&frame, nullptr, nullptr, 0);
  });
}

const int registered = [] {
  for (const bench::Layout& layout : bench::kLayouts) {
    for (const bool fill : {true, false}) {
      const std::string name =
          std::string("BurnIn/") + layout.name + (fill ? "/box" : "/transparent");
      benchmark::RegisterBenchmark(name.c_str(), burnIn, layout, fill);
    }
  }
  return 0;
}();

}  // namespace
