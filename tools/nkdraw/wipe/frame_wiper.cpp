// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/frame_wiper.h"

#include "media/failure.h"
#include "media/v210_rows.h"

#include <nkdraw/compositor/complete.h>
#include <nkdraw/compositor/exact.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace nkdraw::tool {
namespace {

using Rows = std::array<std::uint8_t*, 3>;
using MoveRow = void (*)(const Rows& frame, std::uint8_t* canvas, pixelType type, int width);

// Rows are read in whole groups, up to eight bytes past their end.
constexpr std::size_t kSlack = 64;
constexpr std::uint8_t kSignBit = 0x80;

void loadSame(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  std::memcpy(canvas, frame[0], rowBytes(type, width));
}
void storeSame(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  std::memcpy(frame[0], canvas, rowBytes(type, width));
}

void swapEachTwo(const std::uint8_t* from, std::uint8_t* to, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; i += 2) {
    const std::uint8_t first = from[i];
    to[i] = from[i + 1];
    to[i + 1] = first;
  }
}
void loadSwapped(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  swapEachTwo(frame[0], canvas, rowBytes(type, width));
}
void storeSwapped(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  swapEachTwo(canvas, frame[0], rowBytes(type, width));
}

void changeChromaSign(const std::uint8_t* from, std::uint8_t* to, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i)
    to[i] = i % 2 == 0 ? from[i] : from[i] ^ kSignBit;
}
void loadSigned(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  changeChromaSign(frame[0], canvas, rowBytes(type, width));
}
void storeSigned(const Rows& frame, std::uint8_t* canvas, pixelType type, int width) {
  changeChromaSign(canvas, frame[0], rowBytes(type, width));
}

std::uint16_t* words(std::uint8_t* plane) {
  return reinterpret_cast<std::uint16_t*>(plane);
}
void loadPlanes10(const Rows& frame, std::uint8_t* canvas, pixelType /*type*/, int width) {
  packV210Row(words(frame[0]), words(frame[1]), words(frame[2]), canvas, width);
}
void storePlanes10(const Rows& frame, std::uint8_t* canvas, pixelType /*type*/, int width) {
  unpackV210Row(canvas, words(frame[0]), words(frame[1]), words(frame[2]), width);
}

}  // namespace

/// How frames of a layout are converted for the library and back. ptNone stands for all other
/// layouts.
struct FrameWiper::Route {
  pixelType type;
  Storage storage;
  MoveRow load, store;
  bool isClassic = false;  // for classic wipes only
};

const FrameWiper::Route FrameWiper::kRoutes[] = {
    {ptV210, Storage::kPacked, loadSame, storeSame},
    {ptV210, Storage::kPlanes10, loadPlanes10, storePlanes10},
    {ptYUYV, Storage::kPacked, loadSame, storeSame},
    {ptYUYV, Storage::kSignedChroma, loadSigned, storeSigned},
    {ptYVYU, Storage::kPacked, loadSame, storeSame},
    {ptUYVY, Storage::kPacked, loadSwapped, storeSwapped, true},
    {ptNone, Storage::kPacked, loadSame, storeSame},
};

const FrameWiper::Route& FrameWiper::routeFor(pixelType type, Storage storage, WipeWay way) {
  return *std::ranges::find_if(kRoutes, [&](const Route& route) {
    return (route.type == type || route.type == ptNone) && route.storage == storage &&
           (!route.isClassic || way == WipeWay::kClassic);
  });
}

FrameWiper::FrameWiper(const Layout& layout, Storage storage, int width, int height,
                       std::uint32_t word, WipeWay way)
    : route_(routeFor(layout.type, storage, way)),
      type_(layout.type),
      width_(width),
      height_(height),
      pitch_(static_cast<std::ptrdiff_t>(packedPitch(layout.type, width))),
      word_(word),
      way_(way) {}

bool FrameWiper::isCanvas(const Picture& picture) const {
  return route_.load == loadSame && picture.pitches[0] == pitch_;
}

const std::uint8_t* FrameWiper::load(const Picture& picture,
                                     std::vector<std::uint8_t>& canvas) const {
  if (isCanvas(picture))
    return picture.planes[0];
  canvas.resize(static_cast<std::size_t>(pitch_ * height_) + kSlack);
  for (int y = 0; y < height_; ++y)
    route_.load(rowOf(picture, y), canvas.data() + pitch_ * y, type_, width_);
  return canvas.data();
}

void FrameWiper::store(const Picture& picture) {
  for (int y = 0; y < height_; ++y)
    route_.store(rowOf(picture, y), out_.data() + pitch_ * y, type_, width_);
}

void FrameWiper::wipe(const Picture& a, const Picture& b, const Picture& out,
                      Progression progress) {
  const std::uint8_t* const first = load(a, a_);
  const std::uint8_t* const second = load(b, b_);
  out_.resize(isCanvas(out) ? 0 : static_cast<std::size_t>(pitch_ * height_) + kSlack);
  std::uint8_t* const target = isCanvas(out) ? out.planes[0] : out_.data();
  const auto pitch = static_cast<std::uint32_t>(pitch_);
  // Two pixels of 8-bit 4:2:2 share a pair, so an odd width has one more.
  const int pairs = isYCbCr(type_) && type_ != ptV210 ? width_ % 2 : 0;
  const NKWipe call = {.srcA = first,
                       .pitchA = pitch,
                       .srcB = second,
                       .pitchB = pitch,
                       .dst = target,
                       .pitchDst = pitch,
                       .wipe = word_,
                       .pixelType = type_,
                       .width = static_cast<std::uint32_t>(width_ + pairs),
                       .height = static_cast<std::uint32_t>(height_),
                       .position = progress.position,
                       .range = progress.range};
  const auto draw = way_ == WipeWay::kExact ? NKDraw_ExactWipe : NKDraw_CompleteWipe;
  if (draw(&call) != NKStatusOk)
    throw std::bad_alloc();  // the arguments are right
  if (!isCanvas(out))
    store(out);
}

}  // namespace nkdraw::tool
