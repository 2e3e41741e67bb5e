// SPDX-License-Identifier: BSD-2-Clause
//
// The objects behind the handles of the graphics services.
#pragma once

#include <nkdraw/platform/graphics.h>

#include <pixman.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace nkdraw {

/// The kinds of objects of which a context has one each.
enum class ObjectKind : std::size_t { kFont, kPen, kBrush, kBitmap };
inline constexpr std::size_t kObjectKinds = 4;

struct PathPoint {
  double x, y;
  std::uint8_t type;
};
using Path = std::vector<PathPoint>;

}  // namespace nkdraw

struct nkGraphicsObject {
  explicit nkGraphicsObject(nkdraw::ObjectKind itsKind) : kind(itsKind) {}
  nkGraphicsObject(const nkGraphicsObject&) = delete;
  nkGraphicsObject& operator=(const nkGraphicsObject&) = delete;
  virtual ~nkGraphicsObject() = default;

  const nkdraw::ObjectKind kind;
};

struct nkRegion {
  nkRegion() { pixman_region32_init(&pixels); }
  nkRegion(const nkRegion&) = delete;
  nkRegion& operator=(const nkRegion&) = delete;
  ~nkRegion() { pixman_region32_fini(&pixels); }

  pixman_region32_t pixels;
};

struct nkDeviceContext {
  nkDeviceContext();

  std::array<nkGraphicsObject*, nkdraw::kObjectKinds> selected;
  std::uint32_t textAlignment = 0, textColour = 0, backColour = 0xFFFFFF;
  int backMode = 2;
  tagPOINT position = {0, 0};
  nkdraw::Path path;
  bool recording = false;  ///< between BeginPath and EndPath
  bool recorded = false;   ///< after it
};

namespace nkdraw {

struct Pen final : nkGraphicsObject {
  Pen() : nkGraphicsObject(ObjectKind::kPen) {}
};

struct Brush final : nkGraphicsObject {
  explicit Brush(std::uint32_t itsColour)
      : nkGraphicsObject(ObjectKind::kBrush), colour(itsColour) {}

  const std::uint32_t colour;
};

struct Bitmap final : nkGraphicsObject {
  Bitmap(int itsWidth, int itsHeight)
      : nkGraphicsObject(ObjectKind::kBitmap),
        width(itsWidth),
        height(itsHeight),
        pixels(static_cast<std::size_t>(itsWidth) * static_cast<std::size_t>(itsHeight)) {}

  [[nodiscard]] std::size_t at(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
  }

  const int width, height;
  std::vector<std::uint32_t> pixels;
};

/// The object of class `Object` selected into `context`; null if it has only its default.
template <class Object>
[[nodiscard]] Object* selectedAs(const nkDeviceContext* context, ObjectKind kind) {
  return context == nullptr
             ? nullptr
             : dynamic_cast<Object*>(context->selected[static_cast<std::size_t>(kind)]);
}

/// What `work` returns, or `otherwise` if memory runs out.
template <class Work, class Result>
[[nodiscard]] Result unlessOutOfMemory(Result otherwise, Work work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return otherwise;
  } catch (const std::length_error&) {
    return otherwise;
  }
}

/// A new object, owned by the caller; null without memory.
template <class Object, class... Arguments>
[[nodiscard]] Object* tryMake(Arguments... arguments) noexcept {
  return unlessOutOfMemory<>(static_cast<Object*>(nullptr),
                             [&] { return std::make_unique<Object>(arguments...).release(); });
}

}  // namespace nkdraw
