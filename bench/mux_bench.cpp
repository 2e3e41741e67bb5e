// SPDX-License-Identifier: BSD-2-Clause
//
// The modes of the multiplexed display, on frames of two sizes.
#include "frame.h"

#include <string>

namespace {

struct Size {
  const char* name;
  std::uint32_t width, height;
};

constexpr Size kSizes[] = {{"1080p", 1920, 1080}, {"2160p", 3840, 2160}};

struct Mode {
  const char* name;
  std::uint32_t mode;
  std::uint32_t amount = 0, threshold = 0;
};

constexpr std::uint32_t kOtherWay = 1U << 28;

constexpr Mode kModes[] = {
    {"First", 0},
    {"Channels", 4},
    {"Average", 128},
    {"Difference", 256, 0, 4},
    {"Compare", 16384, 0, 4},
    {"Fade", 32768, 20000},
    {"GreyByte", 8388608, 0, 0x0000FF00},
    {"GreyMean", 8388608},
    {"InterleaveRows", 64},
    {"InterleaveColumns", 64 | kOtherWay},
    {"Checker", 262144},
    {"Blocks1", 524288, 1 << 8},
    {"Blocks16", 524288, 16 << 8},
    {"Blocks100", 524288, 100 << 8},
    {"SplitColumns", 2048},
    {"SplitRows", 2048 | kOtherWay},
    {"MirrorColumns", 4096},
    {"MirrorRows", 4096 | kOtherWay},
    {"OverAndUnder", 512},
    {"SideBySide", 1024},
    {"QuarterPair", 1048576},
    {"CropColumns", 2097152},
    {"CropRows", 2097152 | kOtherWay},
    {"FirstFlippedHorz", 1U << 29},
    {"FirstFlippedVert", 1U << 30},
    {"FirstWithGrid", 1U << 24},
};

void show(benchmark::State& state, const Mode& mode, const Size& size) {
  const std::uint32_t pitch = 4 * size.width, bytes = pitch * size.height;
  std::vector<std::uint8_t> a(bytes, 0x40), b(bytes, 0x41), dst(bytes);
  const auto display = [&] {
    NKDraw_DisplayMuxRGBA(a.data(), bytes, b.data(), bytes, dst.data(), 0, mode.mode, 0,
                          mode.amount, mode.threshold, size.width / 3, size.height / 3, 0, 10, 10,
                          size.width, size.height, pitch);
  };
  bench::measureInTurn(state, display, [&] { std::memcpy(dst.data(), a.data(), bytes); });
}

const int registered = [] {
  for (const Size& size : kSizes) {
    for (const Mode& mode : kModes) {
      const std::string name = std::string("Mux/") + mode.name + "/" + size.name;
      benchmark::RegisterBenchmark(name.c_str(), show, mode, size);
    }
  }
  return 0;
}();

}  // namespace
