// SPDX-License-Identifier: BSD-2-Clause
//
// Rows of packed 4:2:2 in one pass: of runs, or mixed, and the pixels past their width.
#include "wipe_422_rows.h"
#include <nkdraw/simd/vector_targets.h>
#include "layouts_422.h"
#include "run_rows.h"
#include "wipe_kernels.h"
#include "wipe_mix.h"

namespace nkdraw {
namespace {

/// Rows of a cross-fade. Samples are mixed as bytes, a few groups at a time.
template <class Layout>
class MixedRows422 {
 public:
  explicit MixedRows422(const WipeTask& task)
      : task_(task),
        groups_(ceilDivide(task.width, Layout::kPixels)),
        mix_(PartKind::kByte, task.position, rangeOf(task),
             std::uint64_t{groups_} * Layout::kSamples * task.height, true) {}

  void draw(std::uint32_t y, std::uint8_t* output) const {
    const WipeRow row = rowOf(task_, y);
    if constexpr (Layout::kBytes == Layout::kSamples)
      mix_(row.outgoing, row.incoming, output, groups_ * Layout::kBytes);
    else if (!mix_.mixV210(row.outgoing, row.incoming, output, groups_ * Layout::kBytes))
      drawUnpacked(row, output);
  }

  [[nodiscard]] Pixel422 pixel(std::uint32_t y, std::uint32_t x) const {
    const WipeRow row = rowOf(task_, y);
    const Pixel422 outgoing = Layout::pixelOf(row.outgoing, x);
    const Pixel422 incoming = Layout::pixelOf(row.incoming, x);
    Pixel422 mixed;
    mix_(outgoing.data(), incoming.data(), mixed.data(), mixed.size());
    return mixed;
  }

 private:
  static constexpr std::size_t kChunk = 160;  // groups
  using Samples = std::array<std::uint8_t, kChunk * Layout::kSamples + kSampleSlack>;

  void drawUnpacked(const WipeRow& row, std::uint8_t* output) const {
    Samples outgoing, incoming;
    for (std::size_t done = 0; done < groups_; done += kChunk) {
      const std::size_t count = std::min(kChunk, groups_ - done), at = done * Layout::kBytes;
      Layout::unpack(row.outgoing + at, outgoing.data(), count);
      Layout::unpack(row.incoming + at, incoming.data(), count);
      mix_(outgoing.data(), incoming.data(), outgoing.data(), count * Layout::kSamples);
      Layout::pack(outgoing.data(), output + at, count);
    }
  }

  const WipeTask& task_;
  const std::size_t groups_;
  const RowMixer mix_;
};

template <class Layout, class Draw>
void withRows(const WipeTask& task, Draw draw) {
  if (const RunsOfRow runs = runsOfWipe(task); runs != nullptr)
    draw(RunRows<Layout>(task, runs));
  else
    draw(MixedRows422<Layout>(task));
}

/// Calls `pixel(i)` for the pixels past the width in the last group of a row.
template <class Layout, class PixelAt>
void putPast(const WipeTask& task, std::uint8_t* output, PixelAt pixel) {
  const std::size_t end = ceilDivide(task.width, Layout::kPixels) * Layout::kPixels;
  for (std::size_t x = task.width; x < end; ++x)
    Layout::putPixel(output, x, pixel(static_cast<std::uint32_t>(x - task.width)));
}

template <class Layout>
void drawRows(const WipeTask& task, RowQueue& queue) {
  RowQueue::Rows claimed = queue.claim();
  if (claimed.empty())
    return;
  withRows<Layout>(task, [&](const auto& rows) {
    for (; !claimed.empty(); claimed = queue.claim()) {
      for (std::uint32_t y = claimed.first; y < claimed.last; ++y) {
        std::uint8_t* const output = task.dst + task.pitchDst * y;
        rows.draw(y, output);
        putPast<Layout>(task, output, [&](std::uint32_t x) { return rows.pixel(y + 1, x); });
      }
    }
  });
}

template <class Layout>
void drawLastRow(const WipeTask& task, const std::uint8_t* past) {
  const std::uint32_t y = task.height - 1;
  std::uint8_t* const output = task.dst + task.pitchDst * y;
  withRows<Layout>(task, [&](const auto& rows) { rows.draw(y, output); });
  putPast<Layout>(task, output, [&](std::uint32_t x) {
    Pixel422 pixel;
    std::memcpy(pixel.data(), past + x * pixel.size(), pixel.size());
    return pixel;
  });
}

}  // namespace

constexpr OnePass422 kV210InOnePass = {drawRows<V210Groups>, drawLastRow<V210Groups>};
constexpr OnePass422 kPairsInOnePass = {drawRows<PairGroups>, drawLastRow<PairGroups>};

}  // namespace nkdraw
