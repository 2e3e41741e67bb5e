// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The pixel layouts, by number. The header is C99 and C++.
#ifndef NKDRAW_SURFACE_PIXEL_TYPE_H
#define NKDRAW_SURFACE_PIXEL_TYPE_H

#include <nkdraw/export.h>

#include <stdint.h>

/// A pixel layout. Channels are named in memory order, lowest address first; words are
/// little-endian unless the comment says otherwise. nkdraw::kLayoutFacts has the facts of each.
#ifdef __cplusplus
enum NKDRAW_API pixelType : int32_t
#else
enum pixelType
#endif
{
  ptNone = -1,         ///< no surface draws in it
  ptRGBA32 = 1,        ///< bytes R, G, B, A
  ptARGB32 = 2,        ///< bytes A, R, G, B
  ptBGRA32 = 3,        ///< bytes B, G, R, A
  ptABGR32 = 4,        ///< bytes A, B, G, R
  ptRGB24 = 5,         ///< bytes R, G, B
  ptBGR24 = 6,         ///< bytes B, G, R
  ptYUYV = 10,         ///< 8-bit 4:2:2, bytes Y, Cb, Y, Cr for two pixels
  ptUYVY = 11,         ///< 8-bit 4:2:2, bytes Cb, Y, Cr, Y
  ptYVYU = 12,         ///< 8-bit 4:2:2, bytes Y, Cr, Y, Cb
  ptVYUY = 13,         ///< 8-bit 4:2:2, bytes Cr, Y, Cb, Y
  ptV210 = 14,         ///< 10-bit 4:2:2, six pixels in sixteen bytes
  ptRGB30DPX = 20,     ///< big-endian word, 10 bits a channel (SMPTE ST 268, method A)
  ptBayerBGGR = 21,    ///< 12-bit packed mosaic, first row B G, second row G R
  ptBayerRGGB = 22,    ///< first row R G, second row G B
  ptBayerGBRG = 23,    ///< first row G B, second row R G
  ptBayerGRBG = 24,    ///< first row G R, second row B G
  ptBayerBGGR12 = 25,  ///< as ptBayerBGGR
  ptBayerRGGB12 = 26,  ///< as ptBayerRGGB
  ptBayerGBRG12 = 27,  ///< as ptBayerGBRG
  ptBayerGRBG12 = 28,  ///< as ptBayerGRBG
  ptRGBAFloat = 29,    ///< four 32-bit floats; combined by the compositor, never drawn on
  ptRGBFloat = 30,     ///< three 32-bit floats; compositor only
  ptRGB48 = 31,        ///< 16-bit words R, G, B
  ptARGB64 = 32,       ///< 16-bit words A, R, G, B
  ptYCbCr24 = 33,      ///< three bytes; compositor only
  ptYCbCrA32 = 34,     ///< four bytes; compositor only
  ptYCbCr48 = 35,      ///< three 16-bit words; compositor only
  ptYCbCrA64 = 36,     ///< four 16-bit words; compositor only
  ptRGBHalf48 = 37,    ///< three 16-bit words
  ptRGBAHalf64 = 38,   ///< four 16-bit words
  ptUV8 = 10000,       ///< 8-bit chroma plane
  ptUV16 = 10001       ///< 16-bit chroma plane
};

#endif
