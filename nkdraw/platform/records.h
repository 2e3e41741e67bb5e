// SPDX-License-Identifier: BSD-2-Clause
//
// The records that a host framework and the library hand to each other. Their layout is fixed;
// the header is C99 and C++.
#ifndef NKDRAW_PLATFORM_RECORDS_H
#define NKDRAW_PLATFORM_RECORDS_H

#include <nkdraw/constants.h>
#include <nkdraw/export.h>

#include <stddef.h>
#include <stdint.h>

/// A point in pixels, x to the right and y down.
typedef struct tagPOINT {
  int32_t x, y;
} tagPOINT;

/// A rectangle in pixels.
typedef struct tagRECT {
  int32_t left, top, right, bottom;
} tagRECT;

/// The published 40-byte picture header.
typedef struct BITMAPINFOHEADER {
  uint32_t biSize;
  int32_t biWidth;
  int32_t biHeight;
  uint16_t biPlanes;
  uint16_t biBitCount;
  uint32_t biCompression;
  uint32_t biSizeImage;
  int32_t biXPelsPerMeter;
  int32_t biYPelsPerMeter;
  uint32_t biClrUsed;
  uint32_t biClrImportant;
} BITMAPINFOHEADER;

typedef struct RGBQUAD {
  uint8_t rgbBlue, rgbGreen, rgbRed, rgbReserved;
} RGBQUAD;

/// The header with its first colour, which holds the red mask when `biCompression` is 3.
typedef struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
} BITMAPINFO;

/// What a host says of its video. It opens like a BITMAPINFO.
typedef struct HZWVIDEO {
  uint32_t biSize;   ///< bytes of this record: 1,428
  int32_t biWidth;   ///< frame width in pixels
  int32_t biHeight;  ///< frame height in lines
  uint16_t biPlanes;
  uint16_t biBitCount;
  uint32_t biCompression;  ///< layout code: 0 for plain RGB, else a FOURCC
  uint32_t biSizeImage;    ///< bytes of one frame; 0: no video is set up
  int32_t biXPelsPerMeter;
  int32_t biYPelsPerMeter;
  uint32_t biClrUsed;
  uint32_t biClrImportant;
  uint32_t redMask;
  uint32_t frameScale;  ///< denominator of the frame rate
  uint32_t frameRate;   ///< numerator of the frame rate
  uint32_t scanFlags;   ///< of NKScan: interlaced, segmented frames
  uint8_t reserved[1372];
} HZWVIDEO;

/// What a host says of its system.
typedef struct HZWSYSTEM {
  uint32_t size;      ///< bytes of this record: 356
  uint32_t fileType;  ///< a code of hzwFileType
  uint8_t reserved[348];
} HZWSYSTEM;

/// A frame on its way through a host.
typedef struct QFRAME {
  uint32_t ltcCount;           ///< longitudinal timecode, frames from midnight
  uint32_t vitcCount;          ///< vertical interval timecode, frames from midnight
  char* frameBuffer;           ///< the pixels
  const uint8_t* captionData;  ///< the frame's CEA-608/708 bytes as cc_data triplets, or null
  uint32_t captionBytes;
} QFRAME;

/// A command of the host.
typedef struct STREAMCMD {
  uint32_t commandKind;  ///< an NKCommand
  uint32_t validMask;    ///< of NKCommandMask: the fields below that count
  int32_t smallValue;
  uint32_t extraValue;
  uint32_t subCommand;  ///< an NKGroup
  uint32_t value1;
  uint32_t value2;
  uint32_t value3;
  char textValue[1024];
} STREAMCMD;

#ifdef __cplusplus
static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(BITMAPINFO) == 44);
static_assert(sizeof(HZWVIDEO) == 1428 && offsetof(HZWVIDEO, redMask) == 40);
static_assert(sizeof(HZWSYSTEM) == 356);
#endif

#endif
