// SPDX-License-Identifier: BSD-2-Clause
//
// Plotting where a pixel is a whole number of bytes that hold only its colour.
#pragma once

#include <nkdraw/surface/address.h>
#include <nkdraw/surface/run_kernels.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw {

/// Stores the bytes of one colour; pixels are `kBytes` apart. Only a missing canvas is refused.
template <std::size_t kBytes>
class PackedPlotter {
 public:
  using Bytes = std::array<std::uint8_t, kBytes>;

  PackedPlotter(char* canvas, std::uint32_t pitch, const Bytes& colour)
      : canvas_(canvas), pitch_(pitch), colour_(colour) {}

  std::uint32_t put(int x, int y) const {
    if (canvas_ != nullptr)
      write(address(x, y));
    return 0;
  }

  void row(int x, int y, int count) const {
    if (canvas_ != nullptr && count > 0)
      storeRun(reinterpret_cast<std::uint8_t*>(address(x, y)), colour_,
               static_cast<std::size_t>(count));
  }

  static constexpr int kGroupPixels = 1;
  static constexpr std::size_t kGroupBytes = kBytes;
  [[nodiscard]] char* rowAt(int y) const { return address(0, y); }
  [[nodiscard]] PackedPlotter onCanvas(char* canvas) const { return {canvas, 0, colour_}; }

  /// Stores the colour at an address that a surface returned.
  void write(void* at) const { std::memcpy(at, colour_.data(), kBytes); }

 private:
  [[nodiscard]] char* address(int x, int y) const {
    return canvas_ + rowOffset(pitch_, y) + static_cast<std::ptrdiff_t>(kBytes) * x;
  }

  char* canvas_;
  std::uint32_t pitch_;
  Bytes colour_;
};

}  // namespace nkdraw
