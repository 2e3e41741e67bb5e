// SPDX-License-Identifier: BSD-2-Clause
//
// Short names of codecs and file types.
#include <nkdraw/platform/media_names.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::uint32_t kPlainRGB = 0;
constexpr std::uint32_t kBitFields = 3;

constexpr std::size_t kLetters = 4;
using Letters = std::array<char, kLetters>;

/// Names of codec families whose codes have the first letter in the top byte, and so stand reversed
/// in a header.
constexpr std::string_view kTurnedNames[] = {
    // Uncompressed
    "v210", "v216", "v308", "v410", "2vuy", "2Vuy", "2vua", "r210", "R10g", "R10k", "b48r", "b64a",
    // ProRes
    "apcn", "apcs", "apco", "apch", "ap4h",
    // H.264 and AVC-Intra
    "avc1", "ai12", "ai13", "ai15", "ai16", "ai1p", "ai1q", "ai52", "ai53", "ai55", "ai56", "ai5p",
    "ai5q",
    // DV and DVCPRO
    "dvc ", "dvcp", "dv1n", "dv1p", "dv5n", "dv5p", "dvh2", "dvh3", "dvh5", "dvh6", "dvhp", "dvhq",
    "dvpn", "dvpp"};

constexpr std::string_view kFileTypeNames[] = {
    "LIVE",     // hzwFileNone
    "MOV",      // hzwFileMOV
    "MP4",      // hzwFileMP4
    "AVI",      // hzwFileAVI
    "MKV",      // hzwFileMKV
    "NUT",      // hzwFileNUT
    "MXF",      // hzwFileMXF
    "MPEG-TS",  // hzwFileMPEGTS
    "MPEG-PS",  // hzwFileMPEGPS
    "Y4M",      // hzwFileY4M
    "RAW",      // hzwFileRaw
    "WEBM",     // hzwFileWebM
    "OGG",      // hzwFileOGG
    "GXF",      // hzwFileGXF
    "DPX",      // hzwFileDPX
    "STILLS",   // hzwFileStills
};
static_assert(std::size(kFileTypeNames) == hzwFileStills + 1);

/// The letters of a FOURCC, from the low byte on.
Letters lettersOf(std::uint32_t code) {
  Letters letters;
  for (char& letter : letters) {
    letter = static_cast<char>(code & 0xFF);
    code >>= 8;
  }
  return letters;
}

/// The letters in reading order.
Letters inReadingOrder(Letters letters) {
  Letters turned = letters;
  std::reverse(turned.begin(), turned.end());
  const std::string_view name(turned.data(), turned.size());
  return std::ranges::find(kTurnedNames, name) != std::end(kTurnedNames) ? turned : letters;
}

bool cannotBeShown(char letter) {
  return letter < ' ' || letter > '~';
}

}  // namespace

const char* hzwutilCodecTypeString(std::uint32_t compression) {
  if (compression == kPlainRGB || compression == kBitFields)
    return "RGB";
  Letters letters = inReadingOrder(lettersOf(compression));
  std::ranges::replace_if(letters, cannotBeShown, '?');
  thread_local std::array<char, kLetters + 1> text{};
  std::ranges::copy(letters, text.begin());
  return text.data();
}

const char* hzwutilFileTypeString(std::uint32_t fileType) {
  return fileType < std::size(kFileTypeNames) ? kFileTypeNames[fileType].data() : "FILE";
}
