// SPDX-License-Identifier: BSD-2-Clause
#include "overlay_session.h"

#include "failure.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>

#include <algorithm>

namespace nkdraw::tool {
namespace {

constexpr std::uint32_t kInterlacedFrames = 0x100;

/// The columns of the canvas: a pair in 4:2:2 is always whole.
int canvasWidth(const Layout& canvas, int width) {
  return isYCbCr(canvas.type) ? width + width % 2 : width;
}

HZWVIDEO headerOf(const Layout& canvas, const FrameKind& frames) {
  HZWVIDEO header = {};
  header.biSize = sizeof header;
  header.biWidth = frames.width;
  header.biHeight = frames.height;
  header.biPlanes = 1;
  header.biBitCount = canvas.bitCount;
  header.biCompression = canvas.compression;
  header.biSizeImage = static_cast<std::uint32_t>(packedPitch(canvas.type, frames.width) *
                                                  static_cast<std::size_t>(frames.height));
  header.redMask = canvas.redMask;
  header.frameRate = static_cast<std::uint32_t>(frames.rate.num);
  header.frameScale = static_cast<std::uint32_t>(frames.rate.den);
  header.scanFlags = frames.interlaced ? kInterlacedFrames : 0;
  return header;
}

HZWSYSTEM systemOf(const FrameKind& frames) {
  HZWSYSTEM system = {};
  system.size = sizeof system;
  system.fileType = frames.fileType;
  return system;
}

}  // namespace

OverlaySession::OverlaySession(const OverlayPlan& plan, const FrameKind& frames,
                               const TimecodeStart& timecode, const Layout& canvas)
    : timecode_(timecode) {
  const HZWVIDEO header = headerOf(canvas, frames);
  const HZWSYSTEM host = systemOf(frames);
  Create(&header, &host);
  timeCodeType = static_cast<std::uint32_t>(timecode.type);
  place(plan);

  videoHeader.bmiHeader.biWidth = canvasWidth(canvas, frames.width);
  NKDraw* made = nullptr;
  if (GetDraw(&videoHeader, nullptr, made) != 0)
    throw Failure(ExitCode::kProcessing, "no surface draws in this layout",
                  std::string(canvas.name), "see nkdraw burnin --list-layouts");
  surface = made;
  // With the surface made, the code only serves the format line, which names the source.
  videoHeader.bmiHeader.biCompression = frames.sourceCode;
}

void OverlaySession::place(const OverlayPlan& plan) {
  const OverlayRequest& request = plan.request;
  Enabled = 1;
  FillBackground = request.fill ? 1 : 0;
  TimeCodeLTCEnable = request.ltc ? 1 : 0;
  TimeCodeVITCEnable = request.vitc ? 1 : 0;
  TimeCodeVsyncEnable = request.clock ? 1 : 0;
  TimeCodeX = plan.timecodeAt.x;
  TimeCodeY = plan.timecodeAt.y;
  TimeCodeSize = plan.timecodeSize;
  SourceFormatEnable = request.formatLine ? 1 : 0;
  SourceFormatX = plan.formatAt.x;
  SourceFormatY = plan.formatAt.y;
  static_assert(kMostTexts == kCustomTexts);
  for (std::size_t slot = 0; slot < request.texts.size(); ++slot) {
    const PlacedText& placed = request.texts[slot];
    auto* const text = new char[kLongestText + 1]();
    CustomText[slot] = text;
    std::ranges::copy(placed.text, text);
    CustomTextEnabled[slot] = 1;
    CustomTextX[slot] = placed.at.x;
    CustomTextY[slot] = placed.at.y;
  }
}

void OverlaySession::burn(std::uint8_t* canvas, std::int64_t index) {
  QFRAME frame = {};
  frame.ltcCount = static_cast<std::uint32_t>(timecode_.frame + index);
  frame.vitcCount = frame.ltcCount;
  frame.frameBuffer = reinterpret_cast<char*>(canvas);
  BurnIn(&frame, nullptr, nullptr, 0);
}

}  // namespace nkdraw::tool
