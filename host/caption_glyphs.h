// SPDX-License-Identifier: BSD-2-Clause
#pragma once

#include <cstdint>

namespace nkdraw {

/// The cell of the label font that shows a Unicode character; that of '?' for one it lacks.
[[nodiscard]] std::uint8_t captionGlyph(std::uint32_t unicode);

}  // namespace nkdraw
