// SPDX-License-Identifier: BSD-2-Clause
//
// The burn-in pass over one frame.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/constants.h>
#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/media_names.h>
#include <nkdraw/platform/timecode.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/surface/wrapping.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <ratio>

namespace {

constexpr std::uint32_t kTimecodeFlags = 0x30100;  // always set for the formatter
constexpr std::int32_t kTextLine = 30;             // height of the format line and the texts

using TextBuffer = std::array<char, 512>;

const char* scanWord(std::uint32_t scanFlags) {
  switch (scanFlags & NKScanMask) {
    case NKScanInterlaced:
      return "i";
    case NKScanSegmented:
      return "sf";
    default:
      return "p";
  }
}

/// Null if no surface draws in the layout of the frames.
NKDraw* makeSurface(BITMAPINFO& header, char* canvas) {
  NKDraw* made = nullptr;
  return GetDraw(&header, canvas, made) == 0 ? made : nullptr;
}

/// From now on every block starts on an even line.
template <class... Places>
void makeEven(Places&... places) {
  ((places &= ~Places{1}), ...);
}

void setColours(NKDraw& surface, bool filled) {
  surface.SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
  if (filled) {
    surface.SetSDLTextColor(0.9, 0.9, 0.9, 1.0);
    surface.SetColorRGBA(0.0, 0.0, 0.0, 0.0, false);
    surface.SetSDLBkColor(0.0, 0.0, 0.0, 0.0);
  }
  surface.SetTextTransparent(!filled);
}

void drawLine(NKDraw& surface, const char* text, tagRECT& rect) {
  surface.DrawText(text, static_cast<std::int32_t>(std::strlen(text)), &rect, DT_CALCRECT);
}

/// The format line, or a custom text.
void drawLineAt(NKDraw& surface, const char* text, std::int32_t x, std::int32_t y,
                std::int32_t right) {
  tagRECT rect = {x, y, right, nkdraw::wrappingAdd(y, kTextLine)};
  drawLine(surface, text, rect);
}

TextBuffer formatLine(const HZWVIDEO& video, std::uint32_t fileType, std::uint32_t codec) {
  TextBuffer text{};
  const float rate = static_cast<float>(video.frameRate) / static_cast<float>(video.frameScale);
  std::snprintf(text.data(), text.size(), "%.2f %s %s %dx%d %s", static_cast<double>(rate),
                hzwutilFileTypeString(fileType), hzwutilCodecTypeString(codec), video.biWidth,
                video.biHeight, scanWord(video.scanFlags));
  return text;
}

/// Hours, minutes, seconds, and the milliseconds without leading zeros. The two clocks are read
/// one after the other and may disagree by a tick.
void formatWallClock(std::array<char, 24>& text) {
  using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;  // 100 nanoseconds
  const auto ticks =
      std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch());
  const long long milliseconds = ticks.count() / 10'000;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%lld", local.tm_hour, local.tm_min,
                local.tm_sec, milliseconds % 1000);
}

/// The rows of the timecode block, one under the other.
class RowBlock {
 public:
  RowBlock(NKDraw& surface, std::int32_t x, std::int32_t y, std::uint32_t lines)
      : surface_(surface), rect_{x, y, 0, nkdraw::wrappingAdd(y, lines)}, lines_(lines) {}

  void drawTimecode(std::uint32_t count, std::uint32_t type) {
    TcForm(count, type | kTimecodeFlags, text_.data());
    draw(text_.data());
  }
  void drawClock() {
    std::array<char, 24> clock{};
    formatWallClock(clock);
    draw(clock.data());
  }

 private:
  void draw(const char* text) {
    drawLine(surface_, text, rect_);
    rect_.top = nkdraw::wrappingAdd(rect_.top, lines_);
    rect_.bottom = nkdraw::wrappingAdd(rect_.bottom, lines_);
  }

  NKDraw& surface_;
  tagRECT rect_;
  std::uint32_t lines_;
  TextBuffer text_{};  // kept from row to row
};

/// Opened at the first frame; later changes of the settings don't reach the decoder.
nkCaptionBurner* openCaptions(const HZWVIDEO& video, std::uint32_t source, std::uint32_t display) {
  nkCaptionBurner* const captions = ccBurnOpen(&video);
  ccBurnSetCCType(captions, source);
  ccBurnSetCCDisplay(captions, display);
  return captions;
}

}  // namespace

std::uint32_t CNkOverlay::BurnIn(QFRAME* frame, const std::uint32_t* levels,
                                 const std::uint32_t* peaks, std::uint32_t timecodeOffset) {
  const BITMAPINFOHEADER& header = videoHeader.bmiHeader;
  if (header.biSizeImage == 0)
    return 0;
  // A disabled overlay builds its surface all the same.
  if (surface == nullptr)
    surface = makeSurface(videoHeader, frame->frameBuffer);
  if (Enabled == 0 || surface == nullptr)
    return 0;
  surface->SetCanvas(frame->frameBuffer, header.biHeight, header.biWidth, 0);
  if ((video.scanFlags & NKScanInterlaced) != 0) {
    makeEven(TimeCodeY, TimeCodeSize, SourceFormatY, AudioY);
    for (std::int32_t& y : CustomTextY)
      makeEven(y);
  }
  setColours(*surface, FillBackground == 1);

  RowBlock rows(*surface, TimeCodeX, TimeCodeY, 10 * TimeCodeSize);
  if (TimeCodeLTCEnable != 0)
    rows.drawTimecode(frame->ltcCount - timecodeOffset, timeCodeType);
  if (TimeCodeVITCEnable != 0)
    rows.drawTimecode(frame->vitcCount - timecodeOffset, timeCodeType);
  if (TimeCodeVsyncEnable != 0)
    rows.drawClock();
  if (WatermarkEnable != 0)
    ApplyWatermark(frame);
  if (SourceFormatEnable != 0)
    drawLineAt(*surface, formatLine(video, system.fileType, header.biCompression).data(),
               SourceFormatX, SourceFormatY, video.biWidth);
  for (int slot = 0; slot < kCustomTexts; ++slot) {
    if (CustomTextEnabled[slot] != 0 && CustomText[slot] != nullptr)
      drawLineAt(*surface, CustomText[slot], CustomTextX[slot], CustomTextY[slot], video.biWidth);
  }
  if (AudioEnable != 0)
    drawAudMeters(levels, peaks);
  if (CaptionsEnable != 0) {
    if (captionHandle == nullptr)
      captionHandle = openCaptions(video, CaptionSource, CaptionsEnable);
    if (captionHandle != nullptr) {
      ccBurnAddCCData(captionHandle, frame);
      ccBurnIn(captionHandle, frame);
    }
  }
  return 0;
}
