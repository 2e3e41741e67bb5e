// SPDX-License-Identifier: BSD-2-Clause
//
// Frames to measure on, and the copy of a frame that every figure is compared with.
#pragma once

#include <nkdraw/nkdraw.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <vector>

namespace bench {

inline constexpr int kWidth = 1920;
inline constexpr int kHeight = 1080;

constexpr std::uint32_t fourcc(const char (&code)[5]) {
  std::uint32_t value = 0;
  for (unsigned i = 0; i < 4; ++i)
    value |= static_cast<std::uint32_t>(static_cast<unsigned char>(code[i])) << (8 * i);
  return value;
}

/// A layout to measure: its name, its number, its header's code and its bytes a frame.
struct Layout {
  const char* name;
  pixelType type;
  std::uint32_t compression;
  std::uint32_t frameBytes;
};

inline constexpr Layout kLayouts[] = {
    {"v210", ptV210, fourcc("v210"), 5120 * kHeight},
    {"UYVY", ptUYVY, fourcc("UYVY"), kWidth * 2 * kHeight},
    {"BGRA", ptBGRA32, 0, kWidth * 4 * kHeight},
};

/// Seconds of the median memcpy of `bytes` bytes, measured now.
inline double copySeconds(std::uint32_t bytes) {
  std::vector<char> from(bytes, 1), to(bytes, 2);
  std::vector<double> seconds(31);
  for (double& second : seconds) {
    const auto start = std::chrono::steady_clock::now();
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
    second = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  std::nth_element(seconds.begin(), seconds.begin() + 15, seconds.end());
  return seconds[15];
}

/// Runs `draw` and reports its time also as a ratio to the copy of a frame, taken in the same run.
template <class Draw>
void measure(benchmark::State& state, std::uint32_t frameBytes, Draw draw) {
  const double copy = copySeconds(frameBytes);
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state)
    draw();
  const double spent =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double each = spent / static_cast<double>(state.iterations());
  state.counters["ms"] = each * 1e3;
  state.counters["memcpy_ms"] = copy * 1e3;
  state.counters["of_memcpy"] = each / copy;
}

struct ReleaseSurface {
  void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
};
using Surface = std::unique_ptr<NKDraw, ReleaseSurface>;

inline Surface makeSurface(const Layout& layout, char* canvas) {
  NKDraw* surface = nullptr;
  GetDraw(static_cast<std::uint32_t>(layout.type), kWidth, kHeight, 0, canvas, surface);
  surface->SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
  surface->SetColorRGBA(0.0, 0.0, 0.0, 1.0, false);
  return Surface(surface);
}

}  // namespace bench
