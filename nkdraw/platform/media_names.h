// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Short names of codecs and file types, as the overlay's format line shows them.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// The codes that a host puts into HZWSYSTEM::fileType.
enum hzwFileType : std::uint32_t {
  hzwFileNone = 0,     ///< frames that come from no file
  hzwFileMOV = 1,      ///< QuickTime
  hzwFileMP4 = 2,      ///< MPEG-4
  hzwFileAVI = 3,      ///< Audio Video Interleave
  hzwFileMKV = 4,      ///< Matroska
  hzwFileNUT = 5,      ///< NUT
  hzwFileMXF = 6,      ///< Material Exchange Format (SMPTE ST 377-1)
  hzwFileMPEGTS = 7,   ///< MPEG transport stream
  hzwFileMPEGPS = 8,   ///< MPEG program stream
  hzwFileY4M = 9,      ///< YUV4MPEG2
  hzwFileRaw = 10,     ///< frames without a container
  hzwFileWebM = 11,    ///< WebM
  hzwFileOGG = 12,     ///< Ogg
  hzwFileGXF = 13,     ///< General Exchange Format (SMPTE ST 360)
  hzwFileDPX = 14,     ///< Digital Picture Exchange (SMPTE ST 268)
  hzwFileStills = 15,  ///< single pictures
};

/// A short name for a header's `biCompression`: "RGB" for 0 and 3 (RGB with masks), otherwise the
/// code's four letters in their usual order, whichever order the code has them in ("v210" for both
/// v210 and 012v). Characters that can't be shown become '?'. Never null; valid until the same
/// thread calls again.
[[nodiscard]] NKDRAW_API const char* hzwutilCodecTypeString(std::uint32_t compression);

/// A short name for an hzwFileType: "MOV", "AVI" and so on, "LIVE" for hzwFileNone, "FILE" for any
/// other code. Never null; a constant.
[[nodiscard]] NKDRAW_API const char* hzwutilFileTypeString(std::uint32_t fileType);
