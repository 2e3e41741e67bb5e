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

/// A layout to measure: its name, its number, its header's code and the bytes of a frame.
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

using Clock = std::chrono::steady_clock;

inline double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Times copies of a frame.
class FrameCopy {
 public:
  explicit FrameCopy(std::uint32_t bytes) : from_(bytes, 1), to_(bytes, 2) {}

  void run(int times) {
    for (int i = 0; i < times; ++i) {
      const auto start = Clock::now();
      std::memcpy(to_.data(), from_.data(), from_.size());
      benchmark::DoNotOptimize(to_.data());
      benchmark::ClobberMemory();
      seconds_.push_back(secondsSince(start));
    }
  }
  [[nodiscard]] double median() const { return medianOf(seconds_); }

 private:
  std::vector<char> from_, to_;
  std::vector<double> seconds_;
};

/// Runs `draw` and reports the median of its times, also as a ratio to the median of copying a
/// frame; half of the copies run before and half after. Short work is timed in batches.
template <class Draw>
void measure(benchmark::State& state, std::uint32_t frameBytes, Draw draw) {
  constexpr double kLeastBatch = 20e-6;
  FrameCopy copy(frameBytes);
  copy.run(20);
  draw();
  auto start = Clock::now();
  draw();
  const int batch =
      std::max(1, static_cast<int>(kLeastBatch / std::max(secondsSince(start), 1e-9)));

  std::vector<double> seconds;
  int done = 0;
  start = Clock::now();
  for (auto _ : state) {
    draw();
    if (++done < batch)
      continue;
    seconds.push_back(secondsSince(start) / batch);
    done = 0;
    start = Clock::now();
  }
  if (seconds.empty())
    seconds.push_back(secondsSince(start) / std::max(done, 1));
  copy.run(20);
  state.counters["ms"] = medianOf(seconds) * 1e3;
  state.counters["memcpy_ms"] = copy.median() * 1e3;
  state.counters["of_memcpy"] = medianOf(seconds) / copy.median();
}

/// Runs `draw` and `copy` in turn, for work on whole frames: both then find the same caches.
/// Reports the least of their times.
template <class Draw, class Copy>
void measureInTurn(benchmark::State& state, Draw draw, Copy copy) {
  const auto secondsOf = [](const auto& work) {
    const auto start = Clock::now();
    work();
    benchmark::ClobberMemory();
    return secondsSince(start);
  };
  double drawn = secondsOf(draw), copied = secondsOf(copy);
  for (auto _ : state) {
    drawn = std::min(drawn, secondsOf(draw));
    copied = std::min(copied, secondsOf(copy));
  }
  state.counters["ms"] = drawn * 1e3;
  state.counters["memcpy_ms"] = copied * 1e3;
  state.counters["of_memcpy"] = drawn / copied;
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
