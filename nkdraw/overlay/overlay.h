// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// CNkOverlay, which burns a status overlay into running video.
#pragma once

#include <nkdraw/export.h>
#include <nkdraw/overlay/shared_pointer.h>
#include <nkdraw/platform/captions.h>
#include <nkdraw/platform/records.h>

#include <cstdint>
#include <cstdio>

class NKDraw;

/// @cond For the library: how the fields of CNkOverlay are released.
namespace nkdraw {
NKDRAW_API void deleteText(char* text);
NKDRAW_API void releaseSurface(NKDraw* surface);
NKDRAW_API void freeSamples(std::uint32_t* samples);
NKDRAW_API void freeSamples(std::uint8_t* samples);
}  // namespace nkdraw
/// @endcond

/// A part of a frame that a layer of an overlay may touch.
struct NKTouchedRect {
  std::uint32_t layer;  ///< an NKLayer
  tagRECT rect;         ///< in pixels; right and bottom lie outside
};

/// Burns timecode, wall clock, source format, custom texts, meters, watermark and captions into the
/// frames of one stream, in the frame's own layout.
///
/// Call Create once the frames are known, BurnIn for every frame, Destroy at the end. The settings
/// are the protected fields, each with its default. They are set from the configuration store, an
/// INI file, commands of the host, or a derived class. A switch is on when it is not 0. Positions
/// are in pixels from the frame's top left corner. One object is not for several threads at once.
/// All calls return 0 unless they say otherwise. Nothing throws.
///
/// A copy shares the surface, the texts and the watermark with its source: they end with the last
/// of the copies. It shares the caption decoder, too, which never ends.
class NKDRAW_API CNkOverlay {
 public:
  /// Makes an overlay with the default settings, which show nothing.
  CNkOverlay();
  /// Copies every field; see above for what the copy shares.
  CNkOverlay(const CNkOverlay& other) = default;
  /// Copies every field; see above for what the copy shares.
  CNkOverlay& operator=(const CNkOverlay& other) = default;
  /// Releases what no copy shares.
  virtual ~CNkOverlay();

  /// Copies both records, sets how timecode counts from the frame rate, clears the meters, and
  /// reads the watermark if it is enabled. A surface that was built before stays until Destroy.
  /// Neither argument may be null.
  virtual std::uint32_t Create(const HZWVIDEO* frames, const HZWSYSTEM* host);
  /// Releases the surface. The next BurnIn builds a new one.
  virtual std::uint32_t Destroy();
  /// Draws the enabled layers into `frame->frameBuffer`, whose rows are packed as the layout packs
  /// them, in this order from bottom to top: timecode rows, watermark, source format, custom texts
  /// 0 to 9, meters, captions. Texts must lie inside the frame. `levels` and `peaks` are null or
  /// four words each, with the audio's 16-bit magnitudes of two channels a word, the even channel
  /// in the low half. `timecodeOffset`, in frames, is subtracted from both timecodes. On interlaced
  /// video the vertical settings and the timecode's size are made even, and stay so. Does nothing
  /// before Create, or when no surface draws in the frame's layout.
  virtual std::uint32_t BurnIn(QFRAME* frame, const std::uint32_t* levels,
                               const std::uint32_t* peaks, std::uint32_t timecodeOffset);

  /// The rectangles of the frame that BurnIn of this frame may touch, with these settings: its
  /// result outside them is the frame as it was. They lie inside the frame, in drawing order: one
  /// for each timecode row, text and other layer that shows something, at most kMostTouchedRects.
  /// Writes the first `capacity` of them to `rects`, and returns how many there are; none when
  /// BurnIn would draw nothing. Where pixels share chroma, all of a pair counts as touched. A text,
  /// meter panel or watermark that leaves the frame at a side, captions, and text in another font
  /// than the built-in one, may touch the whole frame. In 24-bit RGB, where backgrounds are filled
  /// with four bytes a pixel, what lies at the right may also touch what is behind the frame. Of
  /// the frame only the timecodes are read. A watermark counts once Create has read it.
  std::uint32_t TouchedRects(const QFRAME* frame, std::uint32_t timecodeOffset,
                             NKTouchedRect* rects, std::uint32_t capacity) const;
  /// The number of rectangles that TouchedRects has room for everything in.
  static constexpr std::uint32_t kMostTouchedRects = 17;

  /// Sets (NKCommandSet) or reports (NKCommandReport, NKCommandReportToo) the settings of one
  /// group, an NKGroup; other kinds and groups do nothing. A set takes the fields that `validMask`
  /// names; a report fills fields in and adds their bits to it. Values are not checked. Returns
  /// `value1` as it was on entry, or 0 for null. docs/overlay.md lists the fields of each group.
  virtual std::uint32_t SetMode(STREAMCMD* command);
  /// Does nothing: all overlays of a user share one set of stored settings.
  virtual std::uint32_t SetAppName(const char* name);

  /// Writes the settings to the host's configuration store and makes them durable.
  virtual std::uint32_t SaveConfig();
  /// Reads the settings from the store, and writes the current ones first when it has none. A
  /// number that the store lacks becomes 0. A text is read into the memory that its slot has, if
  /// any (128 bytes). If the store can't be read, nothing is written, the settings stay as they
  /// are, and a message goes to the error log.
  virtual std::uint32_t LoadConfig();
  ///@{
  /// Writes a value under a key: to the INI file while one is being written, otherwise to the
  /// store, cut at 128 characters. Null stands for the empty text.
  virtual std::uint32_t SaveSetting(const char* key, std::uint32_t value);
  virtual std::uint32_t SaveSetting(const char* key, const char* value);
  ///@}
  ///@{
  /// Reads a value from the store; a missing one reads as 0, or as the empty text. A text needs a
  /// buffer of 128 bytes; null is left alone.
  virtual std::uint32_t LoadSetting(const char* key, std::uint32_t& value);
  virtual std::uint32_t LoadSetting(const char* key, char* value);
  ///@}
  /// Writes the settings to the store. Deliberate: the file at `path` gets the one line
  /// "[nkoverlay]".
  virtual std::uint32_t SaveConfigINI(const char* path);
  /// Releases the custom texts and reads the lines below "[nkoverlay]". Deliberate: a number that a
  /// line names becomes 0, and a text becomes all from the '=' to the line's end. Keys match
  /// anywhere in a line. The file must be one that can be read.
  virtual std::uint32_t LoadConfigINI(const char* path);

  /// Sets the path of the watermark, a picture or clip. The text is not copied and must outlive the
  /// object.
  void SetWatermarkPath(const char* path);

 protected:
  /// The number of custom texts.
  static constexpr int kCustomTexts = 10;

  /// @cond For the library's own sources.
  struct NKDRAW_HIDDEN Access;
  struct NKDRAW_HIDDEN Commands;
  struct NKDRAW_HIDDEN Settings;
  struct NKDRAW_HIDDEN Texts;
  /// @endcond

  /// Reads the picture at `watermarkPath` and converts it for frames of `frameLayout`: 0 (32-bit
  /// RGB), "yuv2" (8-bit 4:2:2, Cb first) or "012v" (v210), codes in memory order. For other
  /// layouts the picture is read and not converted. On the two 4:2:2 layouts the lowest bit of
  /// `WatermarkX` is cleared. A file that can't be opened changes nothing. One that can't be read
  /// for lack of memory changes the size, but not the samples.
  std::uint32_t LoadWatermark();
  /// Draws the watermark into the frame by its own alpha: blended, but opaque in v210 wherever it
  /// shows. Past the frame's bottom and right edges it is cut; deliberate: in 8-bit 4:2:2 the right
  /// cut comes half the picture's width too late. With a negative `WatermarkX` its rows begin in
  /// the lines above, except in v210, where they are cut. Nothing outside the frame is written.
  std::uint32_t ApplyWatermark(QFRAME* frame);
  /// Draws the panel of eight meters, 281 by 200 pixels with its top left corner at (AudioX,
  /// AudioY), on the bound surface; the arguments are BurnIn's. Sets AudioChannels to 8.
  std::uint32_t drawAudMeters(const std::uint32_t* levels, const std::uint32_t* peaks);

  std::uint32_t Enabled = 0;                  ///< master switch
  std::uint32_t FillBackground = 1;           ///< exactly 1: an opaque box behind every text
  std::uint32_t AudioEnable = 0;              ///< level meters
  std::int32_t AudioX = 20;                   ///< left edge of the meters
  std::int32_t AudioY = 100;                  ///< upper edge of the meters
  std::uint32_t AudioChannels = 2;            ///< becomes 8 when meters are drawn
  std::uint32_t VChipEnable = 0;              ///< kept, not read
  std::uint32_t CaptionsEnable = 0;           ///< captions: 2 without boxes, else with them
  std::uint32_t CaptionSource = 0;            ///< for ccBurnSetCCType
  std::uint32_t TimeCodeLTCEnable = 0;        ///< row of the longitudinal timecode
  std::uint32_t TimeCodeLUBEnable = 0;        ///< kept, not read
  std::uint32_t TimeCodeVITCEnable = 0;       ///< row of the vertical interval timecode
  std::uint32_t TimeCodeVUBEnable = 0;        ///< kept, not read
  std::uint32_t TimeCodeVsyncEnable = 0;      ///< row of the wall clock
  std::uint32_t TimeCodeLTCFrameEnable = 0;   ///< kept, not read
  std::uint32_t TimeCodeVITCFrameEnable = 0;  ///< kept, not read
  std::uint32_t timeCodeType = 4;             ///< an nkdraw::TimecodeType; set by Create
  std::int32_t TimeCodeX = 20;                ///< left edge of the timecode rows
  std::int32_t TimeCodeY = 300;               ///< upper edge of the timecode rows
  std::uint32_t TimeCodeSize = 2;             ///< magnification; a row is 10 times this many lines
  std::uint32_t WatermarkEnable = 0;          ///< the watermark
  std::int32_t WatermarkX = 400;              ///< left edge of the watermark
  std::int32_t WatermarkY = 400;              ///< upper edge of the watermark
  std::uint32_t WatermarkOpacity = 50;        ///< kept, not read
  const char* watermarkPath = nullptr;        ///< of SetWatermarkPath; not owned
  std::uint32_t SourceFormatEnable = 0;       ///< line with the source format
  std::int32_t SourceFormatX = 20;            ///< left edge of the format line
  std::int32_t SourceFormatY = 600;           ///< upper edge of the format line
  std::uint32_t CustomTextEnabled[kCustomTexts] = {};  ///< by slot
  std::int32_t CustomTextX[kCustomTexts];              ///< left edge; 500 at first
  std::int32_t CustomTextY[kCustomTexts];              ///< upper edge; 30 times the slot at first
  /// Null, or memory of at least 128 bytes from new char[].
  nkdraw::SharedPointer<char, nkdraw::deleteText> CustomText[kCustomTexts];
  nkdraw::SharedPointer<NKDraw, nkdraw::releaseSurface> surface;  ///< null until BurnIn needs it
  BITMAPINFO videoHeader = {};                                    ///< of Create
  nkdraw::SharedPointer<char, nkdraw::deleteText> ownedText;      ///< not used
  const char* iniPath = nullptr;             ///< of the INI file in use; not owned
  std::FILE* iniFile = nullptr;              ///< the INI file in use
  nkCaptionBurner* captionHandle = nullptr;  ///< null until BurnIn needs it
  std::uint32_t watermarkWidth = 0;          ///< pixels
  std::uint32_t watermarkHeight = 0;         ///< rows
  std::uint32_t watermarkLayout = 0;         ///< the `frameLayout` it was read for
  nkdraw::SharedPointer<std::uint32_t, nkdraw::freeSamples>
      watermark10;  ///< Y, Cb, Y, Cr, alpha for each pair, 10 bits
  nkdraw::SharedPointer<std::uint8_t, nkdraw::freeSamples>
      watermark8;  ///< Y, Cb, Y, Cr, alpha for each pair, 8 bits
  nkdraw::SharedPointer<std::uint8_t, nkdraw::freeSamples> watermarkRGBA;  ///< packed 32-bit BGRA
  std::int32_t meterHistory[32][100];  ///< past levels by channel; cleared by Create
  std::uint32_t frameLayout = 0;       ///< the frames' biCompression
  HZWVIDEO video = {};                 ///< of Create
  HZWSYSTEM system = {};               ///< of Create

 private:
  /// Converts the decoded picture, `watermarkWidth` by `watermarkHeight` packed BGRA pixels, which
  /// `picture` lies on; without one only the 32-bit form can be made.
  void convertWatermark(NKDraw* picture, const char* pixels);

  std::uint64_t watermarkRoom = 0;  // pixels of the last picture converted, 0 before one was
};
