// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes: on one thread (the kernel on the whole frame), and as called, on four threads.
#include "frame.h"

#include <nkdraw/compositor/wipe_kernels.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

struct Size {
  const char* name;
  std::uint32_t width, height;
};
constexpr Size kSizes[] = {{"1920x1080", 1920, 1080}, {"3840x2160", 3840, 2160}};

struct Work {
  const char* name;
  std::uint32_t wipe;
  std::uint32_t position, range;
};
constexpr Work kPatterns[] = {
    {"edge_horz", 1, 30000, 65536},    {"edge_vert", 2, 30000, 65536},
    {"corner_tl", 3, 30000, 65536},    {"four_corners", 7, 30000, 65536},
    {"iris", 41, 30000, 65536},        {"slide_up", 500, 30000, 65536},
    {"slide_left", 501, 30000, 65536},
};
/// Positions at which doubles sometimes make whole results one less, and positions at which they
/// never do.
constexpr Work kDissolves[] = {
    {"dissolve_30000_of_65536", 0, 30000, 65536},
    {"dissolve_7777_of_10007", 0, 7777, 10007},
    {"dissolve_12_of_25", 0, 12, 25},
    {"dissolve_1_of_3", 0, 1, 3},
};

/// Memory aligned to a cache line, like that of frames.
class Buffer {
 public:
  explicit Buffer(std::size_t size) : bytes_(size + kLine) {}
  std::uint8_t* data() {
    const auto address = reinterpret_cast<std::uintptr_t>(bytes_.data());
    return bytes_.data() + (kLine - address % kLine);
  }

 private:
  static constexpr std::size_t kLine = 64;
  std::vector<std::uint8_t> bytes_;
};

/// Two frames of noise and one to write.
struct Frames {
  explicit Frames(std::size_t size) : a(size), b(size), dst(size) {
    std::uint32_t seed = 1;
    for (auto* const frame : {&a, &b}) {
      for (std::size_t i = 0; i < size; ++i)
        frame->data()[i] = static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
    }
  }
  Buffer a, b, dst;
};

nkdraw::WipeTask taskOf(Frames& frames, const Work& work, std::int32_t type, std::uint32_t pitch,
                        const Size& size) {
  nkdraw::WipeTask task{};
  task.srcA = frames.a.data();
  task.srcB = frames.b.data();
  task.dst = frames.dst.data();
  task.pitchA = task.pitchB = task.pitchDst = pitch;
  task.wipe = work.wipe;
  task.pixelType = type;
  task.width = task.right = size.width;
  task.height = task.bottom = size.height;
  task.rangeEnd = work.range;
  task.position = work.position;
  return task;
}

void onOneThread(benchmark::State& state, const Work& work, std::int32_t type,
                 std::uint32_t pixelBytes, const Size& size) {
  const std::uint32_t pitch = size.width * pixelBytes, bytes = pitch * size.height;
  Frames frames(bytes);
  const nkdraw::WipeTask task = taskOf(frames, work, type, pitch, size);
  const nkdraw::WipeKernel kernel = nkdraw::kernelOfWipe(work.wipe);
  bench::measure(state, bytes, [&] { kernel(task); });
}

using Entry = decltype(&NKDraw_DisplayWipe);

void asCalled(benchmark::State& state, Entry entry, const Work& work, std::int32_t type,
              std::uint32_t pitch, const Size& size) {
  const std::uint32_t bytes = pitch * size.height;
  Frames frames(bytes);
  bench::measure(state, bytes, [&] {
    entry(frames.a.data(), pitch, frames.b.data(), pitch, frames.dst.data(), pitch, work.wipe, type,
          size.width, size.height, 0, 0, 0, 0, 0, 0, work.range, work.position);
  });
}

void exactly(benchmark::State& state, const Work& work, std::int32_t type, std::uint32_t pitch,
             const Size& size) {
  const std::uint32_t bytes = pitch * size.height;
  Frames frames(bytes);
  const NKWipe wipe = {frames.a.data(),   pitch,       frames.b.data(), pitch,
                       frames.dst.data(), pitch,       work.wipe,       type,
                       size.width,        size.height, work.position,   work.range};
  bench::measure(state, bytes, [&] { NKDraw_ExactWipe(&wipe); });
}

template <class Run>
void add(const std::string& name, Run run) {
  benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMicrosecond);
}

void addBoth(const Work& work, const char* layout, std::int32_t type, std::uint32_t pixelBytes,
             const Size& size) {
  const std::string name = std::string(layout) + "/" + size.name + "/" + work.name;
  add(name + "/one_thread", [=, &work, &size](benchmark::State& state) {
    onOneThread(state, work, type, pixelBytes, size);
  });
  add(name + "/as_called", [=, &work, &size](benchmark::State& state) {
    asCalled(state, NKDraw_DisplayWipe, work, type, size.width * pixelBytes, size);
  });
}

const bool added = [] {
  for (const Size& size : kSizes) {
    for (const Work& work : kPatterns)
      addBoth(work, "BGRA", ptBGRA32, 4, size);
    for (const Work& work : kDissolves) {
      addBoth(work, "BGRA", ptBGRA32, 4, size);
      addBoth(work, "ARGB64", ptARGB64, 8, size);
    }
    for (const Work* const work : {&kPatterns[0], &kPatterns[1], &kPatterns[4], &kPatterns[5],
                                   &kPatterns[6], &kDissolves[0], &kDissolves[2]}) {
      const std::string tail = std::string("/") + size.name + "/" + work->name + "/as_called";
      add("v210" + tail, [=, &size](benchmark::State& state) {
        asCalled(state, NKDraw_DisplayWipeV210, *work, ptV210, size.width / 48 * 128, size);
      });
      const std::string exact = std::string("/") + size.name + "/" + work->name + "/exact";
      add("v210" + exact, [=, &size](benchmark::State& state) {
        exactly(state, *work, ptV210, size.width / 48 * 128, size);
      });
      add("YUYV" + exact, [=, &size](benchmark::State& state) {
        exactly(state, *work, ptYUYV, size.width * 2, size);
      });
      add("RGB48" + exact, [=, &size](benchmark::State& state) {
        exactly(state, *work, ptRGB48, size.width * 6, size);
      });
      add("YUYV" + tail, [=, &size](benchmark::State& state) {
        asCalled(state, NKDraw_DisplayWipeYCbCr, *work, ptYUYV, size.width * 2, size);
      });
    }
  }
  return true;
}();

}  // namespace
