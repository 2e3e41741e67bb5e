// SPDX-License-Identifier: BSD-2-Clause
//
// Shapes and text on 1920x1080 frames of every layout.
#include "shapes.h"

#include <string>

namespace {

using bench::Kind;
using bench::Work;

void work(benchmark::State& state, const Kind& kind, const Work& shape) {
  const std::uint32_t bytes = kind.bytesPerRow * bench::kHeight;
  std::vector<char> pixels(bytes + 64, '\x40');
  const bench::Surface surface =
      bench::makeSurface({kind.name, kind.type, 0, bytes}, pixels.data());
  bench::measure(state, bytes, [&] { shape.draw(*surface); });
}

/// The reference for fills.
void plainFill(benchmark::State& state, const Kind& kind, int width, int height, int times) {
  const std::uint32_t bytes = kind.bytesPerRow * bench::kHeight;
  const auto row = static_cast<std::size_t>(width) * kind.bytesPerRow / bench::kWidth;
  std::vector<char> pixels(bytes, '\x40');
  bench::measure(state, bytes, [&] {
    for (int i = 0; i < times; ++i) {
      const tagPOINT corner =
          times == 1 ? tagPOINT{0, 0} : bench::corners()[static_cast<std::size_t>(i)];
      for (int y = 0; y < height; ++y)
        std::memset(pixels.data() + static_cast<std::size_t>(corner.y + y) * kind.bytesPerRow +
                        static_cast<std::size_t>(corner.x) * kind.bytesPerRow / bench::kWidth,
                    i, row);
    }
    benchmark::ClobberMemory();
  });
}

const int registered = [] {
  for (const Work& shape : bench::kWorks) {
    for (const Kind& kind : bench::kKinds)
      benchmark::RegisterBenchmark((std::string(shape.name) + "/" + kind.name).c_str(), work, kind,
                                   shape);
  }
  for (const Kind& kind : bench::kKinds) {
    benchmark::RegisterBenchmark((std::string("memset/Frame/") + kind.name).c_str(), plainFill,
                                 kind, bench::kWidth, bench::kHeight, 1);
    benchmark::RegisterBenchmark((std::string("memset/Rectangles100/") + kind.name).c_str(),
                                 plainFill, kind, bench::kRectWidth, bench::kRectHeight, 100);
  }
  return 0;
}();

}  // namespace
