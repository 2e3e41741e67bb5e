// SPDX-License-Identifier: BSD-2-Clause
//
// CNkOverlay, which burns a status overlay into running video.
#pragma once

#include <nkdraw/export.h>
#include <nkdraw/overlay/shared_pointer.h>
#include <nkdraw/platform/captions.h>
#include <nkdraw/platform/records.h>

#include <cstdint>
#include <cstdio>

class NKDraw;

namespace nkdraw {
NKDRAW_API void deleteText(char* text);
NKDRAW_API void releaseSurface(NKDraw* surface);
}  // namespace nkdraw

/// Burns timecode, wall clock, source format, custom texts, meters, watermark and captions into
/// the frames of one stream, in the frame's own layout.
///
/// Create once the frames are known, BurnIn for every frame, Destroy at the end. The settings are
/// the protected fields, each with its default; a derived class sets them. Calls on one object are
/// the host's to serialise. Statuses: 0 unless said otherwise; the operations marked as not served
/// return 0xFFFFFFFF and do nothing. Nothing throws.
///
/// A copy shares surface and texts with its source, and they go with the last of them; it shares
/// the caption decoder, too, which stays with the host.
class NKDRAW_API CNkOverlay {
 public:
  CNkOverlay();
  CNkOverlay(const CNkOverlay& other) = default;
  CNkOverlay& operator=(const CNkOverlay& other) = default;
  virtual ~CNkOverlay();

  /// Takes the frame layout (copied) and works out how timecode counts at its frame rate. A surface
  /// that was already built stays until Destroy.
  virtual std::uint32_t Create(const HZWVIDEO* frames, const HZWSYSTEM* host);
  /// Lets the surface go. The next BurnIn builds a new one.
  virtual std::uint32_t Destroy();
  /// Draws all that is enabled into `frame->frameBuffer`, rows packed as the layout packs them:
  /// timecode rows, watermark, source format, custom texts 0 to 9, meters, captions, in this order
  /// from bottom to top. `levels` and `peaks` are the audio's 16-bit magnitudes, two channels a
  /// word, or null; `timecodeOffset` is taken off both timecodes. Texts must lie inside the frame.
  /// On interlaced video the vertical settings are made even, for good. Returns 0, also when there
  /// was nothing to draw on.
  virtual std::uint32_t BurnIn(QFRAME* frame, const std::uint32_t* levels,
                               const std::uint32_t* peaks, std::uint32_t timecodeOffset);

  virtual std::uint32_t SetMode(STREAMCMD* command);                         ///< not served
  virtual std::uint32_t SetAppName(const char* name);                        ///< empty, returns 0
  virtual std::uint32_t SaveConfig();                                        ///< not served
  virtual std::uint32_t LoadConfig();                                        ///< not served
  virtual std::uint32_t SaveSetting(const char* key, std::uint32_t value);   ///< not served
  virtual std::uint32_t SaveSetting(const char* key, const char* value);     ///< not served
  virtual std::uint32_t LoadSetting(const char* key, std::uint32_t& value);  ///< not served
  virtual std::uint32_t LoadSetting(const char* key, char* value);           ///< not served
  virtual std::uint32_t SaveConfigINI(const char* path);                     ///< not served
  virtual std::uint32_t LoadConfigINI(const char* path);                     ///< not served

  /// The picture to use as watermark. The text is not copied and must outlive the object.
  void SetWatermarkPath(const char* path);

 protected:
  static constexpr int kCustomTexts = 10;

  std::uint32_t LoadWatermark();                ///< not served
  std::uint32_t ApplyWatermark(QFRAME* frame);  ///< not served
  std::uint32_t drawAudMeters(const std::uint32_t* levels,
                              const std::uint32_t* peaks);  ///< not served

  std::uint32_t Enabled = 0;         // master switch
  std::uint32_t FillBackground = 1;  // exactly 1: an opaque box behind the text
  std::uint32_t AudioEnable = 0;
  std::int32_t AudioX = 20;
  std::int32_t AudioY = 100;
  std::uint32_t AudioChannels = 2;
  std::uint32_t VChipEnable = 0;  // kept, not read
  std::uint32_t CaptionsEnable = 0;
  std::uint32_t CaptionSource = 0;
  std::uint32_t TimeCodeLTCEnable = 0;
  std::uint32_t TimeCodeLUBEnable = 0;  // kept, not read
  std::uint32_t TimeCodeVITCEnable = 0;
  std::uint32_t TimeCodeVUBEnable = 0;        // kept, not read
  std::uint32_t TimeCodeVsyncEnable = 0;      // the wall clock
  std::uint32_t TimeCodeLTCFrameEnable = 0;   // kept, not read
  std::uint32_t TimeCodeVITCFrameEnable = 0;  // kept, not read
  std::uint32_t timeCodeType = 4;
  std::int32_t TimeCodeX = 20;
  std::int32_t TimeCodeY = 300;
  std::uint32_t TimeCodeSize = 2;  // magnification; a row is 10 times this many lines
  std::uint32_t WatermarkEnable = 0;
  std::int32_t WatermarkX = 400;
  std::int32_t WatermarkY = 400;
  std::uint32_t WatermarkOpacity = 50;  // kept, not read
  const char* watermarkPath = nullptr;  // not owned
  std::uint32_t SourceFormatEnable = 0;
  std::int32_t SourceFormatX = 20;
  std::int32_t SourceFormatY = 600;
  std::uint32_t CustomTextEnabled[kCustomTexts] = {};
  std::int32_t CustomTextX[kCustomTexts];
  std::int32_t CustomTextY[kCustomTexts];
  // Memory from new[]; at least 128 bytes each.
  nkdraw::SharedPointer<char, nkdraw::deleteText> CustomText[kCustomTexts];
  nkdraw::SharedPointer<NKDraw, nkdraw::releaseSurface> surface;
  BITMAPINFO videoHeader = {};
  nkdraw::SharedPointer<char, nkdraw::deleteText> ownedText;  // nothing stores into it
  const char* iniPath = nullptr;
  std::FILE* iniFile = nullptr;
  nkCaptionBurner* captionHandle = nullptr;
  std::uint32_t watermarkWidth = 0;  // pixels
  std::uint32_t watermarkHeight = 0;
  std::uint32_t watermarkLayout = 0;
  std::uint32_t* watermark10 = nullptr;
  std::uint8_t* watermark8 = nullptr;
  std::uint8_t* watermarkRGBA = nullptr;
  std::int32_t meterHistory[32][100];  // cleared by Create
  std::uint32_t frameLayout = 0;       // FOURCC or compression code of the frames
  HZWVIDEO video = {};
  HZWSYSTEM system = {};
};
