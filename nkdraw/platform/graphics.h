// SPDX-License-Identifier: BSD-2-Clause
//
// Outlines of text, the mask between them, and regions: what DrawText and LineA use, by the names
// of the graphics interface that frames of this kind grew up with, and, by names of its own, the
// making and ending of the regions that a program hands to LineA.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

// A context and what is selected into it belong to one thread at a time; different contexts do not
// disturb each other. Calls on a null context or with a null object do nothing and return 0 or
// null (GetPath: -1), and so does a call for which there is no memory.

/// Where text is measured, recorded as a path, and filled.
struct nkDeviceContext;
/// A font, a pen, a brush or a bitmap.
struct nkGraphicsObject;
/// A set of pixels.
struct nkRegion;

/// The extent of a text in pixels.
struct tagSIZE {
  std::int32_t cx, cy;
};

/// The types of a path's points. A Bezier segment is three points of its type, of which the last is
/// its end.
inline constexpr std::uint8_t PT_CLOSEFIGURE = 1;  ///< added to a figure's last point
inline constexpr std::uint8_t PT_LINETO = 2;
inline constexpr std::uint8_t PT_BEZIERTO = 4;
inline constexpr std::uint8_t PT_MOVETO = 6;

/// A context on which fonts can be opened. `driver` is "DISPLAY"; the default implementation does
/// not read it. Given back with DeleteDC.
[[nodiscard]] NKDRAW_API nkDeviceContext* CreateICA(const char* driver);
/// A context that draws into the bitmap selected into it. Given back with DeleteDC.
[[nodiscard]] NKDRAW_API nkDeviceContext* CreateCompatibleDC(nkDeviceContext* context);
/// Ends a context. What is selected into it stays. 1, or 0 for null.
NKDRAW_API int DeleteDC(nkDeviceContext* context);

/// What the device can do. The default implementation answers every index with -1: colours without
/// a count.
NKDRAW_API int GetDeviceCaps(nkDeviceContext* context, int index);

/// The font that comes nearest to `face`. A negative `height` is that of the em square in pixels, a
/// positive one that of a line; 0 is an em square of 16 pixels. `weight` is 100 (thin) to 900.
/// The default implementation reads `italic`, too, and none of the other arguments. Null when there
/// is no such font at all. Given back with DeleteObject.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateFontA(
    int height, int width, int escapement, int orientation, int weight, std::uint32_t italic,
    std::uint32_t underline, std::uint32_t strikeOut, std::uint32_t characterSet,
    std::uint32_t outputPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
    std::uint32_t pitchAndFamily, const char* face);
/// A pen. The default implementation, which strokes nothing, reads no argument.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreatePen(int style, int width, std::uint32_t colour);
/// What FillPath fills with: `colour` has red in its lowest byte.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateSolidBrush(std::uint32_t colour);
/// A bitmap of black pixels, or null when it would have none.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateCompatibleBitmap(nkDeviceContext* context,
                                                                  int width, int height);
/// Selects an object into a context in the place of the one of its kind, which is returned. A new
/// context has a font, a pen, a brush and a bitmap of its own, which draw nothing. The object must
/// outlive the context, or its place in it.
NKDRAW_API nkGraphicsObject* SelectObject(nkDeviceContext* context, nkGraphicsObject* object);
/// Ends an object. 1, or 0 for null and for a context's own.
NKDRAW_API int DeleteObject(nkGraphicsObject* object);

/// State of a context; each call returns what was set before. The default implementation keeps the
/// values and knows one way to draw: text hangs from its upper left corner (alignment 0), nothing
/// is painted behind it (mode 1), and paths are filled with the brush.
NKDRAW_API std::uint32_t SetTextAlign(nkDeviceContext* context, std::uint32_t alignment);
NKDRAW_API std::uint32_t SetTextColor(nkDeviceContext* context, std::uint32_t colour);
NKDRAW_API std::uint32_t SetBkColor(nkDeviceContext* context, std::uint32_t colour);
NKDRAW_API int SetBkMode(nkDeviceContext* context, int mode);
/// Moves the current position. `previous`, unless null, takes where it was. 1.
NKDRAW_API int MoveToEx(nkDeviceContext* context, int x, int y, tagPOINT* previous);

/// The characters of a text up to its zero; 0 for null.
[[nodiscard]] NKDRAW_API int lstrlenA(const char* text);

/// Measures `count` characters of code page 1252 in the context's font: the way of the pen, in
/// whole pixels, and the height of a line. 1, or 0 without a font, when `size` stays.
NKDRAW_API int GetTextExtentPoint32A(nkDeviceContext* context, const char* text, int count,
                                     tagSIZE* size);

/// Drops the path and records a new one until EndPath. 1.
NKDRAW_API int BeginPath(nkDeviceContext* context);
/// Adds the outlines of `count` characters to the path that is being recorded, the upper left
/// corner of the text at (x, y). 1, or 0 without a font or outside a recording, when nothing is
/// drawn.
NKDRAW_API int TextOutA(nkDeviceContext* context, int x, int y, const char* text, int count);
/// Marks the last point of the path that is being recorded as the end of its figure. 1 or 0.
NKDRAW_API int CloseFigure(nkDeviceContext* context);
NKDRAW_API int EndPath(nkDeviceContext* context);

/// The recorded path. With a `size` of 0 the number of its points; else writes all of them, rounded
/// to whole pixels, and their types, and returns their number; -1, and nothing written, when there
/// are more than `size` or the recording hasn't ended.
NKDRAW_API int GetPath(nkDeviceContext* context, tagPOINT* points, std::uint8_t* types, int size);
/// Turns every Bezier segment of the recorded path into three lines: the path keeps its number of
/// points, so that who counted them has room for all. 1, or 0 when nothing is recorded.
NKDRAW_API int FlattenPath(nkDeviceContext* context);
/// Takes the recorded path for the clip of the fill that follows. The default implementation, which
/// fills that path alone, leaves all as it is and does not read `mode`.
NKDRAW_API int SelectClipPath(nkDeviceContext* context, int mode);
/// Fills the recorded path in the colour of the context's brush into its bitmap: the pixels whose
/// centre lies inside by the non-zero rule. Drops the path. 1 or 0.
NKDRAW_API int FillPath(nkDeviceContext* context);
/// Drops the path. 1.
NKDRAW_API int AbortPath(nkDeviceContext* context);
/// The pixels that FillPath would fill. Drops the path. Given back with nkDeleteRegion.
[[nodiscard]] NKDRAW_API nkRegion* PathToRegion(nkDeviceContext* context);

/// A pixel of the context's bitmap, red in its lowest byte; 0 outside.
NKDRAW_API std::uint32_t GetPixel(nkDeviceContext* context, int x, int y);

/// Why the last call of this thread failed. The default implementation keeps no reasons: 0.
NKDRAW_API std::uint32_t GetLastError();

/// The pixels from `left` and `top` up to, and without, `right` and `bottom`; none when these are
/// not larger. Null without memory.
[[nodiscard]] NKDRAW_API nkRegion* nkCreateRectRegion(int left, int top, int right, int bottom);
/// Ends a region; null is left alone.
NKDRAW_API void nkDeleteRegion(nkRegion* region);
/// 1 when the region has the pixel, 0 when it hasn't and for null.
[[nodiscard]] NKDRAW_API int PtInRegion(const nkRegion* region, int x, int y);
