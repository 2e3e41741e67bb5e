// SPDX-License-Identifier: BSD-2-Clause
//
// NKDraw, the drawing verbs of every surface.
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

/// Formats of DrawText. They may be combined; other bits are ignored.
inline constexpr std::uint32_t DT_CENTER = 0x1;
inline constexpr std::uint32_t DT_RIGHT = 0x2;
inline constexpr std::uint32_t DT_BOTTOM = 0x8;
inline constexpr std::uint32_t DT_CALCRECT = 0x400;
inline constexpr std::uint32_t DT_HIDEPREFIX = 0x100000;

/// Draws on any surface through the virtual PutPixel: one-pixel lines, curves and rectangles in the
/// foreground colour, and text. It keeps a pen position and the state of the text.
///
/// Coordinates are signed pixels from the first pixel of the canvas, x to the right, y down. No
/// operation clips; what lies outside is for the surface's PutPixel to refuse. Operations call each
/// other through the table, so that a class that overrides one changes all that use it; only
/// LineHoriz, EraseCanvas and a FillRect of the whole canvas on the 32-bit RGB layouts fill memory
/// without asking PutPixel. A status is 0, or 0xFFFFFFFF for a refused call; what PutPixel returns
/// does not change it. The operations marked empty return 0 and do nothing whatever they get.
class NKDRAW_API NKDraw : public virtual NKPixel {
 public:
  enum nkFilterType : std::int32_t { nkFilterNone = 0 };
  enum nkScaleType : std::int32_t { nkScaleNone = 0 };

  explicit NKDraw(pixelType type);
  /// Copies every field; pixels, fonts and an open metafile are shared.
  NKDraw(const NKDraw& other) = default;
  /// Draws this picture's shape into `other`: plots every pixel of the common area on `other`, in
  /// `other`'s own foreground colour, while this object's foreground colour takes the pixel it
  /// read. Then takes colours and transparency from `other`. Returns `other`.
  NKDraw& operator=(NKDraw& other);
  ~NKDraw() override;

  virtual std::uint32_t SetBrush(unsigned char* bits, int width, int height);  ///< empty

  /// Moves the pen and plots there in the chosen colour; what PutPixel returns.
  virtual std::uint32_t Point(int x, int y, bool foreground);
  /// Moves the pen. `previous`, unless null, takes where it was.
  virtual std::uint32_t MoveTo(int x, int y, tagPOINT* previous);
  virtual std::uint32_t MoveTo(int x, int y);
  /// A line from the pen, which then stands at its end.
  virtual std::uint32_t LineTo(int x, int y);
  /// A line, both ends included, the same pixels whichever end comes first. Where a derived class
  /// sets `antialias`, lines that are neither straight nor exactly diagonal are mixed with the
  /// canvas, and leave the foreground colour nearly black.
  virtual std::uint32_t Line(int x1, int y1, int x2, int y2);
  virtual std::uint32_t Line(tagPOINT& from, tagPOINT& to);
  /// LineWu from the pen, which then stands at its end.
  virtual std::uint32_t LineWuTo(int x, int y);
  /// Xiaolin Wu's antialiased line: two pixels at each step, whose weights go into the alpha of the
  /// foreground colour. It shows on layouts that plot through NKPixel in additive mode; on all
  /// others the two pixels are plotted alike, and YCbCr surfaces and mosaics, which do not tell
  /// their colour, draw it in white. The colour keeps the last weight as its alpha. Returns 0.
  virtual std::uint32_t LineWu(int x1, int y1, int x2, int y2);
  /// A column, both ends included; nothing when y1 is greater than y2.
  virtual std::uint32_t LineVert(int x, int y1, int y2);
  /// A row. On the 32-bit RGB layouts x2 is left out, nothing blends, and x1 must not be greater
  /// than x2; on all others x2 is included and an x1 greater than x2 draws nothing.
  virtual std::uint32_t LineHoriz(int x1, int y, int x2);
  /// A line of `on` plotted and `off` skipped pixels in turn, begun at (x1, y1).
  virtual std::uint32_t Dash(int x1, int y1, int x2, int y2, int on, int off);

  // Curves are chains of lines. Angles are degrees from the right, counter-clockwise on the screen,
  // cut to whole ones; an end below the start is reached by going round. A degree is 3.14 / 180 of
  // the angle that sine and cosine take, so that arcs end a little short of the axes.

  /// AngleArc and AngleArcTo of 0 to 360 degrees. Circle leaves the pen; Ellipse leaves it at its
  /// rightmost point. Radii, not a box.
  virtual std::uint32_t Circle(int x, int y, int radius);
  virtual std::uint32_t Ellipse(int x, int y, int radiusX, int radiusY);
  /// An arc of the ellipse in the box from (x1, y1) to (x2, y2), from the direction of (x3, y3) to
  /// that of (x4, y4). A box that is empty or turned round, and a direction point in the centre,
  /// are refused. The pen stays.
  virtual std::uint32_t Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Arc with its start in the direction of (y3, x3), the coordinates exchanged; then the pen
  /// stands at (x4, y4). Returns 0, drawn or not.
  virtual std::uint32_t ArcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// An arc around (x, y) from one angle to another. The pen stays.
  virtual std::uint32_t AngleArc(int x, int y, std::uint32_t radius, float start, float end);
  /// The same of an ellipse; the pen then stands at the last point.
  virtual std::uint32_t AngleArcTo(int x, int y, int radiusX, int radiusY, float start, float end);
  /// A cubic curve with its two control points, split until both lie less than a pixel from the
  /// chord. Two ends that coincide are refused. The pen stands at the start of the last line drawn.
  /// Coordinates lie within 2^29 of 0: beyond that sums wrap, and the halves need not meet.
  virtual std::uint32_t Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Curves that share their ends: 7, 10, 13 ... points. Any other count is refused, 4 too.
  virtual std::uint32_t PolyBezier(const tagPOINT* points, std::uint32_t count);
  /// The same, after which the pen stands at points[count + 2]: the array holds three points more.
  virtual std::uint32_t PolyBezierTo(const tagPOINT* points, std::uint32_t count);
  /// Lines from point to point. Fewer than two points are refused.
  virtual std::uint32_t Polyline(const tagPOINT* points, std::uint32_t count);
  /// The same, after which the pen stands at points[count]: the array holds one point more.
  virtual std::uint32_t PolylineTo(const tagPOINT* points, std::uint32_t count);
  /// Rows of LineHoriz from top to bottom, bottom left out; right is left out on the 32-bit RGB
  /// layouts and included on all others. On those layouts a rectangle of the canvas's size,
  /// wherever it lies, fills the canvas as NKDraw::EraseCanvas does, without asking a class that
  /// overrides that, and left must not be greater than right. `rect` must not be null. Returns 0.
  virtual std::uint32_t FillRect(const tagRECT* rect);
  /// Four lines; all edges are included, the corners plotted twice.
  virtual std::uint32_t Rectangle(int x1, int y1, int x2, int y2);
  /// A rectangle whose corners are quarters of an ellipse `width` by `height`; refused when that is
  /// larger than the rectangle. The pen stands at the last corner's last point.
  virtual std::uint32_t RoundRect(int x1, int y1, int x2, int y2, int width, int height);
  /// ArcTo's arc, and lines from its ends to the middle of the box, as an outline. A refused arc
  /// leaves the two lines, which then go to the ends of the last arc of the process. The pen stays.
  /// Pies drawn by several threads at once get each other's ends.
  virtual std::uint32_t Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
  /// Fills the canvas with the foreground colour. On the 32-bit RGB layouts width times height
  /// pixels from the first byte on, whatever the pitch, and nothing blends. On all others every row
  /// through LineHoriz, which plots one pixel more at its right end, also of a row without pixels:
  /// the canvas has room for it. One negative side of two, where a class keeps signs, draws
  /// nothing. `flag` is not read. Returns 0.
  virtual std::uint32_t EraseCanvas(bool flag);
  virtual std::uint32_t Fill(int x, int y, double value);                  ///< empty
  virtual std::uint32_t GradientRect(int, int, int, int, int);             ///< empty
  virtual std::uint32_t SymGradientRect(int, int, int, int, int);          ///< empty
  virtual std::uint32_t CornerGradientRect(int, int, int, int, int);       ///< empty
  virtual std::uint32_t CenterGradientRect(int, int, int, int);            ///< empty
  virtual std::uint32_t RadialGradientFill(int, int, int, int, int, int);  ///< empty
  virtual std::uint32_t PatternFill(int, int, int, int, int, int,
                                    unsigned char* pattern);                             ///< empty
  virtual std::uint32_t RoundRectButton(int, int, int, int, int, int);                   ///< empty
  virtual std::uint32_t CopyRect(tagRECT* target, const tagRECT* source, NKDraw* from);  ///< empty

  /// Accepts nothing: returns 0 and changes nothing.
  virtual std::uint32_t LabelFont(const char* name, std::uint32_t size);
  /// Chooses the built-in font at a whole magnification. `size` is not read.
  virtual std::uint32_t LabelFont(std::uint32_t size, int scale);
  /// Pixels from one character of a label to the next, and the lines of one.
  virtual std::uint32_t LabelGetFontWidth();
  virtual std::uint32_t LabelGetFontHeight();
  /// Stamps one line of text with its top left corner at (x, y). `invert` swaps the two colours;
  /// `fill` paints the unset pixels too. Codes 0 to 127 have glyphs, others draw nothing; there are
  /// no control codes. The pen ends at the last single point plotted, if any. Returns 0.
  virtual std::uint32_t Label(int x, int y, const char* text, bool invert, bool fill);

  virtual std::uint32_t Filter(nkFilterType type, int, int, int, int);  ///< empty
  virtual std::uint32_t Scale(nkScaleType type, NKDraw* source, tagRECT* sourceRect, NKDraw* target,
                              tagRECT* targetRect);  ///< empty

  /// Reads the head of a 16-bit metafile, with or without the 22-byte placeable header in front
  /// (its checksum must fit). What a short file lacks reads as zero. 0, or 0xFFFFFFFF when the file
  /// can't be opened, is a folder, or has a wrong checksum.
  virtual std::uint32_t EMFOpen(const char* path);
  /// The right and bottom fields of the placeable header, 0 and 0 before one was read. Returns 0.
  virtual std::uint32_t EMFGetSize(int& width, int& height);
  virtual std::uint32_t EMFDraw(int, int, int, int, bool);  ///< empty
  /// Lets the metafile go, which closes with the last copy of this object that has it open. The
  /// placeable header stays for EMFGetSize. Without an open file nothing happens. Returns 0.
  virtual std::uint32_t EMFClose();
  virtual std::uint32_t Arrow(int, int, int, int, bool);  ///< empty

  /// Writes `text`, one line up to its zero, into a rectangle. The height of `rect` over 10, 1 to
  /// 20, magnifies the 8 by 10 glyphs (1 when its bottom is 0 or its top negative); the text's foot
  /// stands on the bottom edge. That edge stays with DT_CENTER, DT_RIGHT or DT_BOTTOM and follows
  /// from the top without them. DT_CENTER takes the whole text for 10 magnified pixels a character,
  /// and does not move the left edge of a text that is wider so; it comes before DT_RIGHT, which
  /// alone aligns by `count` characters. With DT_CALCRECT `rect` comes back as the box of `count`
  /// characters; the text is drawn all the same. `rect` is changed as the format says. Ink is the
  /// foreground colour; the rest of each cell and one line above it are the background colour,
  /// unless SetTextTransparent(true), the initial state. Clears the surface's antialiasing. `text`
  /// and `rect` must not be null. Returns 0.
  ///
  /// The process-wide font kind, which is empty until a program sets it (text/font_data.h), chooses
  /// two other ways, on which the text hangs from the rectangle's upper left corner:
  /// - "bmp" reads a font sheet from a fixed path, else keeps the one before, and stamps its glyphs
  ///   in their own colours, the key's pixels in the background colour. `count` and `format` are
  ///   not read. The sheet must have a glyph for each code; one that it lacks shows what lies in
  ///   memory behind its top line, of any width.
  /// - "ttf" draws `count` characters of code page 1252 in the platform's font: the outlines with
  ///   Line and Bezier, and the fill with PutPixel if a channel of the foreground is full. The
  ///   foreground is left nearly black. DT_CALCRECT sets the right edge to the left one plus the
  ///   text's height. Without a font nothing is drawn.
  std::int32_t DrawText(const char* text, std::int32_t count, tagRECT* rect, std::uint32_t format);
  /// The same as DrawText.
  std::int32_t NKDrawText(const char* text, std::int32_t count, tagRECT* rect,
                          std::uint32_t format);
  std::int32_t DrawTextExA(const char* text, std::int32_t count, tagRECT* rect,
                           std::uint32_t format, tagDRAWTEXTPARAMS* params);  ///< empty
  std::int32_t TextOutA(int x, int y, const char* text, int count);           ///< empty

  /// A second pair of colours that is kept for callers; no operation draws with it. Returns 0.
  std::uint32_t SetSDLTextColor(double red, double green, double blue, double alpha);
  std::uint32_t SetSDLBkColor(double red, double green, double blue, double alpha);
  /// Keeps a copy of that pair, one deep, and brings it back. Return 0.
  std::uint32_t RememberSDLColors();
  std::uint32_t ResetSDLColors();
  /// Whether DrawText leaves the pixels between the strokes alone.
  void SetTextTransparent(bool transparent);

  /// True notes the wish for a default font and returns 1. False looks for the font sheet of this
  /// width, beside the program and in two more folders, and does not load it: 0 and the wish is
  /// taken back when the sheet is there, else 1 and it is noted.
  std::uint32_t UseDefaultFont(bool wanted);
  std::uint32_t SetFont(const char* name);  ///< empty
  std::uint32_t HaveFont();                 ///< empty
  /// Reads a font sheet, a plain 24-bit BMP file that may be written to, into the process-wide font
  /// data. The pixels must begin in the file's first 256 bytes. Those that there is no room for run
  /// on into the fields behind them, and end with the block; what the file lacks reads as zero in
  /// its header and leaves the pixels as they were. 0, or -1 for no such file. A file that was
  /// opened and refused for its head stays open until this object's next, or its end.
  std::int32_t ExtractBMPData(const char* path);
  /// Walks over the chunks of a PNG file and keeps nothing. 0, or -1 when it isn't one or ends
  /// before its last chunk. A file without the signature or the header chunk stays open as above.
  std::int32_t ExtractPNGData(const char* path);
  /// A line, both ends included, of the pixels that `region` has when its origin is laid on the
  /// upper left corner of `rect`; none in a null region. Each pixel takes, dimmed to a 255th, the
  /// colour that the canvas has in its column on the row of the lower end (on a steep line in the
  /// upper end's column), and leaves the foreground a 255th of what it was: the canvas must hold
  /// these. With antialiasing both ends are plotted whatever the region, and the pixels between
  /// them in pairs, mixed from canvas and foreground. `rect` must not be null.
  void LineA(const nkRegion* region, const tagRECT* rect, int x1, int y1, int x2, int y2);

 protected:
  friend std::uint32_t(::UseDefaultFont)(NKDraw*& surface, bool wanted);

  std::int32_t metaFile = 0;                        // descriptor, 0 none, -1 failed
  std::shared_ptr<nkdraw::OpenFile> metaFileOwner;  // closes it with its last user
  std::int64_t spareA = 0;
  std::shared_ptr<nkdraw::MetafileHeader> metaHeader;
  std::shared_ptr<nkdraw::PlaceableHeader> placeableHeader;
  std::int32_t penX = 0;
  std::int32_t penY = 0;
  std::int64_t spareB = 0;
  std::int32_t spareC = 0;
  std::int32_t spareD = 0;
  double sdlTextColor[4] = {1.0, 1.0, 1.0, 1.0};  // red, green, blue, alpha
  double sdlBkColor[4] = {0.6, 0.6, 0.6, 0.6};
  double savedSdlTextColor[4] = {1.0, 1.0, 1.0, 1.0};
  double savedSdlBkColor[4] = {0.6, 0.6, 0.6, 0.6};
  bool textTransparent = true;
  const std::uint8_t* labelFont;
  std::uint32_t labelFontWidth = 8;
  std::uint32_t labelFontHeight = 10;
  std::uint32_t labelFontScale = 1;
  bool defaultFontWanted = false;
  std::shared_ptr<nkdraw::OpenFile> refusedFile;  // the last font file that was refused, kept open

 private:
  void fillRows(const tagRECT& rect);
  static const std::uint8_t* builtInFont();  // text/ has it
};
