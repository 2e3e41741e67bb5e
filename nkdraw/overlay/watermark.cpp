// SPDX-License-Identifier: BSD-2-Clause
//
// The watermark: read and converted once, blended into every frame.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/frame_memory.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/platform/module.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/surface/v210_group.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

// The layouts that a watermark is converted for, by the frames' FOURCC.
constexpr std::uint32_t kRgb32 = 0;
constexpr std::uint32_t kYCbCr8 = 0x32767579;   // "yuv2"
constexpr std::uint32_t kYCbCr10 = 0x76323130;  // "012v"

// Up to this alpha a pixel or pair is left alone. Deliberate: the limits differ by layout, and
// callers rely on the pictures.
constexpr std::uint32_t kInvisibleRgb = 16, kInvisible8 = 8, kInvisible10 = 10;

/// A pair of pixels: Y, Cb, Y, Cr, alpha.
constexpr std::size_t kGroup = 5;

// --- reading ---------------------------------------------------------------------------------

/// The reader's module, while a picture is read.
class Reader {
 public:
  Reader() : module_(nkOSLoadLibrary(kMediaReader, 2)) {
    find(open, "ciOpen");
    find(info, "ciGetFileInfo");
    find(read, "ciReadFrameUnc");
    find(close, "ciClose");
  }
  [[nodiscard]] bool complete() const {
    return open != nullptr && info != nullptr && read != nullptr && close != nullptr;
  }
  void unload() const { nkOSFreeLibrary(module_); }

  ciOpenRoutine open = nullptr;
  ciGetFileInfoRoutine info = nullptr;
  ciReadFrameUncRoutine read = nullptr;
  ciCloseRoutine close = nullptr;

 private:
  template <class Routine>
  void find(Routine& routine, const char* name) const {
    routine = reinterpret_cast<Routine>(nkOSGetProcAddress(module_, name));
  }
  nkHandle module_;
};

nkHandle openPicture(const Reader& reader, const char* path) {
  constexpr std::uint32_t kRead = 0x80000000, kShareReading = 1, kOpenExisting = 3;
  constexpr std::uint32_t kAttributes = 0x20000;
  return reader.complete()
             ? reader.open(path, kRead, kShareReading, 0, kOpenExisting, 0, kAttributes)
             : nullptr;
}

/// The decoded frame.
class Picture {
 public:
  Picture(const Reader& reader, nkHandle file) {
    const std::uint32_t bytes = reader.read(&file, 0, 1, 1, 1, nullptr, 0, 0);
    if (QFrameMem(kFrameAllocate, bytes, kFrameFlags, &frame_) != 0)
      frame_ = nullptr;
    if (frame_ == nullptr)
      return;
    nkOSZeroMemory(frame_->frameBuffer, bytes);  // what the reader leaves out is not seen
    reader.read(&file, 0, 1, 1, 1, frame_, 0, 0);
    size_ = bytes;
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() {
    if (frame_ != nullptr)
      QFrameMem(kFrameFree, 0, 0, &frame_);
  }
  /// Whether there was memory for it.
  [[nodiscard]] bool exists() const { return frame_ != nullptr; }
  /// Whether there is a picture of this size in it.
  [[nodiscard]] bool holds(std::int64_t width, std::int64_t height) const {
    return frame_ != nullptr && width > 0 && height > 0 && width * height <= size_ / 4;
  }
  [[nodiscard]] char* pixels() const { return frame_->frameBuffer; }

 private:
  QFRAME* frame_ = nullptr;
  std::uint32_t size_ = 0;
};

/// A surface on the decoded frame's pixels.
class PictureSurface {
 public:
  PictureSurface() = default;
  PictureSurface(const PictureSurface&) = delete;
  PictureSurface& operator=(const PictureSurface&) = delete;
  ~PictureSurface() {
    if (surface_ != nullptr)
      ReleaseDraw(surface_);
  }
  void bind(char* pixels, int width, int height) {
    GetDraw(ptBGRA32, width, height, width * 4, pixels, surface_);
  }
  /// Null without memory.
  [[nodiscard]] NKDraw* get() const { return surface_; }

 private:
  NKDraw* surface_ = nullptr;
};

// --- conversion ------------------------------------------------------------------------------

/// Room for `each` of every pixel, which is more than some conversions fill; null without memory.
template <class Sample>
Sample* roomFor(std::uint64_t pixels, std::size_t each) {
  const std::uint64_t bytes = pixels * each * sizeof(Sample);
  return bytes > std::numeric_limits<std::uint32_t>::max()
             ? nullptr
             : static_cast<Sample*>(NKAlloc(static_cast<std::uint32_t>(bytes)));
}

/// Reads a pair from its even pixel only.
void convertTo8(NKDraw& picture, int width, int height, std::uint8_t* group) {
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < width / 2; ++i, group += kGroup) {
      picture.GetPixelYCbCr8(2 * i, y, group[0], group[1], group[3], group[4]);
      group[2] = group[0];
    }
  }
}

/// A pair takes chroma and alpha from its odd pixel. If the width is odd, the last pixel of a row
/// pairs with the first pixel of the next row, and in the last row with itself.
void convertTo10(NKDraw& picture, int width, int height, std::uint32_t* group) {
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; x += 2, group += kGroup) {
      const bool single = x + 1 == width, last = y + 1 == height;
      picture.GetPixelYCbCr10(x, y, group[0], group[1], group[3], group[4]);
      const int oddX = !single ? x + 1 : last ? x : 0;
      picture.GetPixelYCbCr10(oddX, single && !last ? y + 1 : y, group[2], group[1], group[3],
                              group[4]);
    }
  }
}

// --- blending --------------------------------------------------------------------------------

std::uint8_t blend(std::uint32_t source, std::uint32_t under, std::uint32_t alpha) {
  return static_cast<std::uint8_t>((source * alpha + under * (255 - alpha)) / 255);
}

/// Where the picture lies in the frame. Frames have packed rows.
struct Placement {
  std::int64_t x, y;
  std::int64_t frameWidth, frameHeight;
  std::int64_t width, height;  ///< of the picture

  /// Calls `row(picture row, frame row)` for the rows above the frame's lower edge.
  template <class Row>
  void forRows(Row row) const {
    for (std::int64_t line = 0; line < height && y + line < frameHeight; ++line)
      row(line, y + line);
  }
  /// Pixels from the frame's first one to the picture's place in this row.
  [[nodiscard]] std::int64_t start(std::int64_t frameRow) const {
    return frameRow * frameWidth + x;
  }
};

// Deliberate: callers rely on the pictures. A watermark that begins left of the frame begins in the
// line above; only the first and the last byte of the frame limit it there.

void blendRgb32(const Placement& place, const std::uint8_t* picture, std::uint8_t* frame) {
  const std::int64_t end = std::min(place.width, place.frameWidth - place.x);
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    const std::int64_t start = place.start(frameRow);
    for (std::int64_t x = std::max<std::int64_t>(0, -start); x < end; ++x) {
      const std::uint8_t* const source = picture + (row * place.width + x) * 4;
      std::uint8_t* const target = frame + (start + x) * 4;
      const std::uint32_t alpha = source[3];
      if (alpha <= kInvisibleRgb)
        continue;
      for (int channel = 0; channel < 3; ++channel)
        target[channel] = blend(source[channel], target[channel], alpha);
      target[3] = source[3];
    }
  });
}

/// Deliberate: callers rely on the pictures. The right edge is counted in pairs as if they were
/// pixels, so a picture that crosses it continues in the next line.
void blendYCbCr8(const Placement& place, const std::uint8_t* picture, std::uint8_t* frame) {
  constexpr std::array<std::int64_t, 4> kOrder = {1, 0, 3, 2};  // of the group, in the frame
  constexpr std::int64_t kPairBytes = kOrder.size();
  const std::int64_t pairs = place.width / 2, end = std::min(pairs, place.frameWidth - place.x);
  const std::int64_t frameBytes = place.frameWidth * place.frameHeight * 2;
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    const std::int64_t start = place.start(frameRow);
    for (std::int64_t pair = std::max<std::int64_t>(0, -start / 2); pair < end; ++pair) {
      const std::uint8_t* const group =
          picture + (row * pairs + pair) * static_cast<std::int64_t>(kGroup);
      const std::uint32_t alpha = group[4];
      if (alpha <= kInvisible8)
        continue;
      const std::int64_t first = start * 2 + pair * kPairBytes;
      const std::int64_t stop = std::min(kPairBytes, frameBytes - first);
      for (std::int64_t i = std::max<std::int64_t>(0, -first); i < stop; ++i)
        frame[first + i] =
            blend(group[kOrder[static_cast<std::size_t>(i)]], frame[first + i], alpha);
    }
  });
}

/// Plots the same as CDrawYCbCr10 does pixel by pixel, but a group at a time. The surface ignores
/// negative positions.
void plotYCbCr10(const Placement& place, const std::uint32_t* picture, NKDraw& frame) {
  constexpr std::int64_t kPixels = nkdraw::v210::kGroupPixels;
  const std::int64_t groups = (place.width + 1) / 2;
  place.forRows([&](std::int64_t row, std::int64_t frameRow) {
    if (frameRow < 0)
      return;
    auto* const frameGroups = static_cast<char*>(frame.GetPixel(0, static_cast<int>(frameRow)));
    const std::int64_t end = std::min(place.width, place.frameWidth - place.x);
    for (std::int64_t x = std::max<std::int64_t>(0, -place.x); x < end;) {
      const std::int64_t frameGroup = (place.x + x) / kPixels;
      nkdraw::v210::GroupEditor editor(frameGroups + frameGroup * nkdraw::v210::kGroupBytes);
      const std::int64_t groupEnd = std::min(end, (frameGroup + 1) * kPixels - place.x);
      for (; x < groupEnd; ++x) {
        const std::uint32_t* const group =
            picture + (row * groups + x / 2) * static_cast<std::int64_t>(kGroup);
        if (group[4] > kInvisible10)
          editor.put(static_cast<std::size_t>((place.x + x) % kPixels),
                     group[x % 2 == 0 ? 0 : 2] + (group[1] << 10) + (group[3] << 20));
      }
      editor.store();
    }
  });
}

}  // namespace

std::uint32_t CNkOverlay::LoadWatermark() {
  if (watermarkPath == nullptr || *watermarkPath == '\0')
    return 0;
  const Reader reader;
  nkHandle file = openPicture(reader, watermarkPath);
  if (file == nullptr) {  // the module stays loaded
    const auto path = static_cast<int>(reinterpret_cast<std::intptr_t>(watermarkPath));
    ErrOut("Error: Unable to load watermark file <%d> ", path);
    return 0;
  }
  HZWVIDEO info{};
  info.biSize = sizeof info;
  reader.info(&file, 1, 0, &info, 0, 0);
  watermarkWidth = static_cast<std::uint32_t>(info.biWidth);
  watermarkHeight = static_cast<std::uint32_t>(info.biHeight);
  watermarkLayout = frameLayout;
  {
    PictureSurface surface;  // outlives the frame that it is bound to
    const Picture picture(reader, file);
    if (picture.holds(info.biWidth, info.biHeight)) {
      surface.bind(picture.pixels(), info.biWidth, info.biHeight);
      convertWatermark(surface.get(), picture.pixels());
    }
    if (picture.exists() && (watermarkLayout == kYCbCr8 || watermarkLayout == kYCbCr10))
      WatermarkX &= ~1;
  }
  reader.close(&file);
  reader.unload();
  return 0;
}

void CNkOverlay::convertWatermark(NKDraw* picture, const char* pixels) {
  const auto width = static_cast<int>(watermarkWidth), height = static_cast<int>(watermarkHeight);
  const std::uint64_t count = std::uint64_t{watermarkWidth} * watermarkHeight;
  if (picture == nullptr && watermarkLayout != kRgb32)
    return;
  const auto forget = [this] {
    watermarkRGBA = nullptr;
    watermark8 = nullptr;
    watermark10 = nullptr;
  };
  // Only a picture that there is memory for takes the place of the one before.
  const auto take = [&]<class Part>(nkdraw::SharedPointer<Part, nkdraw::freeSamples>& buffer,
                                    std::size_t parts, auto fill) {
    Part* const made = roomFor<Part>(count, parts);
    if (made == nullptr)
      return;
    fill(made);
    forget();
    watermarkRoom = count;
    buffer = made;
  };
  if (watermarkLayout == kRgb32)
    take(watermarkRGBA, sizeof(std::uint32_t), [&](std::uint8_t* made) {
      CopyMemoryFast(made, pixels, static_cast<std::uint32_t>(count * 4));
    });
  else if (watermarkLayout == kYCbCr8)
    take(watermark8, kGroup,
         [&](std::uint8_t* made) { convertTo8(*picture, width, height, made); });
  else if (watermarkLayout == kYCbCr10)
    take(watermark10, kGroup,
         [&](std::uint32_t* made) { convertTo10(*picture, width, height, made); });
  else
    forget();
}

std::uint32_t CNkOverlay::ApplyWatermark(QFRAME* frame) {
  // If loading failed, the previous picture stays, and its size may differ from the new one.
  const std::uint64_t rows =
      watermarkRoom == 0 || watermarkWidth == 0
          ? watermarkHeight
          : std::min<std::uint64_t>(watermarkHeight, watermarkRoom / watermarkWidth);
  const Placement place{WatermarkX,     WatermarkY,     video.biWidth,
                        video.biHeight, watermarkWidth, static_cast<std::int64_t>(rows)};
  auto* const bytes = reinterpret_cast<std::uint8_t*>(frame->frameBuffer);
  if (watermarkLayout == kRgb32) {
    if (watermarkRGBA != nullptr)
      blendRgb32(place, watermarkRGBA, bytes);
  } else if (watermarkLayout == kYCbCr8) {
    if (watermark8 != nullptr)
      blendYCbCr8(place, watermark8, bytes);
  } else if (watermarkLayout == kYCbCr10) {
    if (watermark10 == nullptr)
      return 0;
    NKDraw* target = nullptr;
    GetDraw(ptV210, video.biWidth, video.biHeight, 0, frame->frameBuffer, target);
    if (target == nullptr)
      return 0;
    plotYCbCr10(place, watermark10, *target);
    ReleaseDraw(target);
  } else {
    ErrOut("Error: No colourspace for watermark ");
  }
  return 0;
}
