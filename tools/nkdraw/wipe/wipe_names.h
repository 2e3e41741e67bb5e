// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes by name: the one place that says what the numbers are called.
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

/// One for each pattern, in the order in which they are listed.
[[nodiscard]] std::span<const WipeName> wipeNames();

/// The wipe number that a user gave, by name or by number, for `option`. Throws Failure for one
/// that is unknown or that draws nothing.
[[nodiscard]] std::uint32_t readWipe(const std::string& text, const std::string& option);

/// Whether the wipe moves a whole frame, which it can't do with the inputs swapped.
[[nodiscard]] bool isSlide(std::uint32_t number);

/// "edge-horz", or "wipe 42" for a number without a name of its own.
[[nodiscard]] std::string wipeText(std::uint32_t number);

/// Prints names, numbers, and what the numbers without a name draw.
void listWipes();

}  // namespace nkdraw::tool
