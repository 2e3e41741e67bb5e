// SPDX-License-Identifier: BSD-2-Clause
//
// Streams of uncompressed frames in a layout of the table.
#pragma once

#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/libav.h"

namespace nkdraw::media {

/// Throws Failure unless files of this kind keep the layout.
void checkKeeps(const AVOutputFormat& format, const Layout& layout);

/// Makes the stream one of plain frames in `layout`. Shape and colours that it already has stay.
void describeRaw(AVStream& stream, const Layout& layout, const FrameKind& frames,
                 const AVOutputFormat& format);

}  // namespace nkdraw::media
