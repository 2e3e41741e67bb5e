// SPDX-License-Identifier: BSD-2-Clause
//
// CEA-608 caption commands, encoded pair by pair as a caption encoder sends them.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

namespace nkdraw::test {

using CaptionPair = std::array<std::uint8_t, 2>;

/// A byte of seven bits with its parity bit.
[[nodiscard]] constexpr std::uint8_t withParity(unsigned value) {
  const unsigned bits = value & 0x7F;
  return static_cast<std::uint8_t>(std::popcount(bits) % 2 == 1 ? bits : bits | 0x80);
}

enum class CaptionColour { kWhite, kGreen, kBlue, kCyan, kRed, kYellow, kMagenta, kItalic };

/// The pairs of one channel, 1 to 4 for CC1 to CC4, one pair for each frame.
class CaptionStream {
 public:
  explicit CaptionStream(unsigned channel = 1) : channel_(channel) {}

  [[nodiscard]] const std::vector<CaptionPair>& pairs() const { return pairs_; }
  [[nodiscard]] unsigned field() const { return (channel_ - 1) / 2; }

  CaptionStream& raw(unsigned first, unsigned second) {
    pairs_.push_back({withParity(first), withParity(second)});
    return *this;
  }
  CaptionStream& silence(int frames = 3) {
    for (int i = 0; i < frames; ++i)
      raw(0, 0);
    return *this;
  }
  /// Commands are sent twice.
  CaptionStream& command(unsigned first, unsigned second) {
    const unsigned channelBit = (channel_ - 1) % 2 << 3;
    return raw(first | channelBit, second).raw(first | channelBit, second);
  }
  CaptionStream& text(std::string_view characters) {
    for (std::size_t i = 0; i < characters.size(); i += 2)
      raw(static_cast<unsigned char>(characters[i]),
          i + 1 < characters.size() ? static_cast<unsigned char>(characters[i + 1]) : 0);
    return *this;
  }

  CaptionStream& loadPopOn() { return misc(0x20); }
  CaptionStream& paintOn() { return misc(0x29); }
  CaptionStream& rollUp(unsigned rows) { return misc(0x23 + rows); }
  CaptionStream& restartText() { return misc(0x2A); }
  CaptionStream& eraseDisplayed() { return misc(0x2C); }
  CaptionStream& carriageReturn() { return misc(0x2D); }
  CaptionStream& eraseHidden() { return misc(0x2E); }
  CaptionStream& endOfCaption() { return misc(0x2F); }
  CaptionStream& backspace() { return misc(0x21); }

  /// The preamble of a row, 1 to 15.
  CaptionStream& row(unsigned number, CaptionColour colour = CaptionColour::kWhite,
                     bool underline = false) {
    return preamble(number, static_cast<unsigned>(colour) << 1 | (underline ? 1U : 0U));
  }
  /// The same, indented by `columns`, a multiple of four.
  CaptionStream& indentedRow(unsigned number, unsigned columns) {
    return preamble(number, 0x10 | columns / 4 << 1);
  }
  CaptionStream& midRow(CaptionColour colour, bool underline = false) {
    return command(0x11, 0x20 | static_cast<unsigned>(colour) << 1 | (underline ? 1U : 0U));
  }
  CaptionStream& special(unsigned number) { return command(0x11, 0x30 | number); }

 private:
  CaptionStream& misc(unsigned code) { return command(0x14 + field(), code); }
  CaptionStream& preamble(unsigned number, unsigned attributes) {
    // The row's upper three bits go with the first byte, its last bit with the second.
    constexpr std::array<unsigned, 15> kRowCodes = {2,  3,  4, 5, 10, 11, 12, 13,
                                                    14, 15, 0, 6, 7,  8,  9};
    const unsigned code = kRowCodes[number - 1];
    return command(0x10 | code >> 1, 0x40 | (code & 1) << 5 | attributes);
  }

  unsigned channel_;
  std::vector<CaptionPair> pairs_;
};

}  // namespace nkdraw::test
