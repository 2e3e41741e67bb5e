// SPDX-License-Identifier: BSD-2-Clause
//
// Blocks of one colour, and boxes of bits, such as text with its background: a row of bits is put
// together once, in a separate buffer, from pixels that are plotted once, and then copied to all of
// its lines.
#pragma once

#include <nkdraw/surface/run_kernels.h>
#include <nkdraw/surface/run_loops.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace nkdraw {

/// Plotters whose pixels depend on nothing but x and their own old value. They offer
///
///     static constexpr int kGroupPixels;               // that share bytes
///     static constexpr std::size_t kGroupBytes;
///     char* rowAt(int y) const;                        // where x 0 lies
///     Plotter onCanvas(char* canvas) const;            // with row 0 there
template <class AnyPlotter>
concept RowPlotter = requires(const AnyPlotter& plotter, char* canvas) {
  AnyPlotter::kGroupPixels;
  AnyPlotter::kGroupBytes;
  plotter.rowAt(0);
  plotter.onCanvas(canvas);
};

/// Whether all of these pixels lie on the canvas, and its rows do not overlap.
template <RowPlotter AnyPlotter>
bool isInside(const PixelBlock& block, const NKPixel& surface) {
  const std::uint64_t groups =
      (std::uint64_t{surface.Width()} + AnyPlotter::kGroupPixels - 1) / AnyPlotter::kGroupPixels;
  return surface.GetCanvas() != nullptr && block.x >= 0 &&
         block.x + std::int64_t{block.columns} <= surface.Width() && block.top >= 0 &&
         block.top + block.lines <= surface.Height() &&
         groups * AnyPlotter::kGroupBytes <= surface.Pitch() &&
         std::uint64_t{surface.Pitch()} * surface.Height() <= 0xFFFFFFFF;
}

/// Makes each bit `scale` wide: four bits at a time or, if these are wider than a word, two.
class Magnifier {
 public:
  explicit Magnifier(std::uint32_t scale) : scale_(scale), unit_(4 * scale <= kWordBits ? 4 : 2) {
    const std::uint64_t wide = (std::uint64_t{1} << scale) - 1;
    for (unsigned bits = 0; bits < 1U << unit_; ++bits) {
      for (unsigned place = 0; place < unit_; ++place)
        wide_[bits] |= (bits >> (unit_ - 1 - place) & 1) * wide << (place * scale);
    }
  }

  /// Calls `take(bits, count)` for the pixels of a byte, from its highest bit on; the first pixel
  /// is in the lowest bit.
  template <class Take>
  void magnify(std::uint8_t byte, Take take) const {
    for (unsigned left = 8; left > 0; left -= unit_)
      take(wide_[byte >> (left - unit_) & ((1U << unit_) - 1)], unit_ * scale_);
  }

 private:
  static constexpr unsigned kWordBits = 64;

  unsigned scale_, unit_;
  std::array<std::uint64_t, 16> wide_{};
};

/// A row of pixels as bits, the first pixel in the lowest one. Some more pixels at the end are like
/// the last one.
class PixelBits {
 public:
  PixelBits(std::span<const std::uint8_t> bytes, const Magnifier& magnifier, unsigned skipped) {
    std::uint64_t pending = 0, *word = words_.data();
    unsigned pendingCount = skipped;
    const auto append = [&](std::uint64_t bits, unsigned count) {
      pending |= bits << pendingCount;
      pendingCount += count;
      if (pendingCount < kWordBits)
        return;
      *word++ = pending;
      pendingCount -= kWordBits;
      pending = pendingCount == 0 ? 0 : bits >> (count - pendingCount);
    };
    for (const std::uint8_t byte : bytes)
      magnifier.magnify(byte, append);
    append((bytes.back() & 1) != 0 ? ~std::uint64_t{0} >> (kWordBits - kMore) : 0, kMore);
    *word = pending;
  }

  /// Calls `take(bits)` for every `count` pixels, until there are `pixels`.
  template <unsigned count, class Take>
  void forEach(unsigned pixels, Take take) const {
    constexpr unsigned kMask = (1U << count) - 1;
    std::uint64_t bits = 0;
    for (unsigned first = 0; first < pixels; first += count, bits >>= count) {
      const unsigned word = first / kWordBits, bit = first % kWordBits;
      if constexpr (kWordBits % count == 0) {
        if (bit == 0)
          bits = words_[word];
      } else {
        bits = words_[word] >> bit;
        if (bit + count > kWordBits)
          bits |= words_[word + 1] << (kWordBits - bit);
      }
      take(static_cast<unsigned>(bits) & kMask);
    }
  }

 private:
  static constexpr unsigned kWordBits = 64, kMore = 12;

  std::array<std::uint64_t, (BitBox::kMostPixels + 2 * kMore) / kWordBits + 1> words_;
};

/// A few neighbouring pixels from the first of a group on, as the two colours leave them if they
/// are plotted from left to right: for every pattern of bits, plotted when it is first asked for.
template <RowPlotter AnyPlotter>
class Clusters {
 public:
  static constexpr unsigned kPixels = AnyPlotter::kGroupPixels > 4 ? AnyPlotter::kGroupPixels : 4;
  static_assert(kPixels % AnyPlotter::kGroupPixels == 0 && kPixels <= 6);
  using Bytes =
      std::array<std::uint8_t, kPixels / AnyPlotter::kGroupPixels * AnyPlotter::kGroupBytes>;

  Clusters(const AnyPlotter& background, const AnyPlotter& foreground)
      : background_(background), foreground_(foreground) {
    for (unsigned pattern = 0; kFew && pattern < kPatterns; ++pattern)
      plot(pattern);
  }

  [[nodiscard]] const Bytes& of(unsigned pattern) {
    if (!kFew && (known_ >> pattern & 1) == 0)
      plot(pattern);
    return bytes_[pattern];
  }

 private:
  void plot(unsigned pattern) {
    known_ |= std::uint64_t{1} << pattern;
    bytes_[pattern].fill(0);
    auto* const canvas = reinterpret_cast<char*>(bytes_[pattern].data());
    const auto paper = background_.onCanvas(canvas), ink = foreground_.onCanvas(canvas);
    for (unsigned m = 0; m < kPixels; ++m)
      ((pattern >> m & 1) != 0 ? ink : paper).put(static_cast<int>(m), 0);
  }

  static constexpr unsigned kPatterns = 1U << kPixels;
  static constexpr bool kFew = kPatterns <= 16;

  const AnyPlotter &background_, &foreground_;
  std::uint64_t known_ = 0;
  std::array<Bytes, kPatterns> bytes_;
};

/// Part of a row in a separate buffer, from the group that holds x on.
template <RowPlotter AnyPlotter>
class RowAside {
 private:
  static constexpr int kMostGroupPixels = 6;
  static constexpr std::size_t kMostBytesPerPixel = 8;
  static_assert(AnyPlotter::kGroupPixels <= kMostGroupPixels);
  static_assert(AnyPlotter::kGroupBytes <= AnyPlotter::kGroupPixels * kMostBytesPerPixel);
  /// Room for the longest row, and for the rest of its first and its last group.
  using Bytes =
      std::array<std::uint8_t, (BitBox::kMostPixels + 2 * kMostGroupPixels) * kMostBytesPerPixel>;

 public:
  RowAside(int x, std::uint32_t pixels)
      : skipped_(x % AnyPlotter::kGroupPixels),
        pixels_(pixels),
        bytes_((static_cast<std::size_t>(skipped_) + pixels + AnyPlotter::kGroupPixels - 1) /
               AnyPlotter::kGroupPixels * AnyPlotter::kGroupBytes),
        offset_(static_cast<std::size_t>(x / AnyPlotter::kGroupPixels) * AnyPlotter::kGroupBytes) {}

  /// Plots the whole run, and finds the bits of the row that the plotter leaves alone: those that
  /// still differ after it has plotted on zeros and on ones.
  void plotRun(const AnyPlotter& plotter) {
    for (Bytes* const bytes : {&row_, &kept_}) {
      std::memset(bytes->data(), bytes == &kept_ ? 0xFF : 0, bytes_);
      plotRow(plotter.onCanvas(reinterpret_cast<char*>(bytes->data())), skipped_, 0, pixels_, 1);
    }
    std::uint8_t any = 0;
    for (std::size_t i = 0; i < bytes_; ++i) {
      kept_[i] ^= row_[i];
      any |= kept_[i];
    }
    opaque_ = any == 0;
  }

  void plot(Clusters<AnyPlotter>& clusters, std::span<const std::uint8_t> bits,
            const Magnifier& magnifier) {
    const auto skipped = static_cast<unsigned>(skipped_);
    std::uint8_t* at = row_.data();
    PixelBits(bits, magnifier, skipped)
        .template forEach<Clusters<AnyPlotter>::kPixels>(skipped + pixels_, [&](unsigned pattern) {
          const auto& cluster = clusters.of(pattern);
          std::memcpy(at, cluster.data(), cluster.size());
          at += cluster.size();
        });
    // The first and the last group may have pixels outside the row.
    for (std::size_t i = 0; i < AnyPlotter::kGroupBytes; ++i) {
      row_[i] &= static_cast<std::uint8_t>(~kept_[i]);
      row_[bytes_ - 1 - i] &= static_cast<std::uint8_t>(~kept_[bytes_ - 1 - i]);
    }
  }

  void layOn(char* row) const {
    if (opaque_)
      std::memcpy(row + offset_, row_.data(), bytes_);
    else
      runKernels().merge(reinterpret_cast<std::uint8_t*>(row) + offset_, kept_.data(), row_.data(),
                         bytes_);
  }

 private:
  int skipped_;  // pixels of the first group
  std::uint32_t pixels_;
  std::size_t bytes_, offset_;
  bool opaque_ = false;
  Bytes row_, kept_;
};

/// False if this is no way to draw the box: the caller must.
template <class AnyPlotter>
bool plotBox(const AnyPlotter& background, const AnyPlotter& foreground, const NKPixel& surface,
             const BitBox& box) {
  if constexpr (requires { &AnyPlotter::template unfoldBoth<int>; }) {
    return AnyPlotter::unfoldBoth(background, foreground, [&](const auto& paper, const auto& ink) {
      return plotBox(paper, ink, surface, box);
    });
  } else if constexpr (RowPlotter<AnyPlotter>) {
    if (!isInside<AnyPlotter>(box.pixelBlock(), surface))
      return false;
    RowAside<AnyPlotter> aside(box.x, box.pixels());
    aside.plotRun(background);
    Clusters<AnyPlotter> clusters(background, foreground);
    const Magnifier magnifier(box.scale);
    int y = box.bottom;
    for (const BitLines& row : box.rows) {
      aside.plot(clusters, std::span(row.bits).first(box.bytes), magnifier);
      for (std::uint32_t line = 0; line < row.lines; ++line, --y)
        aside.layOn(background.rowAt(y));
    }
    return true;
  } else {
    return false;
  }
}

/// Plots the same run on several lines.
template <class AnyPlotter>
void plotBlock(const AnyPlotter& plotter, const NKPixel& surface, const PixelBlock& block) {
  if constexpr (RowPlotter<AnyPlotter>) {
    if (block.columns <= BitBox::kMostPixels && isInside<AnyPlotter>(block, surface)) {
      RowAside<AnyPlotter> aside(block.x, block.columns);
      aside.plotRun(plotter);
      for (std::int64_t line = 0; line < block.lines; ++line)
        aside.layOn(plotter.rowAt(static_cast<int>(block.top + line)));
      return;
    }
  }
  for (std::int64_t line = 0; line < block.lines; ++line)
    plotRow(plotter, block.x, wrappingAdd(0, block.top + line), block.columns, 1);
}

}  // namespace nkdraw
