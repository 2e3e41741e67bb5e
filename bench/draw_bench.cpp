// SPDX-License-Identifier: BSD-2-Clause
//
// Single primitives on a 1920x1080 frame: through the layout's inlined plotting, and for comparison
// through the virtual PutPixel for every pixel, as on a caller's own class.
#include "frame.h"

namespace {

template <class Surface>
class Foreign : public Surface {
 public:
  explicit Foreign(pixelType type) : NKDraw(type), Surface(type) {}
};

bench::Surface makeForeign(const bench::Layout& layout, char* canvas) {
  NKDraw* surface = nullptr;
  if (layout.type == ptV210)
    surface = new Foreign<CDrawYCbCr10>(layout.type);
  else if (layout.type == ptUYVY)
    surface = new Foreign<CDrawYCbCrYUYV>(layout.type);
  else
    surface = new Foreign<CDrawRGBA32>(layout.type);
  surface->SetCanvas(canvas, bench::kHeight, bench::kWidth, 0);
  return bench::Surface(surface);
}

constexpr const char* kText = "01:23:45:12 0123456789 ABCDEFGHIJKLMNOP";

void text(NKDraw& surface) {
  tagRECT rect = {24, 600, bench::kWidth, 630};
  surface.DrawText(kText, 40, &rect, DT_CALCRECT);
}

void textWithBox(NKDraw& surface) {
  surface.SetTextTransparent(false);
  text(surface);
}

/// As large as the text.
void label(NKDraw& surface) {
  surface.LabelFont(0U, 3);
  surface.Label(24, 600, kText, false, false);
}

void labelWithBox(NKDraw& surface) {
  surface.LabelFont(0U, 3);
  surface.Label(24, 600, kText, false, true);
}

void flatLine(NKDraw& surface) {
  surface.Line(0, 540, bench::kWidth - 1, 540);
}
void slopingLine(NKDraw& surface) {
  surface.Line(0, 200, bench::kWidth - 1, 800);
}
void steepLine(NKDraw& surface) {
  surface.Line(700, 0, 1100, bench::kHeight - 1);
}
void dashedLine(NKDraw& surface) {
  surface.Dash(0, 200, bench::kWidth - 1, 800, 12, 4);
}

struct Primitive {
  const char* name;
  void (*draw)(NKDraw& surface);
};

constexpr Primitive kPrimitives[] = {
    {"DrawText", text},         {"DrawTextBox", textWithBox}, {"Label", label},
    {"LabelBox", labelWithBox}, {"LineFlat", flatLine},       {"LineSloping", slopingLine},
    {"LineSteep", steepLine},   {"Dash", dashedLine},
};

void primitive(benchmark::State& state, const bench::Layout& layout, const Primitive& shape,
               bool inlined) {
  std::vector<char> pixels(layout.frameBytes, '\x40');
  const bench::Surface surface =
      inlined ? bench::makeSurface(layout, pixels.data()) : makeForeign(layout, pixels.data());
  bench::measure(state, layout.frameBytes, [&] { shape.draw(*surface); });
}

const int registered = [] {
  for (const Primitive& shape : kPrimitives) {
    for (const bench::Layout& layout : bench::kLayouts) {
      for (const bool inlined : {true, false}) {
        const std::string name =
            std::string(shape.name) + "/" + layout.name + (inlined ? "/inlined" : "/through_table");
        benchmark::RegisterBenchmark(name.c_str(), primitive, layout, shape, inlined);
      }
    }
  }
  return 0;
}();

}  // namespace
