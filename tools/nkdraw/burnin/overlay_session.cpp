// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/overlay_session.h"

#include "cli/library_log.h"
#include "media/failure.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/text/label_glyphs.h>

#include <algorithm>
#include <iterator>

namespace nkdraw::tool {
namespace {

/// The columns of the canvas: in 4:2:2 a whole number of pairs.
int canvasWidth(const Layout& canvas, int width) {
  return isYCbCr(canvas.type) ? width + width % 2 : width;
}

struct BlendedCode {
  pixelType canvas;
  std::uint32_t code;
};
/// The FOURCCs with which the overlay blends watermarks.
constexpr BlendedCode kBlendedCodes[] = {
    {ptBGRA32, 0},
    {ptUYVY, MKTAG('y', 'u', 'v', '2')},
    {ptV210, MKTAG('0', '1', '2', 'v')},
};

std::uint32_t codeOf(const Layout& canvas, bool watermark) {
  const auto* const blended = std::ranges::find(kBlendedCodes, canvas.type, &BlendedCode::canvas);
  return watermark && blended != std::end(kBlendedCodes) ? blended->code : canvas.compression;
}

HZWVIDEO headerOf(const Layout& canvas, const FrameKind& frames, bool watermark) {
  HZWVIDEO header = {};
  header.biSize = sizeof header;
  header.biWidth = frames.width;
  header.biHeight = frames.height;
  header.biPlanes = 1;
  header.biBitCount = canvas.bitCount;
  header.biCompression = codeOf(canvas, watermark);
  header.biSizeImage = static_cast<std::uint32_t>(packedPitch(canvas.type, frames.width) *
                                                  static_cast<std::size_t>(frames.height));
  header.redMask = canvas.redMask;
  header.frameRate = static_cast<std::uint32_t>(frames.rate.num);
  header.frameScale = static_cast<std::uint32_t>(frames.rate.den);
  header.scanFlags = frames.interlaced ? static_cast<std::uint32_t>(NKScanInterlaced) : 0;
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
    : plan_(plan), width_(frames.width), height_(frames.height), timecode_(timecode) {
  place(plan);
  const HZWVIDEO header = headerOf(canvas, frames, plan.request.watermark.has_value());
  const HZWSYSTEM host = systemOf(frames);
  Create(&header, &host);
  timeCodeType = static_cast<std::uint32_t>(timecode.type);

  videoHeader.bmiHeader.biWidth = canvasWidth(canvas, frames.width);
  NKDraw* made = nullptr;
  if (GetDraw(&videoHeader, nullptr, made) != 0)
    throw Failure(ExitCode::kProcessing, "no surface draws in this layout",
                  std::string(canvas.name), "see nkdraw burnin --list-layouts");
  surface = made;
  // After the surface is made, the code is used only by the format line, which names the source.
  videoHeader.bmiHeader.biCompression = frames.sourceCode;
  if (plan.request.captions)
    openCaptions(header, *plan.request.captions);
}

OverlaySession::~OverlaySession() {
  ccBurnClose(captionHandle);
}

/// The overlay would open them with the first frame, and continue without them on failure.
void OverlaySession::openCaptions(const HZWVIDEO& header, const CaptionRequest& request) {
  const LibraryLog quiet;
  captionHandle = ccBurnOpen(&header);
  if (captionHandle == nullptr)
    throw Failure(ExitCode::kProcessing, "captions can't be shown", "libnkcc.so",
                  "install this module of nkdraw beside its libraries");
  ccBurnSetCCType(captionHandle, request.source);
  ccBurnSetCCDisplay(captionHandle, CaptionsEnable);
}

void OverlaySession::place(const OverlayPlan& plan) {
  const OverlayRequest& request = plan.request;
  Enabled = 1;
  FillBackground = request.fill ? 1 : 0;
  TimeCodeLTCEnable = draws("LTC row") ? 1 : 0;
  TimeCodeVITCEnable = draws("VITC row") ? 1 : 0;
  TimeCodeVsyncEnable = draws("clock row") ? 1 : 0;
  TimeCodeX = plan.timecodeAt.x;
  TimeCodeY = plan.timecodeAt.y;
  TimeCodeSize = plan.timecodeSize;
  SourceFormatEnable = draws("format line") ? 1 : 0;
  SourceFormatX = plan.formatAt.x;
  SourceFormatY = plan.formatAt.y;
  placeTexts();
  placeLayers(request);
}

/// Whether the overlay draws this box.
bool OverlaySession::draws(const std::string& what) const {
  const auto found = std::ranges::find(plan_.boxes, what, &TextBox::what);
  return found != plan_.boxes.end() && found->content == TextContent::kOverlay;
}

void OverlaySession::placeTexts() {
  static_assert(kMostTexts == kCustomTexts);
  const std::vector<PlacedText>& texts = plan_.request.texts;
  if (!draws("text 1"))
    return;
  for (std::size_t slot = 0; slot < texts.size(); ++slot) {
    const PlacedText& placed = texts[slot];
    auto* const text = new char[kLongestText + 1]();
    CustomText[slot] = text;
    std::ranges::copy(placed.text, text);
    CustomTextEnabled[slot] = 1;
    CustomTextX[slot] = placed.at.x;
    CustomTextY[slot] = placed.at.y;
  }
}

void OverlaySession::placeLayers(const OverlayRequest& request) {
  if (request.watermark) {
    SetWatermarkPath(plan_.request.watermark->path.c_str());
    WatermarkEnable = 1;
    WatermarkX = request.watermark->at.x;
    WatermarkY = request.watermark->at.y;
  }
  if (request.meters) {
    AudioEnable = 1;
    AudioX = request.meters->x;
    AudioY = request.meters->y;
  }
  constexpr std::uint32_t kWithBoxes = 1, kCharactersAlone = 2;
  if (request.captions)
    CaptionsEnable = request.captions->boxes ? kWithBoxes : kCharactersAlone;
}

QFRAME OverlaySession::recordOf(std::int64_t index) const {
  QFRAME frame = {};
  frame.ltcCount = static_cast<std::uint32_t>(timecode_.frame + index);
  frame.vitcCount = frame.ltcCount;
  return frame;
}

/// Calls `take(text, place)` for the texts that the overlay does not draw.
template <class Take>
void OverlaySession::eachOwnText(std::int64_t index, bool damaged, Take take) const {
  constexpr int kCellHeight = static_cast<int>(kGlyphHeight);
  for (const TextBox& box : plan_.boxes) {
    const bool isMark = box.content == TextContent::kDamage;
    if (box.content == TextContent::kOverlay || (isMark && !damaged))
      continue;
    const std::string text = box.content == TextContent::kFixed || isMark
                                 ? box.text
                                 : rowText(box.content, timecode_, plan_, index);
    take(text, tagRECT{box.at.x, box.at.y, width_,
                       box.at.y + kCellHeight * static_cast<int>(box.magnification)});
  }
}

void OverlaySession::burn(std::uint8_t* canvas, std::int64_t index, const FrameExtras& extras) {
  QFRAME frame = recordOf(index);
  frame.frameBuffer = reinterpret_cast<char*>(canvas);
  frame.captionData = extras.captions.data();
  frame.captionBytes = static_cast<std::uint32_t>(extras.captions.size());
  BurnIn(&frame, extras.levels, extras.peaks, 0);
  // In the overlay's look: the surface still has its canvas and the colours of its texts.
  eachOwnText(index, extras.damaged, [&](const std::string& text, tagRECT place) {
    surface->DrawText(text.c_str(), static_cast<std::int32_t>(text.size()), &place, DT_CALCRECT);
  });
}

std::span<const tagRECT> OverlaySession::touched(std::int64_t index, bool damaged) {
  const QFRAME frame = recordOf(index);
  NKTouchedRect rects[kMostTouchedRects];
  const std::uint32_t count = TouchedRects(&frame, 0, rects, kMostTouchedRects);
  touched_.clear();
  for (const NKTouchedRect& each : std::span(rects, count))
    touched_.push_back(each.rect);
  eachOwnText(index, damaged, [&](const std::string& text, const tagRECT& place) {
    const auto length = static_cast<int>(text.size());
    const int cellWidth =
        (place.bottom - place.top) / static_cast<int>(kGlyphHeight) * static_cast<int>(kGlyphWidth);
    // Cells are one line higher than their box.
    touched_.push_back({place.left, place.top, std::min(width_, place.left + cellWidth * length),
                        std::min(height_, place.bottom + 1)});
  });
  return touched_;
}

void OverlaySession::pass(Captions captions) {
  QFRAME frame = {};
  frame.captionData = captions.data();
  frame.captionBytes = static_cast<std::uint32_t>(captions.size());
  ccBurnAddCCData(captionHandle, &frame);
}

}  // namespace nkdraw::tool
