// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// NKPixel, the base of every surface.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/platform/sync.h>
#include <nkdraw/surface/pixel_type.h>

#include <cstdint>

/// @cond For the library.
namespace nkdraw {
template <class Surface>
class Plotter;
}
/// @endcond

/// A surface: the frame buffer it is bound to (the canvas), the layout and size, the two drawing
/// colours in the layout's own form, the transparency state, a reference count, a lock and an
/// event.
///
/// - The canvas belongs to the caller. Row 0 is the first row in memory and y grows towards higher
///   addresses in every layout. Nothing is clipped unless an operation says so: callers keep
///   coordinates inside the canvas.
/// - Channels are doubles, nominally 0.0 to 1.0. `foreground` selects one of the two colours: true
///   the foreground, false the background.
/// - A status is NKStatusOk (0) for success, NKStatusRefused (0xFFFFFFFF) for a refused call.
///   Nothing throws.
/// - Only Lock, TryLock, Unlock, AddRef, Release, Refs, SetChangeEvent, WaitForChangeEvent and
///   LastChange may be called while another thread uses the object. Threads that draw on a shared
///   surface bracket their calls with Lock and Unlock.
class NKDRAW_API NKPixel {
 public:
  /// The matrix between RGB and YCbCr, with the coefficients of ITU-R BT.601, BT.709 or BT.2020 in
  /// this system's own rounding.
  ///
  /// More values may be passed by static_cast. 0 is the same as 1. 7 converts from RGB like
  /// mode2020Constant and to RGB like mode2020Full. A value plus 1000 selects the same matrix, but
  /// YCbCrToRGB does not clamp; 1007 is mode2020Constant in both directions. Any other value names
  /// no matrix.
  enum cmYCbCr : std::int32_t {
    mode601Studio = 1,     ///< ITU-R BT.601, luma 16 to 235
    mode601Full = 2,       ///< BT.601, full range
    mode709Studio = 3,     ///< ITU-R BT.709, luma 16 to 235
    mode709Full = 4,       ///< BT.709, full range
    mode2020Studio = 5,    ///< ITU-R BT.2020, luma 16 to 235
    mode2020Full = 6,      ///< BT.2020, full range
    mode2020Constant = 8,  ///< BT.2020, constant luminance; to RGB by the system's own matrix
  };

  /// Makes a 32-bit RGBA surface without a canvas. It has one reference.
  NKPixel();
  /// Copies every field: the copy shares canvas, event and lock with its source and starts with the
  /// source's reference count.
  NKPixel(const NKPixel& other) = default;
  /// Gives this object's two colours to `other`, which is returned: the data flows from left to
  /// right.
  NKPixel& operator=(NKPixel& other);
  /// Closes the event and the lock. The canvas is left alone.
  virtual ~NKPixel();

  /// Binds the frame buffer `canvas`, which stays the caller's and holds `height` rows of `pitch`
  /// bytes. `width` and `height` are in pixels; the signs of all three are dropped. A pitch of 0
  /// stands for GetPitch(), and one too small for the layout is raised. Colours and modes stay.
  /// Returns 0.
  virtual std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch);
  /// Bytes of a packed row of the surface's width in this layout, whatever pitch the canvas has
  /// (that is Pitch()). NKPixel itself knows no layout and returns Pitch().
  virtual int GetPitch();

  /// Converts by the matrix of GetYCbCrMode() and clamps to 0.0 to 1.0, but for modes from 1000 on.
  /// `aOut` becomes 0.0. A mode without a matrix converts nothing, but below 1000 it still clamps
  /// what `r`, `g` and `b` held. Returns 0.
  virtual std::uint32_t YCbCrToRGB(double y, double cb, double cr, double a, double& r, double& g,
                                   double& b, double& aOut);
  /// Converts by the matrix of GetYCbCrMode(), without clamping; `aOut` is not written. The BT.2020
  /// modes add no offsets here, although YCbCrToRGB subtracts them in the studio and full modes: a
  /// colour does not survive the round trip. A mode without a matrix writes nothing. Returns 0.
  virtual std::uint32_t RGBToYCbCr(double r, double g, double b, double a, double& y, double& cb,
                                   double& cr, double& aOut);
  /// Converts to 10-bit units (64 is black, 512 neutral chroma), neither clamped nor truncated;
  /// `aOut` is not written. The studio modes of BT.601 and BT.709 share one matrix of the system's
  /// own, and so do studio and full BT.2020; the other modes write nothing. Returns 0.
  virtual std::uint32_t RGBToYCbCr10(double r, double g, double b, double a, double& y, double& cb,
                                     double& cr, double& aOut);
  /// Converts by the hexcone model: hue from 0.0 to below 360.0 degrees, saturation, and the
  /// largest channel as value. A grey has a hue of -1.0 and leaves `aOut` unwritten; otherwise
  /// `aOut` becomes `a`. Returns 0.
  virtual std::uint32_t RGBToHSV(double r, double g, double b, double a, double& h, double& s,
                                 double& v, double& aOut);
  /// Calls YCbCrToRGB, then RGBToHSV with its results, the alpha of 0.0 included. Returns 0.
  virtual std::uint32_t YCbCrToHSV(double y, double cb, double cr, double a, double& h, double& s,
                                   double& v, double& aOut);
  /// Moves (c1, c2, c3) `percent` hundredths of the way to (n1, n2, n3), without clamping.
  virtual void BlendPixel(double& c1, double& c2, double& c3, double n1, double n2, double n3,
                          int percent);

  /// The address, inside the canvas, of a pixel or of the group that holds it. Coordinates are not
  /// checked.
  virtual void* GetPixel(int x, int y);
  /// Plots one pixel in the selected colour, subject to the transparency state. Returns 0, or
  /// 0xFFFFFFFF for a negative y or a missing canvas. Classes of other layouts check less; each
  /// says what.
  virtual std::uint32_t PutPixel(int x, int y, bool foreground);
  /// Returns 1 when the layout's channels are R, G, B and 0 when they are Y, Cb, Cr.
  virtual std::uint32_t IsRgbType();
  /// Sets the weight of the selected colour in a blend, clamped to 0.0 to 1.0. A weight of 0.0 does
  /// not blend: the colour is plotted opaque. Returns 0.
  virtual std::uint32_t SetTransparency(double value, bool foreground);
  /// Switches blending on or off. It is off at first.
  virtual void SetTransparency(bool on);
  /// Whether blending is on.
  virtual bool GetTransparency();
  /// Lets the foreground be added to the pixel instead of replacing it: the first three bytes,
  /// weighted by the fourth over 255, each wrapping. The pixel's fourth byte becomes 255. Comes
  /// before blending.
  virtual void SetAlphaAdditive(bool on);
  /// Whether the foreground colour is added.
  virtual bool GetAlphaAdditive();
  /// Sets the selected colour, as RGBA or YCbCrA by IsRgbType(), and plots one pixel in it. Returns
  /// what PutPixel returns.
  virtual std::uint32_t SetPixel(int x, int y, double c1, double c2, double c3, double c4,
                                 bool foreground);
  /// @name Reads of one pixel
  /// The pixel must lie on the canvas. A canvas must be bound, unless the class says that it
  /// checks. All return 0, but for GetPixelHSV of YCbCr surfaces.
  ///@{

  /// Reads the stored channels as 0.0 to 1.0, each byte over 255. `a` is 1.0 on the 24-bit layouts.
  virtual std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a);
  /// Reads GetPixelRGBA's channels converted by RGBToYCbCr, without clamping; `a` is as read. A
  /// mode without a matrix leaves the other three as they were. YCbCr surfaces read what they
  /// store.
  virtual std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a);
  /// Reads GetPixelYCbCr's channels and alpha times 255, truncated: 1.0 reads as 255, and values
  /// outside 0.0 to 1.0 wrap at eight bits. Under a mode without a matrix Y, Cb and Cr read as 0.
  virtual std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                                       unsigned char& cr, unsigned char& a);
  /// Reads GetPixelYCbCr's channels and alpha times 1024, truncated. Deliberate: the factor is not
  /// 1023, so 1.0 reads as 1024, one more than ten bits hold. Values wrap at 32 bits: negative
  /// chroma reads as a number near 2^32.
  virtual std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                        std::uint32_t& cr, std::uint32_t& a);
  /// Reads GetPixelRGBA's channels as hue (0.0 to below 360.0 degrees), saturation and value (0.0
  /// to 1.0); `a` is as read. The hue of a grey is 0.0 here, -1.0 in the RGB classes. YCbCr
  /// surfaces refuse: they return 0xFFFFFFFF and write nothing.
  virtual std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a);
  /// The luma of a pixel, weighted by the system's own weights for the mode: 0.0 to 255/256 on
  /// 8-bit RGB, where ptBGR24 is read as ptRGB24. Other classes have scales of their own.
  virtual double GetLuma(int x, int y);
  ///@}

  /// Does nothing, in any class. Returns 0.
  virtual std::uint32_t GetColorYCbCr(double& y, double& cb, double& cr, double& a,
                                      bool foreground);
  /// Sets the selected colour of a YCbCr surface. Channels are nominally 0.0 to 1.0, with neutral
  /// chroma at 0.5, and not clamped. An RGB surface does nothing. Returns 0.
  virtual std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground);
  /// Calls SetColorYCbCr with each 10-bit code over 1024, and returns its result. The 4:2:2
  /// surfaces store the codes instead.
  virtual std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                        std::uint32_t a, bool foreground);
  /// Reads the selected colour from this class's packed fields, each byte over 255; `a` is 1.0 on
  /// the 24-bit layouts. The colours of a class that keeps its own are not read. Returns 0.
  virtual std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool foreground);
  /// Sets the selected colour: each channel times 255, truncated and wrapping at eight bits, in the
  /// layout's byte order. Returns 0.
  virtual std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground);
  /// `fraction` of the width in pixels, truncated towards zero: 0.5 is the middle. Despite the name
  /// not a percentage.
  virtual int PercentX(double fraction);
  /// `fraction` of the height in rows, likewise.
  virtual int PercentY(double fraction);
  /// Selects the matrix for conversions from now on. Any value is kept. Colours already set stay as
  /// they were packed; SetCanvas of a YCbCr surface selects again by the width. Returns 0.
  virtual std::uint32_t SetYCbCrMode(cmYCbCr mode);
  /// Reads the mode last selected. Returns 0.
  virtual std::uint32_t GetYCbCrMode(cmYCbCr& mode);

  /// Takes the recursive lock. A `timeout` of 0 or 0xFFFFFFFF (NKForever) waits without limit and
  /// returns 0. Any other is a number of attempts, one millisecond apart: returns 128 (NKLockTaken)
  /// when one succeeds and 0 when none does.
  std::uint32_t Lock(std::uint32_t timeout);
  /// Takes the lock if no other thread holds it. Returns 1 when taken, otherwise 0.
  std::uint32_t TryLock();
  /// Leaves the lock once. Only the thread that holds it may call this. Returns 0.
  std::uint32_t Unlock();
  /// Adds a reference. Returns the new count.
  std::int32_t AddRef();
  /// Drops a reference, but not below 0, and never deletes; ReleaseDraw does. Returns the new
  /// count.
  std::int32_t Release();
  /// The count of references.
  [[nodiscard]] std::int32_t Refs() const;
  /// Signals the change event, which lets one waiter through.
  void SetChangeEvent();
  /// Waits at most `timeout` milliseconds (NKForever: without limit) for the change event. Returns
  /// 0 (NKWaitSignalled), 258 (NKWaitTimedOut), or 0xFFFFFFFF (NKWaitFailed) when there was no
  /// memory for an event.
  std::uint32_t WaitForChangeEvent(std::uint32_t timeout);
  /// Stores the caller's change stamp, unless `value` is 0xFFFFFFFF (NKOnlyRead). Returns the
  /// stamp.
  std::uint32_t LastChange(std::uint32_t value);

  /// Pixels in a row.
  [[nodiscard]] std::uint32_t Width() const { return width; }
  /// Rows.
  [[nodiscard]] std::uint32_t Height() const { return height; }
  /// Bytes from one row of the canvas to the next.
  [[nodiscard]] std::uint32_t Pitch() const { return pitch; }
  /// The frame buffer, which is the caller's; null before SetCanvas.
  [[nodiscard]] char* GetCanvas() const { return canvas; }
  /// Bytes of the canvas: pitch times height, wrapping at 32 bits.
  [[nodiscard]] std::uint32_t BufferLength() const { return pitch * height; }
  /// The layout.
  [[nodiscard]] pixelType PixelType() const { return pixelKind; }
  /// Calls SetColorYCbCr with each byte over 255, and returns its result.
  std::uint32_t SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr, unsigned char a,
                               bool foreground);
  /// Copies colours and transparency from `other`. The additive switch, mode, layout and canvas
  /// stay.
  void CopyNKPixel(NKPixel& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  pixelType pixelKind = ptRGBA32;     ///< the layout
  cmYCbCr ycbcrMode = mode601Studio;  ///< of SetYCbCrMode
  std::uint32_t width = 0;            ///< pixels
  std::uint32_t height = 0;           ///< rows
  std::uint32_t pitch = 0;            ///< bytes
  bool flipped = false;               ///< SetCanvas got a negative height; not read
  std::uint8_t foregroundPixel[4] = {0xFF, 0xFF, 0xFF, 0xFF};  ///< in the layout's byte order
  double foregroundAlpha = 0.0;                                ///< weight in a blend
  std::uint8_t backgroundPixel[4] = {0, 0, 0, 0};              ///< in the layout's byte order
  double backgroundAlpha = 0.0;                                ///< weight in a blend
  bool transparencyOn = false;                                 ///< of SetTransparency
  bool alphaAdditive = false;                                  ///< of SetAlphaAdditive
  std::uint32_t lastChange = 0;                                ///< the caller's stamp
  bool antialias = false;          ///< NKDraw::Line mixes with the canvas
  bool spareFlag = false;          ///< not read
  std::int32_t refs = 1;           ///< of AddRef and Release
  nkHandle changeEvent = nullptr;  ///< owned; a copy shares it
  nkCriticalSection lock;          ///< owned; a copy shares it
  char* canvas = nullptr;          ///< the caller's
};
