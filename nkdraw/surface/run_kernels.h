// SPDX-License-Identifier: BSD-2-Clause
//
// The loops for runs of pixels, in the widest vectors of the machine.
#pragma once

#include <nkdraw/surface/truncate.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw {

/// 24 bytes of consecutive pixels in one colour: a whole number of pixels of 1, 2, 3, 4, 6 or 8
/// bytes. Three words with their lowest byte first.
class Block {
 public:
  static constexpr std::size_t kBytes = 24;

  /// The block, beginning with the first byte of a pixel.
  template <std::size_t kPixel>
  explicit Block(const std::array<std::uint8_t, kPixel>& pixel) {
    static_assert(kBytes % kPixel == 0 && kPixel <= 8);
    std::uint64_t bits = 0;
    std::memcpy(&bits, pixel.data(), kPixel);
    for (std::size_t i = 0; i < words_.size(); ++i)
      words_[i] = wordFrom<kPixel>(bits, 8 * i % kPixel);
  }

  /// The block, beginning with another of its bytes, below kBytes.
  [[nodiscard]] Block from(std::size_t byte) const {
    Block block;
    const std::size_t word = byte / 8, shift = 8 * (byte % 8);
    for (std::size_t i = 0; i < words_.size(); ++i) {
      const std::uint64_t low = words_[(word + i) % 3], high = words_[(word + i + 1) % 3];
      block.words_[i] = shift == 0 ? low : low >> shift | high << (64 - shift);
    }
    return block;
  }

  [[nodiscard]] const std::array<std::uint64_t, 3>& words() const { return words_; }
  [[nodiscard]] std::uint8_t operator[](std::size_t byte) const {
    return static_cast<std::uint8_t>(words_[byte / 8] >> (8 * (byte % 8)));
  }

 private:
  Block() = default;

  template <std::size_t kPixel>
  static constexpr std::uint64_t wordFrom(std::uint64_t pixel, std::size_t byte) {
    std::uint64_t word = pixel >> (8 * byte);
    for (std::size_t at = kPixel - byte; at < 8; at += kPixel)
      word |= pixel << (8 * at);
    return word;
  }

  std::array<std::uint64_t, 3> words_;
};

/// Sixteen bytes, some of whose bits belong to a colour.
struct MaskedGroup {
  alignas(16) std::array<std::uint8_t, 16> kept;  ///< a set bit stays as it is
  alignas(16) std::array<std::uint8_t, 16> colour;
};

/// word' = (1 - alpha) * word + colour * alpha, in doubles, truncated. The four bytes are one
/// number in the machine's order, so that a channel's fraction carries into the channel below it.
[[nodiscard]] inline std::uint32_t blendedWord(std::uint32_t word, std::uint32_t colour,
                                               double alpha) {
  return truncateToLow32((1.0 - alpha) * word + colour * alpha);
}

/// Each needs no alignment, and touches no other memory.
struct RunKernels {
  /// Stores `bytes` bytes of a colour, repeating the block from its first byte on.
  void (*repeat)(std::uint8_t* at, const Block& block, std::size_t bytes);
  /// Sets the bits that are not kept, in groups of sixteen bytes.
  void (*setBits)(std::uint8_t* at, const MaskedGroup& group, std::size_t groups);
  /// Sets the bits of `row` that are not kept; those kept are 0.
  void (*merge)(std::uint8_t* at, const std::uint8_t* kept, const std::uint8_t* row,
                std::size_t bytes);
  /// blendedWord of each word, for an alpha above 0.0 and at most 1.0.
  void (*blendWords)(std::uint8_t* at, std::uint32_t colour, double alpha, std::size_t words);
  /// Adds bytes to those of each word, with wrapping, and sets the last byte to 255.
  void (*addBytes)(std::uint8_t* at, std::uint32_t addends, std::size_t words);
};

/// The plain form.
extern const RunKernels kPlainRuns;

/// The fastest among `targets`, Highway's bits.
[[nodiscard]] const RunKernels& runKernels(std::int64_t targets);
/// The fastest of this machine.
[[nodiscard]] const RunKernels& runKernels();

/// Below these numbers of bytes, whole vectors are slower than plain loops. kShortRun is for pixels
/// that are computed, kShortStores for pixels that are only stored.
inline constexpr std::size_t kShortRun = 64, kShortStores = 128;

/// Stores `bytes` bytes of pixels of one colour; the last pixel may be cut.
template <std::size_t kBytes>
inline void storeBytes(std::uint8_t* at, const std::array<std::uint8_t, kBytes>& colour,
                       std::size_t bytes) {
  if (bytes >= kShortStores)
    return runKernels().repeat(at, Block(colour), bytes);
  const std::array<std::uint8_t, kBytes> pixel = colour;  // the stores can't alias it
  for (; bytes >= kBytes; bytes -= kBytes, at += kBytes)
    std::memcpy(at, pixel.data(), kBytes);
  for (std::size_t i = 0; i < bytes; ++i)
    at[i] = pixel[i];
}

/// Stores `count` pixels of one colour.
template <std::size_t kBytes>
inline void storeRun(std::uint8_t* at, const std::array<std::uint8_t, kBytes>& colour,
                     std::size_t count) {
  storeBytes(at, colour, count * kBytes);
}

}  // namespace nkdraw
