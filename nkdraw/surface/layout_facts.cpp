// SPDX-License-Identifier: BSD-2-Clause
//
// Checks the table of layouts against the list of pixelTypes: a layout without a row does not
// compile.
#include <nkdraw/surface/layout_facts.h>

#include <utility>

namespace nkdraw {
namespace {

/// Whether pixelType has a name for the value. The compiler prints the name, or else a cast number.
template <pixelType type>
consteval bool isNamed() {
  return std::string_view(__PRETTY_FUNCTION__).find("(pixelType)") == std::string_view::npos;
}
static_assert(isNamed<ptRGBA32>() && !isNamed<static_cast<pixelType>(0)>());

/// Whether, of 256 values from `first` on, exactly those with a name have a row.
template <std::int32_t first, std::int32_t... offsets>
consteval bool isComplete(std::integer_sequence<std::int32_t, offsets...> /*all*/) {
  return ((isNamed<static_cast<pixelType>(first + offsets)>() ==
           (factsRow(first + offsets) < kLayoutFacts.size())) &&
          ...);
}
constexpr auto kValues = std::make_integer_sequence<std::int32_t, 256>();
static_assert(isComplete<0>(kValues), "a pixelType has no row in kLayoutFacts, or none its value");
static_assert(isComplete<ptUV8>(kValues), "a pixelType has no row in kLayoutFacts");

/// Whether the samples have room, and each pixel has a sample of its own.
constexpr bool isSound(const LayoutFacts& facts) {
  if (facts.rows == 0 || facts.groupPixels == 0 || facts.rowPixels == 0)
    return false;
  const std::size_t samples = sampleCount(facts) / facts.rows;
  for (std::size_t i = 0; i < samples; ++i) {
    if (sampleBit(facts, i) + facts.depth > 8U * facts.groupBytes)
      return false;
  }
  return samples * facts.rows == sampleCount(facts) && samples >= facts.groupPixels &&
         facts.rowPixels % (facts.rowPixels == 1 ? 1 : facts.groupPixels) == 0;
}
static_assert(std::all_of(kLayoutFacts.begin(), kLayoutFacts.end(), isSound));

}  // namespace
}  // namespace nkdraw
