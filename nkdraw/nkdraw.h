// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The whole C++ interface of nkdraw.
#pragma once

#include <nkdraw/compositor/complete.h>
#include <nkdraw/constants.h>
#include <nkdraw/draw/draw.h>
#include <nkdraw/formats/bayer.h>
#include <nkdraw/formats/chroma_planes.h>
#include <nkdraw/formats/rgb16.h>
#include <nkdraw/formats/rgb30_dpx.h>
#include <nkdraw/formats/rgb8.h>
#include <nkdraw/formats/ycbcr10.h>
#include <nkdraw/formats/ycbcr16.h>
#include <nkdraw/formats/ycbcr8.h>
#include <nkdraw/nkdraw_c.h>
#include <nkdraw/overlay/overlay.h>
#include <nkdraw/platform/host.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/pixel_type.h>
#include <nkdraw/text/font_data.h>
#include <nkdraw/text/label_glyphs.h>
#include <nkdraw/version.h>
