// SPDX-License-Identifier: BSD-2-Clause
//
// An overlay whose fields a test can reach, and the frames that it burns into.
#pragma once

#include <tests/support/fields.h>
#include <tests/support/frame.h>

#include <nkdraw/nkdraw.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include <malloc.h>

namespace nkdraw::test {

class Overlay : public CNkOverlay {
 public:
  using CNkOverlay::ApplyWatermark;
  using CNkOverlay::AudioChannels;
  using CNkOverlay::AudioEnable;
  using CNkOverlay::AudioX;
  using CNkOverlay::AudioY;
  using CNkOverlay::captionHandle;
  using CNkOverlay::CaptionsEnable;
  using CNkOverlay::CaptionSource;
  using CNkOverlay::CustomText;
  using CNkOverlay::CustomTextEnabled;
  using CNkOverlay::CustomTextX;
  using CNkOverlay::CustomTextY;
  using CNkOverlay::drawAudMeters;
  using CNkOverlay::Enabled;
  using CNkOverlay::FillBackground;
  using CNkOverlay::frameLayout;
  using CNkOverlay::iniFile;
  using CNkOverlay::iniPath;
  using CNkOverlay::LoadWatermark;
  using CNkOverlay::meterHistory;
  using CNkOverlay::ownedText;
  using CNkOverlay::SourceFormatEnable;
  using CNkOverlay::SourceFormatX;
  using CNkOverlay::SourceFormatY;
  using CNkOverlay::surface;
  using CNkOverlay::system;
  using CNkOverlay::TimeCodeLTCEnable;
  using CNkOverlay::TimeCodeLTCFrameEnable;
  using CNkOverlay::TimeCodeLUBEnable;
  using CNkOverlay::TimeCodeSize;
  using CNkOverlay::timeCodeType;
  using CNkOverlay::TimeCodeVITCEnable;
  using CNkOverlay::TimeCodeVITCFrameEnable;
  using CNkOverlay::TimeCodeVsyncEnable;
  using CNkOverlay::TimeCodeVUBEnable;
  using CNkOverlay::TimeCodeX;
  using CNkOverlay::TimeCodeY;
  using CNkOverlay::VChipEnable;
  using CNkOverlay::video;
  using CNkOverlay::videoHeader;
  using CNkOverlay::watermark10;
  using CNkOverlay::watermark8;
  using CNkOverlay::WatermarkEnable;
  using CNkOverlay::watermarkHeight;
  using CNkOverlay::watermarkLayout;
  using CNkOverlay::WatermarkOpacity;
  using CNkOverlay::watermarkPath;
  using CNkOverlay::watermarkRGBA;
  using CNkOverlay::watermarkWidth;
  using CNkOverlay::WatermarkX;
  using CNkOverlay::WatermarkY;

  void setText(int slot, const std::string& text) {
    auto* const owned = new char[128]();
    text.copy(owned, 127);
    CustomText[slot] = owned;
    CustomTextEnabled[slot] = 1;
  }
};

/// A layout of frames, as a header says it.
struct Stream {
  const char* name;
  std::array<char, 4> compression;
  std::uint16_t depth;
  std::uint32_t bytesAPixel;  // an upper bound
};

inline constexpr Stream kStreams[] = {
    {"BGRA", {0, 0, 0, 0}, 32, 4},         {"BGR24", {0, 0, 0, 0}, 24, 4},
    {"v210", {'v', '2', '1', '0'}, 20, 4}, {"UYVY", {'U', 'Y', 'V', 'Y'}, 16, 2},
    {"YUY2", {'Y', 'U', 'Y', '2'}, 16, 2}, {"YVYU", {'Y', 'V', 'Y', 'U'}, 16, 2},
};

[[nodiscard]] inline HZWVIDEO videoOf(const Stream& stream, int width = 960, int height = 680) {
  HZWVIDEO video{};
  video.biSize = sizeof video;
  video.biWidth = width;
  video.biHeight = height;
  video.biPlanes = 1;
  video.biBitCount = stream.depth;
  std::memcpy(&video.biCompression, stream.compression.data(), 4);
  video.biSizeImage =
      static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height) * stream.bytesAPixel;
  video.frameRate = 30000;
  video.frameScale = 1001;
  return video;
}

/// A frame large enough for videoOf of any stream, and its record.
class BurnFrame {
 public:
  explicit BurnFrame(std::uint32_t seed = 1, int width = 960, int height = 680)
      : frame(static_cast<std::size_t>(width + 48) * static_cast<std::size_t>(height) * 4, seed) {
    record.frameBuffer = frame.canvas();
  }
  Frame frame;
  QFRAME record{};
};

/// The store writes texts of up to 128 bytes into the memory that is there.
inline void expectRoomForStoredText(char* text) {
  ASSERT_NE(text, nullptr);
  EXPECT_GE(malloc_usable_size(text), 128U);
}

}  // namespace nkdraw::test
