// SPDX-License-Identifier: BSD-2-Clause
//
// Short names of codecs and file types, as the overlay's format line shows them.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// The codes that a host puts into HZWSYSTEM::fileType.
enum hzwFileType : std::uint32_t {
  hzwFileNone = 0,  ///< frames that come from no file
  hzwFileMOV = 1,
  hzwFileMP4 = 2,
  hzwFileAVI = 3,
  hzwFileMKV = 4,
  hzwFileNUT = 5,
  hzwFileMXF = 6,
  hzwFileMPEGTS = 7,
  hzwFileMPEGPS = 8,
  hzwFileY4M = 9,
  hzwFileRaw = 10,
  hzwFileWebM = 11,
  hzwFileOGG = 12,
  hzwFileGXF = 13,
  hzwFileDPX = 14,
  hzwFileStills = 15,
};

/// A short name for a header's `biCompression`: "RGB" for 0, "RGB" with the masks' code 3, else
/// the code's four letters in the order in which they are usually read, whichever order the code
/// is in ("v210" for both v210 and 012v); characters that can't be shown become '?'. The text is
/// valid until the same thread calls again.
[[nodiscard]] NKDRAW_API const char* hzwutilCodecTypeString(std::uint32_t compression);

/// A short name for a file type: "MOV", "AVI" and so on, "LIVE" for hzwFileNone, "FILE" for a code
/// that is not in the table. Never null.
[[nodiscard]] NKDRAW_API const char* hzwutilFileTypeString(std::uint32_t fileType);
