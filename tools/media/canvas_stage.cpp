// SPDX-License-Identifier: BSD-2-Clause
#include "media/canvas_stage.h"

#include "media/v210_rows.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace nkdraw::media {
namespace {

using Rows = std::array<std::uint8_t*, 3>;

template <pixelType type>
void loadSame(const Rows& frame, std::uint8_t* canvas, int width) {
  std::memcpy(canvas, frame[0], rowBytes(type, width));
}
template <pixelType type>
void storeSame(const Rows& frame, std::uint8_t* canvas, int width) {
  std::memcpy(frame[0], canvas, rowBytes(type, width));
}

void widen24(const Rows& frame, std::uint8_t* canvas, int width) {
  const std::uint8_t* from = frame[0];
  for (; width > 0; --width, from += 3, canvas += 4) {
    std::memcpy(canvas, from, 3);
    canvas[3] = 0xFF;
  }
}
void narrow32(const Rows& frame, std::uint8_t* canvas, int width) {
  std::uint8_t* to = frame[0];
  for (; width > 0; --width, to += 3, canvas += 4)
    std::memcpy(to, canvas, 3);
}

/// Takes byte order[i] of a pixel to place i, between layouts of that many bytes.
template <std::size_t bytes, std::array<std::size_t, bytes> order>
void loadBlueFirst(const Rows& frame, std::uint8_t* canvas, int width) {
  const std::uint8_t* from = frame[0];
  for (; width > 0; --width, from += bytes, canvas += 4) {
    canvas[3] = 0xFF;
    for (std::size_t i = 0; i < bytes; ++i)
      canvas[i] = from[order[i]];
  }
}
template <std::size_t bytes, std::array<std::size_t, bytes> order>
void storeBlueFirst(const Rows& frame, std::uint8_t* canvas, int width) {
  std::uint8_t* to = frame[0];
  for (; width > 0; --width, to += bytes, canvas += 4) {
    for (std::size_t i = 0; i < bytes; ++i)
      to[order[i]] = canvas[i];
  }
}
// Where blue, green, red and alpha lie.
constexpr std::array<std::size_t, 3> kRGB = {2, 1, 0};
constexpr std::array<std::size_t, 4> kRGBA = {2, 1, 0, 3}, kARGB = {3, 2, 1, 0},
                                     kABGR = {1, 2, 3, 0};

// The canvas is UYVY, Cb Y Cr Y.
constexpr std::uint8_t kSignBit = 0x80;

template <std::uint8_t chromaSign = 0>
void loadYUY2(const Rows& frame, std::uint8_t* canvas, int width) {
  const std::uint8_t* from = frame[0];
  for (; width > 0; width -= 2, from += 4, canvas += 4) {
    canvas[0] = from[1] ^ chromaSign;
    canvas[1] = from[0];
    canvas[2] = from[3] ^ chromaSign;
    canvas[3] = from[2];
  }
}
template <std::uint8_t chromaSign = 0>
void storeYUY2(const Rows& frame, std::uint8_t* canvas, int width) {
  std::uint8_t* to = frame[0];
  for (; width > 0; width -= 2, canvas += 4, to += 4) {
    to[0] = canvas[1];
    to[1] = canvas[0] ^ chromaSign;
    to[2] = canvas[3];
    to[3] = canvas[2] ^ chromaSign;
  }
}
void loadYVYU(const Rows& frame, std::uint8_t* canvas, int width) {
  const std::uint8_t* from = frame[0];
  for (; width > 0; width -= 2, from += 4, canvas += 4) {
    canvas[0] = from[3];
    canvas[1] = from[0];
    canvas[2] = from[1];
    canvas[3] = from[2];
  }
}
void storeYVYU(const Rows& frame, std::uint8_t* canvas, int width) {
  std::uint8_t* to = frame[0];
  for (; width > 0; width -= 2, canvas += 4, to += 4) {
    to[0] = canvas[1];
    to[1] = canvas[2];
    to[2] = canvas[3];
    to[3] = canvas[0];
  }
}

std::uint16_t* words(std::uint8_t* plane) {
  return reinterpret_cast<std::uint16_t*>(plane);
}
void loadPlanes10(const Rows& frame, std::uint8_t* canvas, int width) {
  packV210Row(words(frame[0]), words(frame[1]), words(frame[2]), canvas, width);
}
void storePlanes10(const Rows& frame, std::uint8_t* canvas, int width) {
  unpackV210Row(canvas, words(frame[0]), words(frame[1]), words(frame[2]), width);
}

bool serves(pixelType canvas, CanvasUse use) {
  const bool swapsLumas = canvas == ptYUYV || canvas == ptYVYU;
  const bool blends = canvas == ptV210 || canvas == ptUYVY || canvas == ptBGRA32;
  return use == CanvasUse::kWholePairs || (!swapsLumas && (blends || use != CanvasUse::kWatermark));
}

}  // namespace

// The first row that fits is taken.
const CanvasStage::Transfer CanvasStage::kTransfers[] = {
    {ptV210, Storage::kPacked, ptV210, loadSame<ptV210>, storeSame<ptV210>},
    {ptV210, Storage::kPlanes10, ptV210, loadPlanes10, storePlanes10},
    {ptUYVY, Storage::kPacked, ptUYVY, loadSame<ptUYVY>, storeSame<ptUYVY>},
    {ptYUYV, Storage::kPacked, ptYUYV, loadSame<ptYUYV>, storeSame<ptYUYV>},
    {ptYUYV, Storage::kPacked, ptUYVY, loadYUY2<>, storeYUY2<>},
    {ptYUYV, Storage::kSignedChroma, ptUYVY, loadYUY2<kSignBit>, storeYUY2<kSignBit>},
    {ptYVYU, Storage::kPacked, ptYVYU, loadSame<ptYVYU>, storeSame<ptYVYU>},
    {ptYVYU, Storage::kPacked, ptUYVY, loadYVYU, storeYVYU},
    {ptRGB24, Storage::kPacked, ptRGBA32, widen24, narrow32},
    {ptBGR24, Storage::kPacked, ptBGRA32, widen24, narrow32},
    {ptRGBA32, Storage::kPacked, ptRGBA32, loadSame<ptRGBA32>, storeSame<ptRGBA32>},
    {ptBGRA32, Storage::kPacked, ptBGRA32, loadSame<ptBGRA32>, storeSame<ptBGRA32>},
    {ptARGB32, Storage::kPacked, ptARGB32, loadSame<ptARGB32>, storeSame<ptARGB32>},
    {ptABGR32, Storage::kPacked, ptABGR32, loadSame<ptABGR32>, storeSame<ptABGR32>},
    {ptRGB24, Storage::kPacked, ptBGRA32, loadBlueFirst<3, kRGB>, storeBlueFirst<3, kRGB>},
    {ptRGBA32, Storage::kPacked, ptBGRA32, loadBlueFirst<4, kRGBA>, storeBlueFirst<4, kRGBA>},
    {ptARGB32, Storage::kPacked, ptBGRA32, loadBlueFirst<4, kARGB>, storeBlueFirst<4, kARGB>},
    {ptABGR32, Storage::kPacked, ptBGRA32, loadBlueFirst<4, kABGR>, storeBlueFirst<4, kABGR>},
};

const CanvasStage::Transfer& CanvasStage::transferFor(pixelType type, Storage storage,
                                                      CanvasUse use) {
  return *std::ranges::find_if(kTransfers, [&](const Transfer& transfer) {
    return transfer.from == type && transfer.storage == storage && serves(transfer.to, use);
  });
}

CanvasStage::CanvasStage(const Layout& layout, Storage storage, int width, int height,
                         std::vector<RowSpan> rows, CanvasUse use)
    : transfer_(&transferFor(layout.type, storage, use)),
      canvasLayout_(transfer_->to == layout.type ? &layout : &layoutOf(transfer_->to)),
      width_(width),
      height_(height),
      canvasPitch_(static_cast<std::ptrdiff_t>(packedPitch(transfer_->to, width))),
      rows_(std::move(rows)) {}

bool CanvasStage::isCanvas(const Picture& picture) const {
  return transfer_->storage == Storage::kPacked && transfer_->from == transfer_->to &&
         picture.pitches[0] == canvasPitch_;
}

void CanvasStage::load(const Picture& picture) {
  if (buffer_ == nullptr)
    buffer_ = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(canvasPitch_ * height_));
  move(transfer_->load, picture);
}

void CanvasStage::store(const Picture& picture) const {
  move(transfer_->store, picture);
}

void CanvasStage::move(MoveRow moveRow, const Picture& picture) const {
  for (const RowSpan span : rows_) {
    for (int y = span.first; y < span.end; ++y)
      moveRow(rowOf(picture, y), buffer_.get() + canvasPitch_ * y, width_);
  }
}

}  // namespace nkdraw::media
