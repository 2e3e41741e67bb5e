// SPDX-License-Identifier: BSD-2-Clause
//
// Frame buffers with guard bytes around them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <vector>

namespace nkdraw::test {

/// Bytes to draw into, with `slack` more before and after. All start as seeded noise, so any byte
/// that is written shows, whatever its value. Frames of the same sizes and seed are equal.
class Frame {
 public:
  explicit Frame(std::size_t bytes, std::uint32_t seed = 1, std::size_t slack = 64)
      : bytes_(bytes), slack_(slack), storage_(slack + bytes + slack) {
    std::mt19937 noise(seed);
    for (std::uint8_t& byte : storage_)
      byte = static_cast<std::uint8_t>(noise() >> 24);
    before_ = storage_;
  }

  [[nodiscard]] char* canvas() { return reinterpret_cast<char*>(data()); }
  [[nodiscard]] std::uint8_t* data() { return storage_.data() + slack_; }
  [[nodiscard]] std::span<std::uint8_t> bytes() { return {data(), bytes_}; }
  [[nodiscard]] std::uint8_t& operator[](std::ptrdiff_t offset) { return data()[offset]; }

  /// The frame and its guards.
  [[nodiscard]] const std::vector<std::uint8_t>& all() const { return storage_; }

  void fill(std::uint8_t value) {
    std::memset(data(), value, bytes_);
    before_ = storage_;
  }
  /// The state that `changed` compares with from now on.
  void remember() { before_ = storage_; }

  [[nodiscard]] bool guardsIntact() const {
    const auto* const behind = storage_.data() + slack_ + bytes_;
    return std::memcmp(storage_.data(), before_.data(), slack_) == 0 &&
           std::memcmp(behind, before_.data() + slack_ + bytes_, slack_) == 0;
  }
  [[nodiscard]] bool untouched() const { return storage_ == before_; }

  /// Offsets from the first byte of the frame, in ascending order, of the bytes that have changed.
  [[nodiscard]] std::vector<std::ptrdiff_t> changed() const {
    std::vector<std::ptrdiff_t> offsets;
    for (std::size_t i = 0; i < storage_.size(); ++i) {
      if (storage_[i] != before_[i])
        offsets.push_back(static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(slack_));
    }
    return offsets;
  }

 private:
  std::size_t bytes_;
  std::size_t slack_;
  std::vector<std::uint8_t> storage_;
  std::vector<std::uint8_t> before_;
};

[[nodiscard]] inline std::uint32_t wordAt(const std::uint8_t* at) {
  std::uint32_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

inline void setWord(std::uint8_t* at, std::uint32_t word) {
  std::memcpy(at, &word, sizeof word);
}

/// Seeded random numbers of the kinds that tests need.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}

  [[nodiscard]] std::uint32_t word() { return static_cast<std::uint32_t>(engine_()); }
  /// From `low` to `high`, both included.
  [[nodiscard]] int between(int low, int high) {
    return low + static_cast<int>(word() % (static_cast<std::uint32_t>(high - low) + 1));
  }
  [[nodiscard]] bool flag() { return (word() & 1) != 0; }
  /// From `low` up to `high`.
  [[nodiscard]] double real(double low, double high) {
    return low + (high - low) * (static_cast<double>(word()) / 4294967296.0);
  }

 private:
  std::mt19937 engine_;
};

}  // namespace nkdraw::test
