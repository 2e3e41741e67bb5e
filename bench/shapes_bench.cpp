// SPDX-License-Identifier: BSD-2-Clause
//
// Shapes and text on 1920x1080 frames of every layout: many random lines, circles, curves, fills,
// labels, a running timecode.
#include "scene.h"

#include <string>

namespace {

struct Kind {
  const char* name;
  pixelType type;
  std::uint32_t bytesPerRow;
};

/// The three most common layouts, then all others.
constexpr Kind kKinds[] = {
    {"BGRA", ptBGRA32, 7680},  {"UYVY", ptUYVY, 3840},       {"v210", ptV210, 5120},
    {"BGR24", ptBGR24, 5760},  {"RGB48", ptRGB48, 11520},    {"ARGB64", ptARGB64, 15360},
    {"DPX", ptRGB30DPX, 7680}, {"Bayer", ptBayerRGGB, 2880}, {"UV8", ptUV8, 3840},
    {"UV16", ptUV16, 7680},
};

void lines(NKDraw& surface) {
  for (const bench::Stroke& line : bench::lines())
    surface.Line(line.from.x, line.from.y, line.to.x, line.to.y);
}

void circles(NKDraw& surface) {
  for (const bench::Disc& disc : bench::circles())
    surface.Circle(disc.centre.x, disc.centre.y, disc.radius);
}

void beziers(NKDraw& surface) {
  static const std::vector<tagPOINT> points = bench::randomPoints(400, 10);
  for (std::size_t i = 0; i < points.size(); i += 4)
    surface.Bezier(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y, points[i + 2].x,
                   points[i + 2].y, points[i + 3].x, points[i + 3].y);
}

void frame(NKDraw& surface) {
  surface.EraseCanvas(true);
}

void rectangles(NKDraw& surface) {
  for (const tagPOINT& corner : bench::corners()) {
    const tagRECT rect = {corner.x, corner.y, corner.x + bench::kRectWidth,
                          corner.y + bench::kRectHeight};
    surface.FillRect(&rect);
  }
}

void softLines(NKDraw& surface) {
  static const std::vector<tagPOINT> points = bench::randomPoints(200, 10);
  for (std::size_t i = 0; i < points.size(); i += 2)
    surface.LineWu(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y);
}

void label(NKDraw& surface) {
  surface.Label(100, 100, bench::nextText(), false, false);
}

template <int kLines, bool kTransparent>
void text(NKDraw& surface) {
  surface.SetTextTransparent(kTransparent);
  tagRECT rect = {24, 600, bench::kWidth, 600 + kLines};
  surface.DrawText(bench::nextText(), 11, &rect, DT_CALCRECT);
}

struct Work {
  const char* name;
  void (*draw)(NKDraw& surface);
};

constexpr Work kWorks[] = {
    {"Timecode30", text<30, true>},
    {"Timecode30Box", text<30, false>},
    {"Text10", text<10, true>},
    {"Text10Box", text<10, false>},
    {"Label", label},
    {"Lines1000", lines},
    {"Circles100", circles},
    {"Beziers100", beziers},
    {"Frame", frame},
    {"Rectangles100", rectangles},
    {"SoftLines100", softLines},
};

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
  for (const Work& shape : kWorks) {
    for (const Kind& kind : kKinds)
      benchmark::RegisterBenchmark((std::string(shape.name) + "/" + kind.name).c_str(), work, kind,
                                   shape);
  }
  for (const Kind& kind : kKinds) {
    benchmark::RegisterBenchmark((std::string("memset/Frame/") + kind.name).c_str(), plainFill,
                                 kind, bench::kWidth, bench::kHeight, 1);
    benchmark::RegisterBenchmark((std::string("memset/Rectangles100/") + kind.name).c_str(),
                                 plainFill, kind, bench::kRectWidth, bench::kRectHeight, 100);
  }
  return 0;
}();

}  // namespace
