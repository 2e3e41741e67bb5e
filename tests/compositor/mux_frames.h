// SPDX-License-Identifier: BSD-2-Clause
//
// Two frames and a display for the multiplexed display's tests.
#pragma once

#include "mux_reference.h"

#include <tests/support/frame.h>

namespace nkdraw::test {

/// Room for the farthest that any mode writes: one row past the frame, and one pixel more.
inline std::size_t reachOf(const MuxCall& call) {
  return std::size_t{call.pitch} * (call.height + 1) + 4;
}

/// The three buffers of a call, `offset` bytes off alignment. Some bytes of the second are near the
/// first's, so that they compare as equal now and then.
struct MuxBuffers {
  explicit MuxBuffers(const MuxCall& call, std::size_t offset = 0, std::uint32_t seed = 1)
      : a(reachOf(call) + offset, seed),
        b(reachOf(call) + offset, seed + 1000),
        dst(reachOf(call) + offset, seed + 2000),
        offset(offset) {
    Random random(seed);
    for (std::size_t i = 0; i < a.bytes().size() / 4 * 4; i += 4) {
      if (random.flag()) {
        for (std::size_t k = i; k < i + 4; ++k)
          b.data()[k] = static_cast<std::uint8_t>(a.data()[k] + random.between(0, 2));
      }
    }
    dst.remember();
  }

  std::uint32_t show(const MuxCall& call) {
    return display(call, a.data() + offset, b.data() + offset, dst.data() + offset);
  }
  void showReference(const MuxCall& call) {
    referenceDisplay(call, a.data() + offset, b.data() + offset, dst.data() + offset);
  }
  std::uint8_t* pixel(const MuxCall& call, std::uint32_t x, std::uint32_t y) {
    return dst.data() + offset + std::size_t{call.pitch} * y + 4 * x;
  }

  Frame a, b, dst;
  std::size_t offset;
};

/// Everything that a call may write, guards included, equals what the reference writes.
inline ::testing::AssertionResult actsAsReference(const MuxCall& call, std::size_t offset = 0,
                                                  std::uint32_t seed = 1) {
  MuxBuffers shown(call, offset, seed), expected(call, offset, seed);
  const std::uint32_t status = shown.show(call);
  expected.showReference(call);
  if (status == 0 && shown.dst.all() == expected.dst.all() && shown.a.all() == expected.a.all() &&
      shown.b.all() == expected.b.all())
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << "mode 0x" << std::hex << call.mode << std::dec << " " << call.width << "x"
         << call.height << " pitch " << call.pitch << " offset " << offset << " seed " << seed
         << " amount " << call.amount << " threshold " << call.threshold << " split " << call.splitX
         << "," << call.splitY << " grid " << call.gridType << " " << call.gridX << ","
         << call.gridY << " wipe " << call.wipe << " status " << status;
}

/// Every mode by its own value, and values that are no mode.
inline constexpr std::uint32_t kMuxValues[] = {2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096,
                                               8192, 16384, 32768, 65536, 262144, 524288, 1048576,
                                               2097152, 8388608,
                                               // the plain mode
                                               0, 1, 3, 6, 131072, 4194304, 64 | 128, 0x00FFFFFF};

}  // namespace nkdraw::test
