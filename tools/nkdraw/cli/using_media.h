// SPDX-License-Identifier: BSD-2-Clause
//
// The command calls what nkdraw_media has by its plain names: every file that uses it includes
// this.
#pragma once

namespace nkdraw::media {}

namespace nkdraw::tool {
using namespace media;
}
