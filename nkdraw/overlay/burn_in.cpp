// SPDX-License-Identifier: BSD-2-Clause
//
// The burn-in pass over one frame.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/overlay/texts.h>
#include <nkdraw/surface/factory.h>

#include <cstring>

namespace {

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

  Texts::eachRow(*this, *frame, timecodeOffset, Texts::wallClock,
                 [&](const char* text, tagRECT& rect) { drawLine(*surface, text, rect); });
  if (WatermarkEnable != 0)
    ApplyWatermark(frame);
  Texts::eachLine(
      *this, [&](NKLayer, const char* text, tagRECT& rect) { drawLine(*surface, text, rect); });
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
