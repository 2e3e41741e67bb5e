// SPDX-License-Identifier: BSD-2-Clause
#pragma once

#include <cstdint>

namespace nkdraw {

/// The label font's cell for a Unicode character; the cell of '?' if the font lacks it.
[[nodiscard]] std::uint8_t captionGlyph(std::uint32_t unicode);

}  // namespace nkdraw
