// SPDX-License-Identifier: BSD-2-Clause
//
// The upper half of code page 437, and further characters of captions.
#include "caption_glyphs.h"

#include <string_view>

namespace nkdraw {
namespace {

constexpr std::uint8_t kNotes = 14;
constexpr std::uint8_t kFullBlock = 219;
constexpr std::uint8_t kUpperHalf = 128;

constexpr std::u16string_view kUpperCells =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒ"
    u"áíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²";

}  // namespace

std::uint8_t captionGlyph(std::uint32_t unicode) {
  if (unicode >= ' ' && unicode <= '~')
    return static_cast<std::uint8_t>(unicode);
  if (unicode == u'♪')
    return kNotes;
  if (unicode == u'■')  // in captions it fills a whole cell
    return kFullBlock;
  const std::size_t at = kUpperCells.find(static_cast<char16_t>(unicode));
  return at == std::u16string_view::npos ? '?' : static_cast<std::uint8_t>(kUpperHalf + at);
}

}  // namespace nkdraw
