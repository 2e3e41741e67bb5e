// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The records that a host framework and the library exchange. Their layout is fixed. The header is
/// C99 and C++.
#ifndef NKDRAW_PLATFORM_RECORDS_H
#define NKDRAW_PLATFORM_RECORDS_H

#include <nkdraw/constants.h>
#include <nkdraw/export.h>

#include <stddef.h>
#include <stdint.h>

/// A point in pixels, x to the right and y down.
typedef struct tagPOINT {
  int32_t x,  ///< column
      y;      ///< row
} tagPOINT;

/// A rectangle in pixels.
typedef struct tagRECT {
  int32_t left,  ///< first column
      top,       ///< first row
      right,     ///< last column, or one past it, as the operation says
      bottom;    ///< last row, or one past it, as the operation says
} tagRECT;

/// The 40-byte header of a BMP picture.
typedef struct BITMAPINFOHEADER {
  uint32_t biSize;          ///< bytes of this record: 40; not read
  int32_t biWidth;          ///< pixels
  int32_t biHeight;         ///< rows; GetDraw drops the sign
  uint16_t biPlanes;        ///< not read
  uint16_t biBitCount;      ///< bits a pixel; written by GetDraw
  uint32_t biCompression;   ///< layout code: 0, 3 (RGB with masks) or a FOURCC
  uint32_t biSizeImage;     ///< bytes of a frame; written by GetDraw
  int32_t biXPelsPerMeter;  ///< not read
  int32_t biYPelsPerMeter;  ///< not read
  uint32_t biClrUsed;       ///< not read
  uint32_t biClrImportant;  ///< not read
} BITMAPINFOHEADER;

/// A colour of a BMP picture.
typedef struct RGBQUAD {
  uint8_t rgbBlue,  ///< blue, 0 to 255
      rgbGreen,     ///< green, 0 to 255
      rgbRed,       ///< red, 0 to 255
      rgbReserved;  ///< not a channel
} RGBQUAD;

/// The header with its first colour, which holds the red mask when `biCompression` is 3.
typedef struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;  ///< the header
  RGBQUAD bmiColors[1];        ///< the first colour, or the red mask
} BITMAPINFO;

/// What a host says of its video. It begins like a BITMAPINFO.
typedef struct HZWVIDEO {
  uint32_t biSize;          ///< bytes of this record: 1,428
  int32_t biWidth;          ///< frame width in pixels
  int32_t biHeight;         ///< frame height in lines
  uint16_t biPlanes;        ///< not read
  uint16_t biBitCount;      ///< bits a pixel
  uint32_t biCompression;   ///< layout code: 0, 3 (RGB with masks) or a FOURCC
  uint32_t biSizeImage;     ///< bytes of one frame; 0: no video is set up
  int32_t biXPelsPerMeter;  ///< not read
  int32_t biYPelsPerMeter;  ///< not read
  uint32_t biClrUsed;       ///< not read
  uint32_t biClrImportant;  ///< not read
  uint32_t redMask;         ///< mask of the red channel when `biCompression` is 3
  uint32_t frameScale;      ///< denominator of the frame rate
  uint32_t frameRate;       ///< numerator of the frame rate
  uint32_t scanFlags;       ///< of NKScan: interlaced or segmented frames
  uint8_t reserved[1372];   ///< not read
} HZWVIDEO;

/// What a host says of its system.
typedef struct HZWSYSTEM {
  uint32_t size;          ///< bytes of this record: 356
  uint32_t fileType;      ///< a code of hzwFileType
  uint8_t reserved[348];  ///< not read
} HZWSYSTEM;

/// A frame on its way through a host.
typedef struct QFRAME {
  uint32_t ltcCount;           ///< longitudinal timecode, frames from midnight
  uint32_t vitcCount;          ///< vertical interval timecode, frames from midnight
  char* frameBuffer;           ///< the pixels
  const uint8_t* captionData;  ///< the frame's CEA-608/708 cc_data triplets, or null
  uint32_t captionBytes;       ///< bytes at `captionData`
} QFRAME;

/// A command of the host to an overlay. What the values mean depends on the group: docs/overlay.md.
typedef struct STREAMCMD {
  uint32_t commandKind;  ///< an NKCommand
  uint32_t validMask;    ///< of NKCommandMask: the fields below that count
  int32_t smallValue;    ///< a size, an opacity or a slot
  uint32_t extraValue;   ///< the number of audio channels
  uint32_t subCommand;   ///< an NKGroup
  uint32_t value1;       ///< mostly whether it is shown
  uint32_t value2;       ///< mostly the left edge
  uint32_t value3;       ///< mostly the upper edge
  char textValue[1024];  ///< a text with its zero
} STREAMCMD;

#ifdef __cplusplus
static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(BITMAPINFO) == 44);
static_assert(sizeof(HZWVIDEO) == 1428 && offsetof(HZWVIDEO, redMask) == 40);
static_assert(sizeof(HZWSYSTEM) == 356);
#endif

#endif
