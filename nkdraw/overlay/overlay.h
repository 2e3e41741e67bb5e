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
NKDRAW_API void freeSamples(std::uint32_t* samples);
NKDRAW_API void freeSamples(std::uint8_t* samples);
}  // namespace nkdraw

/// Burns timecode, wall clock, source format, custom texts, meters, watermark and captions into
/// the frames of one stream, in the frame's own layout.
///
/// Create once the frames are known, BurnIn for every frame, Destroy at the end. The settings are
/// the protected fields, each with its default; they come from the configuration store, an INI
/// file, commands of the host, or a derived class. Calls on one object are the host's to
/// serialise. Statuses: 0 unless said otherwise. Nothing throws.
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

  /// Sets (kind 15) or reports (14, 16) the settings of one group, `subCommand`; other kinds and
  /// groups are passed over. A set takes the fields that `validMask` names, a report adds its own
  /// bits there. Values are not checked. `value1` as it came, or 0 for null. docs/overlay.md has
  /// the groups.
  virtual std::uint32_t SetMode(STREAMCMD* command);
  /// Keeps nothing: all overlays of a machine share one set of values.
  virtual std::uint32_t SetAppName(const char* name);

  /// Writes the settings to the host's configuration store and makes them durable.
  virtual std::uint32_t SaveConfig();
  /// Reads the settings from the store; writes the current ones first when it has none. A text is
  /// read into the memory that its slot has, if any: 128 bytes. Where the store can't be read,
  /// nothing is written, the settings stay as they are, and the error log tells.
  virtual std::uint32_t LoadConfig();
  /// Write a value under a key: as a line of the INI file while one is being written, else to the
  /// store, cut at 128 characters. Null is the empty text.
  virtual std::uint32_t SaveSetting(const char* key, std::uint32_t value);
  virtual std::uint32_t SaveSetting(const char* key, const char* value);
  /// Read a value from the store; a missing one reads as 0 and as the empty text. A text buffer
  /// holds 128 bytes; null is left alone.
  virtual std::uint32_t LoadSetting(const char* key, std::uint32_t& value);
  virtual std::uint32_t LoadSetting(const char* key, char* value);
  /// Writes the settings to the store, and a file of the one line "[nkoverlay]".
  virtual std::uint32_t SaveConfigINI(const char* path);
  /// Lets the custom texts go and reads the lines below "[nkoverlay]": a number that a line names
  /// becomes 0, a text becomes what follows its name, from the '=' to the line's end. Keys match
  /// anywhere in a line.
  virtual std::uint32_t LoadConfigINI(const char* path);

  /// The picture to use as watermark. The text is not copied and must outlive the object.
  void SetWatermarkPath(const char* path);

 protected:
  static constexpr int kCustomTexts = 10;

  // For the library's own sources.
  struct NKDRAW_HIDDEN Access;
  struct NKDRAW_HIDDEN Commands;
  struct NKDRAW_HIDDEN Settings;

  /// Reads the picture at `watermarkPath` and converts it for frames of `frameLayout`: 0 (32-bit
  /// RGB), "yuv2" (8-bit 4:2:2, Cb first) or "012v" (v210), codes in memory order. Others are read
  /// and not converted. On the two 4:2:2 layouts the lowest bit of `WatermarkX` is cleared. A file
  /// that can't be opened changes nothing; one that can't be read for lack of memory leaves the
  /// samples of the picture before, but takes their size. Returns 0.
  std::uint32_t LoadWatermark();
  /// Puts the picture into the frame by its own alpha: blended, and in v210 opaque wherever it
  /// shows. Right of the frame and below it the picture is cut, in 8-bit 4:2:2 only half its width
  /// too late. With a negative `WatermarkX` its rows begin in the lines above, but in v210, which
  /// cuts it. Nothing is written before the frame's first byte or behind its last. Returns 0.
  std::uint32_t ApplyWatermark(QFRAME* frame);
  /// Draws the panel of eight meters, 281 by 200 pixels with its upper left corner at AudioX,
  /// AudioY, on the bound surface; the arguments are BurnIn's. Sets AudioChannels to 8. Returns 0.
  std::uint32_t drawAudMeters(const std::uint32_t* levels, const std::uint32_t* peaks);

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
  // Copies share the samples, too, which end with their last user.
  nkdraw::SharedPointer<std::uint32_t, nkdraw::freeSamples> watermark10;
  nkdraw::SharedPointer<std::uint8_t, nkdraw::freeSamples> watermark8;
  nkdraw::SharedPointer<std::uint8_t, nkdraw::freeSamples> watermarkRGBA;
  std::int32_t meterHistory[32][100];  // cleared by Create
  std::uint32_t frameLayout = 0;       // FOURCC or compression code of the frames
  HZWVIDEO video = {};
  HZWSYSTEM system = {};

 private:
  /// Converts the decoded picture, `watermarkWidth` by `watermarkHeight` packed BGRA pixels, which
  /// `picture` lies on; without one only the 32-bit form can be made.
  void convertWatermark(NKDraw* picture, const char* pixels);

  std::uint64_t watermarkRoom = 0;  // pixels of the last picture converted, 0 before one was
};
