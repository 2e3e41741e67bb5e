// SPDX-License-Identifier: BSD-2-Clause
//
// The burn-in pass to measure.
#pragma once

#include "frame.h"

namespace bench {

/// Three timecode rows, the format line, two texts of 20 characters; the meters, if wanted.
class Overlay : public CNkOverlay {
 public:
  explicit Overlay(bool fill, bool meters = false) {
    Enabled = 1;
    AudioEnable = meters ? 1 : 0;
    FillBackground = fill ? 1 : 0;
    TimeCodeLTCEnable = TimeCodeVITCEnable = TimeCodeVsyncEnable = 1;
    SourceFormatEnable = 1;
    for (int slot = 0; slot < 2; ++slot) {
      CustomTextEnabled[slot] = 1;
      CustomText[slot] = new char[128]{"TWENTY CHARACTERS 01"};
      CustomTextX[slot] = 100;
      CustomTextY[slot] = 100 + slot * 60;
    }
  }
};

/// The host's record of a stream in a layout.
inline HZWVIDEO videoOf(const Layout& layout) {
  HZWVIDEO video = {};
  video.biSize = sizeof video;
  video.biWidth = kWidth;
  video.biHeight = kHeight;
  video.biBitCount = 32;
  video.biCompression = layout.compression;
  video.biSizeImage = layout.frameBytes;
  video.frameRate = 25;
  video.frameScale = 1;
  return video;
}

/// Eight channels at various levels.
inline constexpr std::uint32_t kLevels[4] = {0xFFFF0400, 0x80004000, 0x20001000, 0xC0000800};

inline constexpr HZWSYSTEM kSystem = {sizeof kSystem, hzwFileMOV, {}};

}  // namespace bench
