// SPDX-License-Identifier: BSD-2-Clause
//
// Frames as the ffmpeg command decodes them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::test {

/// Runs `ffmpeg ARGUMENTS` on a file of `bytes`, whose name replaces {} in the arguments, and
/// returns its standard output. If the run fails, the test fails.
[[nodiscard]] std::vector<std::uint8_t> throughFfmpeg(std::span<const std::uint8_t> bytes,
                                                      const std::string& suffix,
                                                      const std::vector<std::string>& arguments);

/// One raw frame of pixel format `from`, converted to `to`, whose samples are 16-bit words.
[[nodiscard]] std::vector<std::uint16_t> decodedWords(std::span<const std::uint8_t> frame,
                                                      const std::string& from, int width,
                                                      int height, const std::string& to);

/// Bytes as little-endian words.
[[nodiscard]] std::vector<std::uint16_t> wordsOf(std::span<const std::uint8_t> bytes);

}  // namespace nkdraw::test
