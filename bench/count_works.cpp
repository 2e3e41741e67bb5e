// SPDX-License-Identifier: BSD-2-Clause
//
// Does each piece of work once in each layout, for callgrind to count its instructions. The first
// time does not count: it finds the machine's instruction set, and makes what is kept.
//
//     valgrind --tool=callgrind --combine-dumps=yes --callgrind-out-file=counts
//     build/.../count_works
#include "burn_in_scene.h"
#include "shapes.h"

#include <tests/support/caption_stream.h>

#include <valgrind/callgrind.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

template <class Work>
void count(const std::string& name, Work work) {
  work();
  CALLGRIND_ZERO_STATS;
  work();
  CALLGRIND_DUMP_STATS_AT(name.c_str());
}

void countShapes(const bench::Kind& kind) {
  const std::uint32_t bytes = kind.bytesPerRow * bench::kHeight;
  for (const bench::Work& work : bench::kWorks) {
    std::vector<char> pixels(bytes + 64, '\x40');
    const bench::Surface surface =
        bench::makeSurface({kind.name, kind.type, 0, bytes}, pixels.data());
    count(std::string(work.name) + '/' + kind.name, [&] { work.draw(*surface); });
  }
}

/// The pass without the clock, whose text differs from run to run; or single layers.
class Overlay : public bench::Overlay {
 public:
  explicit Overlay(bool meters) : bench::Overlay(true, meters) { TimeCodeVsyncEnable = 0; }
  ~Overlay() override { ccBurnClose(captionHandle); }

  void captionsAlone() {
    TimeCodeLTCEnable = TimeCodeVITCEnable = SourceFormatEnable = 0;
    CustomTextEnabled[0] = CustomTextEnabled[1] = 0;
    CaptionsEnable = 1;
  }
  /// A picture of 256x256 of every alpha.
  void watermarkAlone(std::uint32_t layout) {
    constexpr std::uint32_t kSide = 256, kParts = 5;
    TimeCodeLTCEnable = TimeCodeVITCEnable = SourceFormatEnable = 0;
    CustomTextEnabled[0] = CustomTextEnabled[1] = 0;
    WatermarkEnable = 1;
    watermarkWidth = watermarkHeight = kSide;
    watermarkLayout = layout == 0                       ? 0
                      : layout == bench::fourcc("UYVY") ? bench::fourcc("yuv2")
                                                        : bench::fourcc("012v");
    constexpr std::uint32_t kSamples = kSide * kSide * kParts;
    watermarkRGBA = static_cast<std::uint8_t*>(NKAlloc(kSamples));
    watermark8 = static_cast<std::uint8_t*>(NKAlloc(kSamples));
    watermark10 = static_cast<std::uint32_t*>(NKAlloc(kSamples * sizeof(std::uint32_t)));
    for (std::uint32_t i = 0; i < kSamples; ++i) {
      watermarkRGBA[i] = watermark8[i] = static_cast<std::uint8_t>(i);
      watermark10[i] = i % 1024;
    }
  }
};

void countBurnIn(const char* name, const bench::Layout& layout, Overlay& overlay) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  const HZWVIDEO video = bench::videoOf(layout);
  overlay.Create(&video, &bench::kSystem);
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  nkdraw::test::CaptionStream stream;
  stream.loadPopOn().row(14).text("THIRTY-TWO CHARACTERS OF CAPTION").endOfCaption();
  for (const nkdraw::test::CaptionPair& pair : stream.pairs()) {
    const std::uint8_t triplet[] = {0xFC, pair[0], pair[1]};
    frame.captionData = triplet;
    frame.captionBytes = sizeof triplet;
    overlay.BurnIn(&frame, bench::kLevels, bench::kLevels, 0);
  }
  frame.captionData = nullptr;
  frame.captionBytes = 0;
  count(std::string(name) + '/' + layout.name,
        [&] { overlay.BurnIn(&frame, bench::kLevels, bench::kLevels, 0); });
}

void countOverlays(const bench::Layout& layout) {
  Overlay texts(false), meters(true), captions(false), watermark(false);
  captions.captionsAlone();
  countBurnIn("Overlay", layout, texts);
  countBurnIn("OverlayMeters", layout, meters);
  countBurnIn("Captions", layout, captions);
  const HZWVIDEO video = bench::videoOf(layout);
  watermark.Create(&video, &bench::kSystem);
  watermark.watermarkAlone(layout.compression);
  std::vector<char> pixels(layout.frameBytes, '\x40');
  QFRAME frame = {};
  frame.frameBuffer = pixels.data();
  count(std::string("Watermark256/") + layout.name,
        [&] { watermark.BurnIn(&frame, nullptr, nullptr, 0); });
}

}  // namespace

int main() {
  for (const bench::Kind& kind : bench::kKinds)
    countShapes(kind);
  for (const bench::Layout& layout : bench::kLayouts)
    countOverlays(layout);
}
