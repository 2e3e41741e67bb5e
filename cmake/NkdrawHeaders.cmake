# SPDX-License-Identifier: BSD-2-Clause
#
# The public headers: installed, and compiled alone by the tests.

set(NKDRAW_PUBLIC_HEADERS
  nkdraw/compositor/complete.h
  nkdraw/compositor/exact.h
  nkdraw/constants.h
  nkdraw/draw/draw.h
  nkdraw/export.h
  nkdraw/formats/bayer.h
  nkdraw/formats/chroma_planes.h
  nkdraw/formats/component_words.h
  nkdraw/formats/rgb16.h
  nkdraw/formats/rgb30_dpx.h
  nkdraw/formats/rgb8.h
  nkdraw/formats/ycbcr10.h
  nkdraw/formats/ycbcr16.h
  nkdraw/formats/ycbcr8.h
  nkdraw/nkdraw.h
  nkdraw/nkdraw_c.h
  nkdraw/overlay/overlay.h
  nkdraw/overlay/shared_pointer.h
  nkdraw/platform/captions.h
  nkdraw/platform/config.h
  nkdraw/platform/flip.h
  nkdraw/platform/frame_memory.h
  nkdraw/platform/graphics.h
  nkdraw/platform/host.h
  nkdraw/platform/log.h
  nkdraw/platform/media_names.h
  nkdraw/platform/media_reader.h
  nkdraw/platform/memory.h
  nkdraw/platform/module.h
  nkdraw/platform/records.h
  nkdraw/platform/sync.h
  nkdraw/platform/thread.h
  nkdraw/platform/timecode.h
  nkdraw/surface/factory.h
  nkdraw/surface/layout_facts.h
  nkdraw/surface/pixel.h
  nkdraw/surface/pixel_type.h
  nkdraw/text/font_data.h
  nkdraw/text/label_glyphs.h
  nkdraw/version.h)

# The headers that a C99 program may include.
set(NKDRAW_C_HEADERS
  nkdraw/compositor/complete.h
  nkdraw/compositor/exact.h
  nkdraw/constants.h
  nkdraw/export.h
  nkdraw/nkdraw_c.h
  nkdraw/platform/records.h
  nkdraw/surface/pixel_type.h
  nkdraw/version.h)
