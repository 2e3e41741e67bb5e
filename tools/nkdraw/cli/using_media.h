// SPDX-License-Identifier: BSD-2-Clause
//
// Makes nkdraw_media's names available without qualification; every file of the command that uses
// them includes this.
#pragma once

namespace nkdraw::media {}

namespace nkdraw::tool {
using namespace media;
}
