// SPDX-License-Identifier: BSD-2-Clause
#include "media/canvas_stage.h"

#include "media/failure.h"
#include "media/v210_rows.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>

namespace nkdraw::media {
namespace {

using Rows = std::array<std::uint8_t*, 3>;

/// For each byte of a group of `to`: the byte of a group of `from` that holds the same sample, or
/// one past that group if there is none.
template <pixelType from, pixelType to>
constexpr auto kOrder = [] {
  constexpr const LayoutFacts &source = kFactsOf<from>, &target = kFactsOf<to>;
  static_assert(source.depth == 8 && target.depth == 8);
  static_assert(source.groupPixels == target.groupPixels);
  std::array<std::size_t, target.groupBytes> order{};
  for (std::size_t i = 0; i < order.size(); ++i) {
    const Channel channel = target.samples[i];
    const auto* const first = target.samples.data();
    order[i] =
        sampleOf(source, channel, static_cast<std::size_t>(std::count(first, first + i, channel)));
  }
  return order;
}();

constexpr std::uint8_t kSignBit = 0x80;

constexpr bool isChroma(Channel channel) {
  return channel == Channel::kCb || channel == Channel::kCr;
}

/// Writes a row of `from` in the byte order of `to`. If `from` has no alpha, alpha becomes opaque.
template <pixelType from, pixelType to, std::uint8_t chromaSign>
void reorder(const std::uint8_t* source, std::uint8_t* target, int width) {
  constexpr const LayoutFacts& facts = kFactsOf<to>;
  constexpr std::size_t sourceBytes = kFactsOf<from>.groupBytes;
  for (; width > 0; width -= facts.groupPixels) {
    for (std::size_t i = 0; i < facts.groupBytes; ++i) {
      const std::size_t place = kOrder<from, to>[i];
      const std::uint8_t sign = isChroma(facts.samples[i]) ? chromaSign : std::uint8_t{0};
      target[i] = place < sourceBytes ? source[place] ^ sign : std::uint8_t{0xFF};
    }
    source += sourceBytes;
    target += facts.groupBytes;
  }
}

template <pixelType from, pixelType to = from, std::uint8_t chromaSign = 0>
void loadRow(const Rows& frame, std::uint8_t* canvas, int width) {
  if constexpr (from == to)
    std::memcpy(canvas, frame[0], rowBytes(from, width));
  else
    reorder<from, to, chromaSign>(frame[0], canvas, width);
}
template <pixelType from, pixelType to = from, std::uint8_t chromaSign = 0>
void storeRow(const Rows& frame, std::uint8_t* canvas, int width) {
  if constexpr (from == to)
    std::memcpy(frame[0], canvas, rowBytes(from, width));
  else
    reorder<to, from, chromaSign>(canvas, frame[0], width);
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

// The first matching row applies.
const CanvasStage::Transfer CanvasStage::kTransfers[] = {
    {ptV210, Storage::kPacked, ptV210, loadRow<ptV210>, storeRow<ptV210>},
    {ptV210, Storage::kPlanes10, ptV210, loadPlanes10, storePlanes10},
    {ptUYVY, Storage::kPacked, ptUYVY, loadRow<ptUYVY>, storeRow<ptUYVY>},
    {ptYUYV, Storage::kPacked, ptYUYV, loadRow<ptYUYV>, storeRow<ptYUYV>},
    {ptYUYV, Storage::kPacked, ptUYVY, loadRow<ptYUYV, ptUYVY>, storeRow<ptYUYV, ptUYVY>},
    {ptYUYV, Storage::kSignedChroma, ptUYVY, loadRow<ptYUYV, ptUYVY, kSignBit>,
     storeRow<ptYUYV, ptUYVY, kSignBit>},
    {ptYVYU, Storage::kPacked, ptYVYU, loadRow<ptYVYU>, storeRow<ptYVYU>},
    {ptYVYU, Storage::kPacked, ptUYVY, loadRow<ptYVYU, ptUYVY>, storeRow<ptYVYU, ptUYVY>},
    {ptRGB24, Storage::kPacked, ptRGBA32, loadRow<ptRGB24, ptRGBA32>, storeRow<ptRGB24, ptRGBA32>},
    {ptBGR24, Storage::kPacked, ptBGRA32, loadRow<ptBGR24, ptBGRA32>, storeRow<ptBGR24, ptBGRA32>},
    {ptRGBA32, Storage::kPacked, ptRGBA32, loadRow<ptRGBA32>, storeRow<ptRGBA32>},
    {ptBGRA32, Storage::kPacked, ptBGRA32, loadRow<ptBGRA32>, storeRow<ptBGRA32>},
    {ptARGB32, Storage::kPacked, ptARGB32, loadRow<ptARGB32>, storeRow<ptARGB32>},
    {ptABGR32, Storage::kPacked, ptABGR32, loadRow<ptABGR32>, storeRow<ptABGR32>},
    {ptRGB24, Storage::kPacked, ptBGRA32, loadRow<ptRGB24, ptBGRA32>, storeRow<ptRGB24, ptBGRA32>},
    {ptRGBA32, Storage::kPacked, ptBGRA32, loadRow<ptRGBA32, ptBGRA32>,
     storeRow<ptRGBA32, ptBGRA32>},
    {ptARGB32, Storage::kPacked, ptBGRA32, loadRow<ptARGB32, ptBGRA32>,
     storeRow<ptARGB32, ptBGRA32>},
    {ptABGR32, Storage::kPacked, ptBGRA32, loadRow<ptABGR32, ptBGRA32>,
     storeRow<ptABGR32, ptBGRA32>},
};

const CanvasStage::Transfer& CanvasStage::transferFor(pixelType type, Storage storage,
                                                      CanvasUse use) {
  const auto* const found = std::ranges::find_if(kTransfers, [&](const Transfer& transfer) {
    return transfer.from == type && transfer.storage == storage && serves(transfer.to, use);
  });
  if (found == std::end(kTransfers))
    throw Failure(ExitCode::kProcessing, "no canvas for this layout", std::to_string(type),
                  "report this");
  return *found;
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
