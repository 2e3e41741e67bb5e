// SPDX-License-Identifier: BSD-2-Clause
//
// A place in the frame, or a size.
#pragma once

namespace nkdraw::tool {

struct Point {
  int x = 0, y = 0;
};

}  // namespace nkdraw::tool
