// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Outlines of text, the mask inside them, and regions: what NKDraw::DrawText and NKDraw::LineA
/// use. The names are those of a widely known graphics interface; only the calls that make and end
/// the regions for LineA have names of their own.
///
/// A context and what is selected into it belong to one thread at a time; different contexts do not
/// disturb each other. Calls with a null context or object, and calls for which there is no memory,
/// do nothing and return 0 or null (GetPath: -1).
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// Where text is measured, recorded as a path, and filled.
struct nkDeviceContext;
/// A font, a pen, a brush or a bitmap.
struct nkGraphicsObject;
/// A set of pixels.
struct nkRegion;

/// The extent of a text in pixels.
struct tagSIZE {
  std::int32_t cx,  ///< width
      cy;           ///< height
};

// The types of a path's points.

inline constexpr std::uint8_t PT_CLOSEFIGURE = 1;  ///< added to the type of a figure's last point
inline constexpr std::uint8_t PT_LINETO = 2;       ///< end of a line
inline constexpr std::uint8_t PT_BEZIERTO = 4;  ///< one of three: two control points, then the end
inline constexpr std::uint8_t PT_MOVETO = 6;    ///< start of a figure

/// A context on which fonts can be opened. `driver` is "DISPLAY"; the default implementation does
/// not read it. Given back with DeleteDC.
[[nodiscard]] NKDRAW_API nkDeviceContext* CreateICA(const char* driver);
/// A context that draws into the bitmap selected into it. Given back with DeleteDC.
[[nodiscard]] NKDRAW_API nkDeviceContext* CreateCompatibleDC(nkDeviceContext* context);
/// Ends a context, but not the objects selected into it. Returns 1, or 0 for null.
NKDRAW_API int DeleteDC(nkDeviceContext* context);

/// What the device can do. The default implementation returns -1 for every index; as a number of
/// colours, -1 stands for no limit.
NKDRAW_API int GetDeviceCaps(nkDeviceContext* context, int index);

/// Makes the font that matches `face` best. A negative `height` is that of the em square in pixels,
/// a positive one that of a line; 0 stands for an em square of 16 pixels. `weight` is 100 (thin) to
/// 900 (heavy). Of the other arguments the default implementation reads only `italic`. Null when
/// the host has no font at all. Given back with DeleteObject.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateFontA(
    int height, int width, int escapement, int orientation, int weight, std::uint32_t italic,
    std::uint32_t underline, std::uint32_t strikeOut, std::uint32_t characterSet,
    std::uint32_t outputPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
    std::uint32_t pitchAndFamily, const char* face);
/// Makes a pen. The default implementation strokes nothing and reads no argument. Given back with
/// DeleteObject.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreatePen(int style, int width, std::uint32_t colour);
/// Makes a brush, which FillPath fills with. `colour` has red in its lowest byte. Given back with
/// DeleteObject.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateSolidBrush(std::uint32_t colour);
/// Makes a bitmap of black pixels; null when it would have none. Given back with DeleteObject.
[[nodiscard]] NKDRAW_API nkGraphicsObject* CreateCompatibleBitmap(nkDeviceContext* context,
                                                                  int width, int height);
/// Selects an object into a context and returns the one of the same kind that it replaces. A new
/// context has a font, a pen, a brush and a bitmap of its own, which draw nothing. The object must
/// live for as long as it is selected.
NKDRAW_API nkGraphicsObject* SelectObject(nkDeviceContext* context, nkGraphicsObject* object);
/// Ends an object. Returns 1, or 0 for null and for a context's own objects.
NKDRAW_API int DeleteObject(nkGraphicsObject* object);

///@{
/// Sets a value of the context and returns the one before. The default implementation only keeps
/// it: text is always placed by its top left corner (alignment 0), nothing is painted behind it
/// (background mode 1), and paths are filled with the brush.
NKDRAW_API std::uint32_t SetTextAlign(nkDeviceContext* context, std::uint32_t alignment);
NKDRAW_API std::uint32_t SetTextColor(nkDeviceContext* context, std::uint32_t colour);
NKDRAW_API std::uint32_t SetBkColor(nkDeviceContext* context, std::uint32_t colour);
NKDRAW_API int SetBkMode(nkDeviceContext* context, int mode);
///@}
/// Moves the current position. The old one goes to `previous`, unless that is null. Returns 1.
NKDRAW_API int MoveToEx(nkDeviceContext* context, int x, int y, tagPOINT* previous);

/// The length of a text in bytes, without its zero; 0 for null.
[[nodiscard]] NKDRAW_API int lstrlenA(const char* text);

/// Measures `count` characters of code page 1252 in the context's font: the pen's advance and the
/// height of a line, in whole pixels. Returns 1, or 0 without a font, and `size` stays.
NKDRAW_API int GetTextExtentPoint32A(nkDeviceContext* context, const char* text, int count,
                                     tagSIZE* size);

/// Drops the path and records a new one until EndPath. Returns 1.
NKDRAW_API int BeginPath(nkDeviceContext* context);
/// Adds the outlines of `count` characters to the path being recorded, with the top left corner of
/// the text at (x, y). Returns 1, or 0 without a font or a recording, and nothing is added.
NKDRAW_API int TextOutA(nkDeviceContext* context, int x, int y, const char* text, int count);
/// Marks the last point of the path being recorded as the end of its figure. Returns 1, or 0 when
/// no path is being recorded.
NKDRAW_API int CloseFigure(nkDeviceContext* context);
/// Ends the recording of a path. Returns 1, or 0 when no path is being recorded.
NKDRAW_API int EndPath(nkDeviceContext* context);

/// Reads the recorded path. With a `size` of 0 returns the number of its points. Otherwise writes
/// all of them, rounded to whole pixels, and their types, and returns their number. Returns -1 and
/// writes nothing when there are more than `size`, or the recording hasn't ended.
NKDRAW_API int GetPath(nkDeviceContext* context, tagPOINT* points, std::uint8_t* types, int size);
/// Turns every Bezier segment of the recorded path into three lines. Deliberate: the number of
/// points stays, so that a buffer sized before still holds them. Returns 1, or 0 when nothing is
/// recorded.
NKDRAW_API int FlattenPath(nkDeviceContext* context);
/// Makes the recorded path the clip of the fill that follows. The default implementation fills
/// nothing but that path: it changes nothing and does not read `mode`. Returns 1 or 0.
NKDRAW_API int SelectClipPath(nkDeviceContext* context, int mode);
/// Fills the recorded path into the context's bitmap in the colour of its brush: the pixels whose
/// centres lie inside by the non-zero rule. Drops the path. Returns 1, or 0 when nothing is
/// recorded.
NKDRAW_API int FillPath(nkDeviceContext* context);
/// Drops the path. Returns 1.
NKDRAW_API int AbortPath(nkDeviceContext* context);
/// The pixels that FillPath would fill. Drops the path. Given back with nkDeleteRegion.
[[nodiscard]] NKDRAW_API nkRegion* PathToRegion(nkDeviceContext* context);

/// The colour of a pixel of the context's bitmap, red in its lowest byte; 0 outside.
NKDRAW_API std::uint32_t GetPixel(nkDeviceContext* context, int x, int y);

/// Why this thread's last call failed. The default implementation always returns 0.
NKDRAW_API std::uint32_t GetLastError();

/// Makes a region of the pixels from `left` and `top` up to, but excluding, `right` and `bottom`;
/// empty when these are not larger. Null without memory. Given back with nkDeleteRegion.
[[nodiscard]] NKDRAW_API nkRegion* nkCreateRectRegion(int left, int top, int right, int bottom);
/// Ends a region; null is left alone.
NKDRAW_API void nkDeleteRegion(nkRegion* region);
/// Returns 1 when the region has the pixel, 0 when it hasn't and for null.
[[nodiscard]] NKDRAW_API int PtInRegion(const nkRegion* region, int x, int y);
