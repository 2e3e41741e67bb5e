// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// NKDraw, the drawing operations of every surface.
#pragma once

#include <nkdraw/surface/factory.h>
#include <nkdraw/surface/pixel.h>

#include <cstdint>
#include <memory>

struct nkRegion;
struct tagDRAWTEXTPARAMS;

namespace nkdraw {
struct MetafileHeader;
struct OpenFile;
struct PlaceableHeader;
}  // namespace nkdraw

// Format flags of NKDraw::DrawText. They may be combined; other bits are ignored.

inline constexpr std::uint32_t DT_CENTER = 0x1;           ///< centre the text; wins over DT_RIGHT
inline constexpr std::uint32_t DT_RIGHT = 0x2;            ///< align to the right edge
inline constexpr std::uint32_t DT_BOTTOM = 0x8;           ///< keep the bottom edge
inline constexpr std::uint32_t DT_CALCRECT = 0x400;       ///< give back the text's box, too
inline constexpr std::uint32_t DT_HIDEPREFIX = 0x100000;  ///< not read

/// Draws on any surface through the virtual PutPixel: lines one pixel wide, curves and rectangles
/// in the foreground colour, and text. It keeps a pen position and the state of the text.
///
/// Coordinates are signed pixels from the first pixel of the canvas, x to the right, y down. No
/// operation clips: the surface's PutPixel may refuse a pixel that lies outside, and what it does
/// not refuse is the caller's to avoid. Operations call each other virtually, so a class that
/// overrides one changes all that use it. Only LineHoriz, EraseCanvas and a FillRect of the whole
/// canvas bypass PutPixel, and only on the 32-bit RGB layouts, where they fill memory. A status is
/// 0, or 0xFFFFFFFF for a refused call; unless said otherwise, it does not depend on what PutPixel
/// returned. Operations marked "does nothing" return 0 and ignore their arguments.
class NKDRAW_API NKDraw : public virtual NKPixel {
 public:
  /// Of Filter, which does nothing.
  enum nkFilterType : std::int32_t {
    nkFilterNone = 0  ///< the only value
  };
  /// Of Scale, which does nothing.
  enum nkScaleType : std::int32_t {
    nkScaleNone = 0  ///< the only value
  };

  /// Makes a surface without a canvas. `type` is not read: the layout stays NKPixel's.
  explicit NKDraw(pixelType type);
  /// Copies every field. The copy shares the canvas and an open metafile.
  NKDraw(const NKDraw& other) = default;
  /// Fills the area that both canvases have in `other` with `other`'s foreground colour; then
  /// copies colours and transparency from `other`. Deliberate: the data flows from left to right,
  /// and each pixel read from this canvas becomes this object's foreground colour, not `other`'s.
  /// Returns `other`.
  NKDraw& operator=(NKDraw& other);
  /// Closes the files that no copy still has open.
  ~NKDraw() override;

  virtual std::uint32_t SetBrush(unsigned char* bits, int width, int height);  ///< Does nothing.

  /// Moves the pen to (x, y) and plots there in the selected colour. Returns what PutPixel returns.
  virtual std::uint32_t Point(int x, int y, bool foreground);
  /// Moves the pen. Its old position goes to `previous`, unless that is null. Returns 0.
  virtual std::uint32_t MoveTo(int x, int y, tagPOINT* previous);
  /// Moves the pen. Returns 0.
  virtual std::uint32_t MoveTo(int x, int y);
  /// Draws a Line from the pen to (x, y), and leaves the pen there.
  virtual std::uint32_t LineTo(int x, int y);
  /// Draws a line, both ends included. The pixels are the same whichever end comes first. The pen
  /// stays. Where a derived class sets `antialias`, lines that are neither horizontal, vertical nor
  /// exactly diagonal are mixed with the canvas and leave the foreground colour nearly black.
  virtual std::uint32_t Line(int x1, int y1, int x2, int y2);
  /// Draws the same line between two points.
  virtual std::uint32_t Line(tagPOINT& from, tagPOINT& to);
  /// Draws a LineWu from the pen to (x, y), and leaves the pen there.
  virtual std::uint32_t LineWuTo(int x, int y);
  /// Draws Xiaolin Wu's antialiased line: two pixels at each step, with their weights as the alpha
  /// of the foreground colour. The weights show in additive mode, on layouts that plot through
  /// NKPixel; everywhere else both pixels are plotted alike. YCbCr surfaces and mosaics, whose
  /// colour GetColorRGBA does not read, draw it in white. The last weight stays as the colour's
  /// alpha. Returns 0.
  virtual std::uint32_t LineWu(int x1, int y1, int x2, int y2);
  /// Draws a column, both ends included; nothing when y1 is greater than y2.
  virtual std::uint32_t LineVert(int x, int y1, int y2);
  /// Draws a row. On the 32-bit RGB layouts it is filled without blending, x2 is excluded, and x1
  /// must not be greater than x2. On all others x2 is included, and nothing is drawn when x1 is
  /// greater than x2.
  virtual std::uint32_t LineHoriz(int x1, int y, int x2);
  /// Draws a dashed line from (x1, y1): `on` pixels plotted, `off` pixels skipped, in turn.
  virtual std::uint32_t Dash(int x1, int y1, int x2, int y2, int on, int off);

  /// @name Curves
  /// Curves are chains of lines. Angles are whole degrees (fractions are cut off),
  /// counter-clockwise on the screen, with 0 to the right; an end below the start goes on past 360.
  /// A degree is taken as 3.14 / 180 radians, so arcs end a little short of the axes.
  ///@{

  /// Draws a circle: AngleArc from 0 to 360 degrees. The pen stays.
  virtual std::uint32_t Circle(int x, int y, int radius);
  /// Draws an ellipse: AngleArcTo from 0 to 360 degrees. The arguments are its centre and radii,
  /// not a box. The pen ends at its rightmost point.
  virtual std::uint32_t Ellipse(int x, int y, int radiusX, int radiusY);
  /// Draws an arc of the ellipse in the box from (x1, y1) to (x2, y2): from the direction of (x3,
  /// y3), seen from the centre, to that of (x4, y4). The pen stays. Refuses an empty or inverted
  /// box, and a direction point that is the centre.
  virtual std::uint32_t Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Draws an Arc and leaves the pen at (x4, y4). Deliberate: the start is the direction of (y3,
  /// x3), its coordinates exchanged. Returns 0, even when the arc was refused.
  virtual std::uint32_t ArcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Draws an arc around (x, y) from angle `start` to angle `end`, in degrees. The pen stays.
  virtual std::uint32_t AngleArc(int x, int y, std::uint32_t radius, float start, float end);
  /// Draws an elliptical arc around (x, y), angles in degrees, and leaves the pen at its last
  /// point.
  virtual std::uint32_t AngleArcTo(int x, int y, int radiusX, int radiusY, float start, float end);
  /// Draws a cubic Bezier curve from (x1, y1) to (x4, y4), halved until both control points lie
  /// less than a pixel from the chord. Refuses ends that coincide. The pen ends at the start of the
  /// last line drawn. Coordinates must lie within 2^29 of 0: beyond that sums wrap, and the halves
  /// need not meet.
  virtual std::uint32_t Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Draws Bezier curves, each starting at the end of the one before: 7, 10, 13 ... points. Refuses
  /// any other count, 4 included.
  virtual std::uint32_t PolyBezier(const tagPOINT* points, std::uint32_t count);
  /// Draws a PolyBezier and leaves the pen at points[count + 2]: the array must hold three points
  /// more than `count`.
  virtual std::uint32_t PolyBezierTo(const tagPOINT* points, std::uint32_t count);
  ///@}

  /// Draws lines from point to point. Refuses fewer than two points.
  virtual std::uint32_t Polyline(const tagPOINT* points, std::uint32_t count);
  /// Draws a Polyline and leaves the pen at points[count]: the array must hold one point more than
  /// `count`.
  virtual std::uint32_t PolylineTo(const tagPOINT* points, std::uint32_t count);
  /// Fills a rectangle, row by row with LineHoriz. The bottom edge is excluded; the right edge is
  /// excluded on the 32-bit RGB layouts and included on all others. On the 32-bit RGB layouts left
  /// must not be greater than right, and a rectangle of the canvas's size fills the whole canvas,
  /// wherever it lies, as NKDraw::EraseCanvas does (an override of EraseCanvas is not called).
  /// `rect` must not be null. Returns 0.
  virtual std::uint32_t FillRect(const tagRECT* rect);
  /// Draws the outline of a rectangle: four lines, all edges included, the corners plotted twice.
  virtual std::uint32_t Rectangle(int x1, int y1, int x2, int y2);
  /// Draws the outline of a rectangle whose corners are quarters of an ellipse `width` by `height`
  /// pixels. Refuses an ellipse larger than the rectangle. The pen ends at the last point of the
  /// last corner.
  virtual std::uint32_t RoundRect(int x1, int y1, int x2, int y2, int width, int height);
  /// Draws the outline of a slice: the arc of ArcTo, and a line from each of its ends to the middle
  /// of the box. The pen stays. The ends are kept once for the process: when the arc is refused,
  /// the lines go to the ends of the last arc that was drawn, and pies drawn by several threads at
  /// once get each other's.
  virtual std::uint32_t Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Fills the canvas with the foreground colour. The 32-bit RGB layouts fill width times height
  /// pixels from the first byte on, without blending and whatever the pitch. All others draw each
  /// row with LineHoriz, which plots one pixel past its right end, even for a width of 0: the
  /// canvas must have room for it. In a class that keeps signs nothing is drawn if just one of
  /// width and height is negative. `flag` is not read. Returns 0.
  virtual std::uint32_t EraseCanvas(bool flag);
  virtual std::uint32_t Fill(int x, int y, double value);                  ///< Does nothing.
  virtual std::uint32_t GradientRect(int, int, int, int, int);             ///< Does nothing.
  virtual std::uint32_t SymGradientRect(int, int, int, int, int);          ///< Does nothing.
  virtual std::uint32_t CornerGradientRect(int, int, int, int, int);       ///< Does nothing.
  virtual std::uint32_t CenterGradientRect(int, int, int, int);            ///< Does nothing.
  virtual std::uint32_t RadialGradientFill(int, int, int, int, int, int);  ///< Does nothing.
  virtual std::uint32_t PatternFill(int, int, int, int, int, int,
                                    unsigned char* pattern);            ///< Does nothing.
  virtual std::uint32_t RoundRectButton(int, int, int, int, int, int);  ///< Does nothing.
  virtual std::uint32_t CopyRect(tagRECT* target, const tagRECT* source,
                                 NKDraw* from);  ///< Does nothing.

  /// Does nothing: there are no fonts by name. Returns 0.
  virtual std::uint32_t LabelFont(const char* name, std::uint32_t size);
  /// Selects the built-in font, magnified by the whole number `scale`. `size` is not read.
  virtual std::uint32_t LabelFont(std::uint32_t size, int scale);
  /// Pixels from one character of a label to the next.
  virtual std::uint32_t LabelGetFontWidth();
  /// Rows of a character of a label.
  virtual std::uint32_t LabelGetFontHeight();
  /// Draws one line of text with its top left corner at (x, y). `invert` swaps the two colours;
  /// `fill` paints the pixels between the strokes, too. Codes 0 to 127 have glyphs; there are no
  /// control codes, and all others draw nothing. The pen ends at the last single point plotted, if
  /// any. Returns 0.
  virtual std::uint32_t Label(int x, int y, const char* text, bool invert, bool fill);

  virtual std::uint32_t Filter(nkFilterType type, int, int, int, int);  ///< Does nothing.
  virtual std::uint32_t Scale(nkScaleType type, NKDraw* source, tagRECT* sourceRect, NKDraw* target,
                              tagRECT* targetRect);  ///< Does nothing.

  /// Opens a 16-bit metafile and reads its head, with or without a 22-byte placeable header in
  /// front of it. What a short file lacks reads as zero. Returns 0, or 0xFFFFFFFF when the file
  /// can't be opened, is a folder, or its placeable header has a wrong checksum.
  virtual std::uint32_t EMFOpen(const char* path);
  /// Reads the right and bottom fields of the placeable header; 0 and 0 before one was read.
  /// Returns 0.
  virtual std::uint32_t EMFGetSize(int& width, int& height);
  virtual std::uint32_t EMFDraw(int, int, int, int, bool);  ///< Does nothing.
  /// Releases the metafile, which is closed when no copy of this object has it open any more. The
  /// placeable header stays for EMFGetSize. Does nothing without an open file. Returns 0.
  virtual std::uint32_t EMFClose();
  virtual std::uint32_t Arrow(int, int, int, int, bool);  ///< Does nothing.

  /// Draws one line of text, up to its zero, into a rectangle with the built-in 8 by 10 glyphs.
  ///
  /// - Size: the height of `rect` over 10, limited to 1 to 20, is the magnification; it is 1 when
  ///   the bottom is 0 or the top negative.
  /// - Vertical place: the text stands on the bottom edge. With DT_CENTER, DT_RIGHT or DT_BOTTOM
  ///   that is the edge given; without them it is derived from the top.
  /// - Horizontal place: at the left edge. DT_CENTER centres the whole text, taking each character
  ///   as 10 magnified pixels wide, but moves no text that is too wide by that measure. DT_RIGHT,
  ///   which counts only without DT_CENTER, aligns `count` characters to the right edge.
  /// - `rect` takes the edges so found. With DT_CALCRECT it becomes the box of `count` characters,
  ///   and the text is drawn all the same.
  /// - Colours: the strokes are in the foreground colour. The rest of each cell, and one line above
  ///   it, are in the background colour after SetTextTransparent(false); at first they are left
  ///   alone.
  ///
  /// Switches off `antialias`. `text` and `rect` must not be null. Returns 0.
  ///
  /// A program may choose one of two other kinds of fonts for the whole process with
  /// nkdraw::FontData::fontKind. The top left corner of the text is then that of the rectangle:
  /// - "bmp" uses a font sheet, read from a fixed path at each call; when that fails, the sheet
  ///   read last. Glyphs are drawn in the sheet's own colours, except that the key colour becomes
  ///   the background colour. `count` and `format` are not read. The sheet must have a glyph for
  ///   each code: for one that it lacks, memory past the sheet's top line is drawn, of any width.
  /// - "ttf" draws `count` characters of code page 1252 in a font of the platform: the outlines
  ///   with Line and Bezier and, if a channel of the foreground colour is at its maximum, the
  ///   inside with PutPixel. It leaves the foreground colour nearly black. DT_CALCRECT sets the
  ///   right edge to the left edge plus the text's height. Without a font nothing is drawn.
  std::int32_t DrawText(const char* text, std::int32_t count, tagRECT* rect, std::uint32_t format);
  /// Calls DrawText.
  std::int32_t NKDrawText(const char* text, std::int32_t count, tagRECT* rect,
                          std::uint32_t format);
  std::int32_t DrawTextExA(const char* text, std::int32_t count, tagRECT* rect,
                           std::uint32_t format, tagDRAWTEXTPARAMS* params);  ///< Does nothing.
  std::int32_t TextOutA(int x, int y, const char* text, int count);           ///< Does nothing.

  ///@{
  /// Sets one of a second pair of colours, which is kept for callers: no operation draws with it.
  /// Channels are 0.0 to 1.0 and not clamped. Returns 0.
  std::uint32_t SetSDLTextColor(double red, double green, double blue, double alpha);
  std::uint32_t SetSDLBkColor(double red, double green, double blue, double alpha);
  ///@}
  /// Saves a copy of that second pair of colours over the copy saved before. Returns 0.
  std::uint32_t RememberSDLColors();
  /// Brings the saved pair back. Returns 0.
  std::uint32_t ResetSDLColors();
  /// Whether DrawText leaves the pixels between the strokes alone. True at first.
  void SetTextTransparent(bool transparent);

  /// Notes whether a default font is wanted; nothing is loaded. `wanted` true notes that it is and
  /// returns 1. False looks for the font sheet of the canvas's width, beside the program and in two
  /// more folders: if it is there, notes that no default font is wanted and returns 0; otherwise
  /// notes that one is and returns 1.
  std::uint32_t UseDefaultFont(bool wanted);
  std::uint32_t SetFont(const char* name);  ///< Does nothing.
  std::uint32_t HaveFont();                 ///< Does nothing.
  /// Reads a font sheet into the process-wide nkdraw::fontData. `path` names an uncompressed 24-bit
  /// BMP file that the process may write to, with its pixels beginning in the first 256 bytes.
  /// Where the file is short, header fields become zero and pixels stay as they were; where it is
  /// long, pixels run on into the fields behind them, up to the block's end. Returns 0, or -1 when
  /// the file can't be opened or read, or is refused for its header; a refused file stays open
  /// until the next refusal, or this object's end.
  std::int32_t ExtractBMPData(const char* path);
  /// Checks the chunks of a PNG file (ISO/IEC 15948) and keeps nothing. Returns 0, or -1 when it is
  /// not PNG or ends before its last chunk. A file without the signature or the header chunk stays
  /// open as in ExtractBMPData.
  std::int32_t ExtractPNGData(const char* path);
  /// Draws the part of a line, both ends included, that lies in `region`, whose origin is placed at
  /// the top left corner of `rect`. A null region draws nothing. `rect` must not be null.
  ///
  /// Deliberate: each pixel gets 1/255 of a colour read from the canvas in the pixel's column, on
  /// the row of the lower end (on a steep line, in the column of the upper end), and the foreground
  /// colour is divided by 255. The canvas must hold the pixels that are read. With `antialias` both
  /// ends are plotted whatever the region, and the pixels between them in pairs, mixed from canvas
  /// and foreground.
  void LineA(const nkRegion* region, const tagRECT* rect, int x1, int y1, int x2, int y2);

 protected:
  friend std::uint32_t(::UseDefaultFont)(NKDraw*& surface, bool wanted);

  std::int32_t metaFile = 0;                                 ///< descriptor; 0 none, -1 failed
  std::shared_ptr<nkdraw::OpenFile> metaFileOwner;           ///< closes it with its last user
  std::int64_t spareA = 0;                                   ///< not read
  std::shared_ptr<nkdraw::MetafileHeader> metaHeader;        ///< of EMFOpen
  std::shared_ptr<nkdraw::PlaceableHeader> placeableHeader;  ///< of EMFOpen, for EMFGetSize
  std::int32_t penX = 0;                                     ///< the pen's column
  std::int32_t penY = 0;                                     ///< the pen's row
  std::int64_t spareB = 0;                                   ///< not read
  std::int32_t spareC = 0;                                   ///< not read
  std::int32_t spareD = 0;                                   ///< not read
  double sdlTextColor[4] = {1.0, 1.0, 1.0, 1.0};             ///< red, green, blue, alpha
  double sdlBkColor[4] = {0.6, 0.6, 0.6, 0.6};               ///< red, green, blue, alpha
  double savedSdlTextColor[4] = {1.0, 1.0, 1.0, 1.0};        ///< of RememberSDLColors
  double savedSdlBkColor[4] = {0.6, 0.6, 0.6, 0.6};          ///< of RememberSDLColors
  bool textTransparent = true;                               ///< of SetTextTransparent
  const std::uint8_t* labelFont;                             ///< glyphs, as nkdraw::labelGlyphs
  std::uint32_t labelFontWidth = 8;                          ///< pixels, not magnified
  std::uint32_t labelFontHeight = 10;                        ///< rows, not magnified
  std::uint32_t labelFontScale = 1;                          ///< magnification
  bool defaultFontWanted = false;                            ///< of UseDefaultFont; not read
  std::shared_ptr<nkdraw::OpenFile> refusedFile;  ///< the font file last refused, still open

 private:
  void fillRows(const tagRECT& rect);
  static const std::uint8_t* builtInFont();  // text/ has it
};
