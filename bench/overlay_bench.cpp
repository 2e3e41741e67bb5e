// SPDX-License-Identifier: BSD-2-Clause
//
// A whole burn-in pass over a 1920x1080 frame: three timecode rows, the format line, two texts of
// 20 characters, with and without meters. Then single layers: watermark, meters, two rows of 32
// characters of captions.
#include "burn_in_scene.h"

#include <tests/support/caption_stream.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

class CaptionOverlay : public CNkOverlay {
 public:
  CaptionOverlay() { Enabled = CaptionsEnable = 1; }
  ~CaptionOverlay() override { ccBurnClose(captionHandle); }
};

void burnIn(benchmark::State& state, const bench::Layout& layout, bool fill, bool meters) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  const HZWVIDEO video = bench::videoOf(layout);
  bench::Overlay overlay(fill, meters);
  overlay.Create(&video, &bench::kSystem);
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  bench::measure(state, layout.frameBytes, [&] {
    ++frame.ltcCount;
    overlay.BurnIn(&frame, bench::kLevels, bench::kLevels, 0);
  });
}

void burnCaptions(benchmark::State& state, const bench::Layout& layout) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  const HZWVIDEO video = bench::videoOf(layout);
  CaptionOverlay overlay;
  overlay.Create(&video, &bench::kSystem);
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  const char* const row = "THIRTY-TWO CHARACTERS OF CAPTION";
  nkdraw::test::CaptionStream stream;
  stream.loadPopOn().row(14).text(row).row(15).text(row).endOfCaption();
  for (const nkdraw::test::CaptionPair& pair : stream.pairs()) {
    const std::uint8_t triplet[] = {0xFC, pair[0], pair[1]};
    frame.captionData = triplet;
    frame.captionBytes = sizeof triplet;
    overlay.BurnIn(&frame, nullptr, nullptr, 0);
  }
  frame.captionData = nullptr;
  frame.captionBytes = 0;
  bench::measure(state, layout.frameBytes, [&] { overlay.BurnIn(&frame, nullptr, nullptr, 0); });
}

/// One layer, with all others off.
class Layers : public CNkOverlay {
 public:
  void watermark() {
    Enabled = WatermarkEnable = 1;
    SetWatermarkPath(pictureName());
  }
  void meters() { Enabled = AudioEnable = 1; }

 private:
  /// A picture of 256x256 whose alpha rises from left to right.
  static const char* pictureName() {
    static const std::string name = [] {
      std::string path = std::filesystem::temp_directory_path() / "nkdraw-bench.pam";
      std::ofstream file(path, std::ios::binary);
      file << "P7\nWIDTH 256\nHEIGHT 256\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
      for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
          for (const int value : {x, y, 128, x})
            file.put(static_cast<char>(value));
        }
      }
      return path;
    }();
    return name.c_str();
  }
};

void burnLayer(benchmark::State& state, const bench::Layout& layout, void (Layers::*layer)()) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  HZWVIDEO video = bench::videoOf(layout);
  // The codes of frames that take a watermark.
  if (layout.type == ptUYVY)
    video.biCompression = bench::fourcc("yuv2");
  if (layout.type == ptV210)
    video.biCompression = bench::fourcc("012v");
  Layers overlay;
  (overlay.*layer)();
  overlay.Create(&video, &bench::kSystem);
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  bench::measure(state, layout.frameBytes,
                 [&] { overlay.BurnIn(&frame, bench::kLevels, bench::kLevels, 0); });
}

const int registered = [] {
  for (const bench::Layout& layout : bench::kLayouts) {
    for (const bool fill : {true, false}) {
      const std::string name =
          std::string("BurnIn/") + layout.name + (fill ? "/box" : "/transparent");
      benchmark::RegisterBenchmark(name.c_str(), burnIn, layout, fill, false);
      benchmark::RegisterBenchmark((name + "/meters").c_str(), burnIn, layout, fill, true);
    }
    const std::string tail = std::string("/") + layout.name;
    benchmark::RegisterBenchmark(("Watermark256" + tail).c_str(), burnLayer, layout,
                                 &Layers::watermark);
    benchmark::RegisterBenchmark(("Meters" + tail).c_str(), burnLayer, layout, &Layers::meters);
    const std::string captions = std::string("Captions/") + layout.name;
    benchmark::RegisterBenchmark(captions.c_str(), burnCaptions, layout);
  }
  return 0;
}();

}  // namespace
