// SPDX-License-Identifier: BSD-2-Clause
//
// NKPixel, the base of everything that can be drawn on.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/platform/sync.h>
#include <nkdraw/surface/pixel_type.h>

#include <cstdint>

namespace nkdraw {
template <class Surface>
class Plotter;
}

/// One bound frame buffer, the canvas: its layout, its size, the two drawing colours in the
/// layout's own form, the transparency state, a reference count, a lock and an event.
///
/// - The canvas belongs to the caller. Row 0 is the first row in memory and y grows towards higher
///   addresses in every layout. Nothing is clipped unless an operation says so: a caller keeps
///   coordinates inside the canvas.
/// - Channels are doubles, nominally 0.0 to 1.0. `foreground` chooses one of the two colours: true
///   the foreground, false the background.
/// - Statuses: NKStatusOk is success, NKStatusRefused a refused call. Nothing throws.
/// - Only Lock, TryLock, Unlock, AddRef, Release, Refs, SetChangeEvent, WaitForChangeEvent and
///   LastChange may be called while another thread uses the object; drawing on a shared surface is
///   bracketed with Lock and Unlock by its callers.
class NKDRAW_API NKPixel {
 public:
  /// The matrix between RGB and YCbCr. 0 is the same as 1. 7 is constant luminance from RGB and
  /// mode2020Full to RGB. 1000 added to a value is the same matrix with the results of YCbCrToRGB
  /// left unclamped, but 1007 is constant luminance both ways. These arrive by static_cast; further
  /// values name no matrix.
  enum cmYCbCr : std::int32_t {
    mode601Studio = 1,     ///< ITU-R BT.601, luma 16 to 235
    mode601Full = 2,       ///< BT.601, full range
    mode709Studio = 3,     ///< ITU-R BT.709, luma 16 to 235
    mode709Full = 4,       ///< BT.709, full range
    mode2020Studio = 5,    ///< ITU-R BT.2020, luma 16 to 235
    mode2020Full = 6,      ///< BT.2020, full range
    mode2020Constant = 8,  ///< BT.2020, constant luminance
  };

  /// A surface of 32-bit RGBA without a canvas, with one reference.
  NKPixel();
  /// Copies every field: the copy shares canvas, event and lock with its source and starts with
  /// the source's reference count.
  NKPixel(const NKPixel& other) = default;
  /// Gives this object's two colours to `other`, which is returned: the data flows from left to
  /// right.
  NKPixel& operator=(NKPixel& other);
  virtual ~NKPixel();

  /// Binds the frame buffer `canvas`, which stays the caller's. `width` and `height` are taken
  /// without their signs, `pitch` (bytes from row to row) likewise; 0 asks for GetPitch(), and one
  /// too small for the layout is raised. Colours and modes stay. Returns 0.
  virtual std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch);
  /// The bytes of a packed row of this width, whatever the canvas has; see Pitch().
  virtual int GetPitch();

  /// Channels through the matrix of GetYCbCrMode(). `aOut` becomes 0.0. An unknown mode leaves the
  /// three colours as they were, but below 1000 clamps them all the same. Returns 0.
  virtual std::uint32_t YCbCrToRGB(double y, double cb, double cr, double a, double& r, double& g,
                                   double& b, double& aOut);
  /// Not clamped; `aOut` is not written. The BT.2020 modes carry no offsets on this way: studio and
  /// full do not come back through YCbCrToRGB as they went. An unknown mode writes nothing.
  virtual std::uint32_t RGBToYCbCr(double r, double g, double b, double a, double& y, double& cb,
                                   double& cr, double& aOut);
  /// Into 10-bit units, not clamped, the fraction kept. Knows the studio modes of BT.601 and
  /// BT.709 (one matrix of the system's own for both) and both of BT.2020; others write nothing.
  virtual std::uint32_t RGBToYCbCr10(double r, double g, double b, double a, double& y, double& cb,
                                     double& cr, double& aOut);
  /// Hue in degrees, -1.0 for a grey, saturation and value 0.0 to 1.0; a grey leaves `aOut`
  /// unwritten.
  virtual std::uint32_t RGBToHSV(double r, double g, double b, double a, double& h, double& s,
                                 double& v, double& aOut);
  /// YCbCrToRGB, then RGBToHSV of what it gave, its 0.0 of alpha too. Returns 0 whatever they do.
  virtual std::uint32_t YCbCrToHSV(double y, double cb, double cr, double a, double& h, double& s,
                                   double& v, double& aOut);
  /// Moves three channels `percent` hundredths of the way to (n1, n2, n3), unclamped.
  virtual void BlendPixel(double& c1, double& c2, double& c3, double n1, double n2, double n3,
                          int percent);

  /// The address of a pixel, or of the group that holds it. Not checked against the canvas, whose
  /// memory it is part of.
  virtual void* GetPixel(int x, int y);
  /// Plots one pixel in the chosen colour, as the transparency state says. 0, or 0xFFFFFFFF for a
  /// negative y or a missing canvas; other layouts test less, as their classes tell.
  virtual std::uint32_t PutPixel(int x, int y, bool foreground);
  /// 1 when the channels of this layout are R, G, B, 0 when they are Y, Cb, Cr.
  virtual std::uint32_t IsRgbType();
  /// The weight of the chosen colour when blending, cut to 0.0 to 1.0; 0.0 does not blend. Returns
  /// 0.
  virtual std::uint32_t SetTransparency(double value, bool foreground);
  /// Switches blending.
  virtual void SetTransparency(bool on);
  virtual bool GetTransparency();
  /// Lets the foreground colour add into the pixel, wrapping, instead of replacing it.
  virtual void SetAlphaAdditive(bool on);
  virtual bool GetAlphaAdditive();
  /// Sets the chosen colour, as RGBA or YCbCrA by IsRgbType(), and plots one pixel in it. What
  /// PutPixel returns.
  virtual std::uint32_t SetPixel(int x, int y, double c1, double c2, double c3, double c4,
                                 bool foreground);
  // Reads of one pixel. The canvas must be bound and hold it: what is not tested here a class may
  // test. They return 0 but for the HSV of YCbCr surfaces.

  /// The stored channels, 0.0 to 1.0. `a` is 1.0 on the 24-bit layouts.
  virtual std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a);
  /// GetPixelRGBA's channels through RGBToYCbCr, in the units of that, not clamped; `a` as read. An
  /// unknown mode leaves the three as they were. YCbCr surfaces give what they store.
  virtual std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a);
  /// GetPixelYCbCr's channels and alpha times 255, truncated, the low eight bits of each: 1.0 reads
  /// as 255, and what lies outside 0.0 to 1.0 wraps. An unknown mode reads as 0.
  virtual std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                                       unsigned char& cr, unsigned char& a);
  /// The same times 1024, the low 32 bits of each: 1.0 reads as 1024, one more than ten bits hold,
  /// and negative chroma as a number near 2^32.
  virtual std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                        std::uint32_t& cr, std::uint32_t& a);
  /// GetPixelRGBA's channels as a hue in degrees, 0.0 up to 360.0, saturation and value, 0.0 to
  /// 1.0; `a` as read. A grey has a hue of 0.0 here and of -1.0 in the RGB classes. YCbCr surfaces
  /// refuse: 0xFFFFFFFF, and nothing is written.
  virtual std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a);
  /// The luma of a pixel by weights that are the system's own, chosen by the mode: on 8-bit RGB 0.0
  /// to 255/256, with ptBGR24 read as ptRGB24. The other classes have scales of their own.
  virtual double GetLuma(int x, int y);

  /// Does nothing here and in every class: the outputs stay, 0 comes back.
  virtual std::uint32_t GetColorYCbCr(double& y, double& cb, double& cr, double& a,
                                      bool foreground);
  /// Sets the chosen colour of a YCbCr surface, channels nominally 0.0 to 1.0 with chroma around
  /// 0.5, not clamped; an RGB surface ignores it. Returns 0.
  virtual std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground);
  /// The same in 10-bit codes, each over 1024; the 4:2:2 surfaces take the codes as they are.
  virtual std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                        std::uint32_t a, bool foreground);
  /// The chosen colour as it is packed in the fields of this class, each byte over 255; `a` is 1.0
  /// on the 24-bit layouts. A class that keeps its colours elsewhere is not asked. Returns 0.
  virtual std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool foreground);
  /// Packs the chosen colour for the layout: each channel times 255, truncated, wrapping as a byte.
  /// Returns 0.
  virtual std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground);
  /// The pixel that lies `fraction` (0.5: half) of the width, or height, into the canvas, truncated
  /// towards zero.
  virtual int PercentX(double fraction);
  virtual int PercentY(double fraction);
  /// Chooses the matrix of the conversions from here on. Any value is kept; colours that are set
  /// already stay as they were packed, and SetCanvas of a YCbCr surface chooses again by the width.
  /// Returns 0.
  virtual std::uint32_t SetYCbCrMode(cmYCbCr mode);
  /// Gives the value that is kept. Returns 0.
  virtual std::uint32_t GetYCbCrMode(cmYCbCr& mode);

  /// Takes the recursive lock. With a `timeout` of 0 or 0xFFFFFFFF waits without limit and
  /// returns 0; else tries so many times, a millisecond apart, and returns 128 when the lock was
  /// taken and 0 when not.
  std::uint32_t Lock(std::uint32_t timeout);
  /// 1 when the lock was taken, 0 when another thread holds it.
  std::uint32_t TryLock();
  /// Leaves the lock once; only the thread that holds it may. Returns 0.
  std::uint32_t Unlock();
  /// Count references; both return the new count. Release stops at 0 and never deletes.
  std::int32_t AddRef();
  std::int32_t Release();
  [[nodiscard]] std::int32_t Refs() const;
  /// Signals the change event.
  void SetChangeEvent();
  /// Waits for it at most `timeout` milliseconds: 0 signalled, 258 timed out.
  std::uint32_t WaitForChangeEvent(std::uint32_t timeout);
  /// Stores the caller's change stamp, 0xFFFFFFFF only reads it; the stamp.
  std::uint32_t LastChange(std::uint32_t value);

  [[nodiscard]] std::uint32_t Width() const { return width; }
  [[nodiscard]] std::uint32_t Height() const { return height; }
  /// Bytes from one row of the canvas to the next.
  [[nodiscard]] std::uint32_t Pitch() const { return pitch; }
  [[nodiscard]] char* GetCanvas() const { return canvas; }
  /// Pitch times height, wrapping at 32 bits.
  [[nodiscard]] std::uint32_t BufferLength() const { return pitch * height; }
  [[nodiscard]] pixelType PixelType() const { return pixelKind; }
  /// Each channel over 255, then SetColorYCbCr, and what that returns.
  std::uint32_t SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr, unsigned char a,
                               bool foreground);
  /// Takes colours and transparency from `other`; the additive switch, mode and geometry stay.
  void CopyNKPixel(NKPixel& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  pixelType pixelKind = ptRGBA32;
  cmYCbCr ycbcrMode = mode601Studio;
  std::uint32_t width = 0;   // pixels
  std::uint32_t height = 0;  // rows
  std::uint32_t pitch = 0;   // bytes
  bool flipped = false;      // SetCanvas got a negative height; nothing reads it
  std::uint8_t foregroundPixel[4] = {0xFF, 0xFF, 0xFF, 0xFF};
  double foregroundAlpha = 0.0;
  std::uint8_t backgroundPixel[4] = {0, 0, 0, 0};
  double backgroundAlpha = 0.0;
  bool transparencyOn = false;
  bool alphaAdditive = false;
  std::uint32_t lastChange = 0;
  bool antialias = false;
  bool spareFlag = false;
  std::int32_t refs = 1;
  nkHandle changeEvent = nullptr;
  nkCriticalSection lock;
  char* canvas = nullptr;
};
