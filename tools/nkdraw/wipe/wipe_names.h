// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes by name: the only place that names the numbers.
#pragma once

#include <nkdraw/constants.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace nkdraw::tool {

struct WipeName {
  std::string_view name;
  std::uint32_t number;
  std::string_view description;
};

/// One for each pattern, in listing order.
[[nodiscard]] std::span<const WipeName> wipeNames();

/// The wipe number given for `option`, as a name or as a number. Throws Failure if it is unknown or
/// draws nothing.
[[nodiscard]] std::uint32_t readWipe(const std::string& text, const std::string& option);

/// Whether the wipe moves a whole frame. Such wipes do not work with exchanged inputs.
[[nodiscard]] bool isSlide(std::uint32_t number);

/// "edge-horz", or "wipe 42" for a number without a name.
[[nodiscard]] std::string wipeText(std::uint32_t number);

/// Prints names, numbers, and what the numbers without a name draw.
void listWipes();

}  // namespace nkdraw::tool
