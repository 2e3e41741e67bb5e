// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/text/font_data.h>

namespace nkdraw {

FontData fontData = {};

}  // namespace nkdraw
