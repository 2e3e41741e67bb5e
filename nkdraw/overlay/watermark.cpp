// SPDX-License-Identifier: BSD-2-Clause
//
// The watermark is read and converted once.
#include <nkdraw/overlay/overlay.h>

#include "watermark_rows.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/frame_memory.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/platform/module.h>
#include <nkdraw/surface/factory.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

using nkdraw::watermark::kPairParts;
using nkdraw::watermark::kRgb32;
using nkdraw::watermark::kYCbCr10;
using nkdraw::watermark::kYCbCr8;

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
    for (int i = 0; i < width / 2; ++i, group += kPairParts) {
      picture.GetPixelYCbCr8(2 * i, y, group[0], group[1], group[3], group[4]);
      group[2] = group[0];
    }
  }
}

/// A pair takes chroma and alpha from its odd pixel. If the width is odd, the last pixel of a row
/// pairs with the first pixel of the next row, and in the last row with itself.
void convertTo10(NKDraw& picture, int width, int height, std::uint32_t* group) {
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; x += 2, group += kPairParts) {
      const bool single = x + 1 == width, last = y + 1 == height;
      picture.GetPixelYCbCr10(x, y, group[0], group[1], group[3], group[4]);
      const int oddX = !single ? x + 1 : last ? x : 0;
      picture.GetPixelYCbCr10(oddX, single && !last ? y + 1 : y, group[2], group[1], group[3],
                              group[4]);
    }
  }
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
    take(watermark8, kPairParts,
         [&](std::uint8_t* made) { convertTo8(*picture, width, height, made); });
  else if (watermarkLayout == kYCbCr10)
    take(watermark10, kPairParts,
         [&](std::uint32_t* made) { convertTo10(*picture, width, height, made); });
  else
    forget();
}
