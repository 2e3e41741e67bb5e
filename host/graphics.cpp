// SPDX-License-Identifier: BSD-2-Clause
//
// Contexts, and the objects that are selected into them.
#include <algorithm>
#include <cstring>

#include "graphics_objects.h"

namespace {

using nkdraw::ObjectKind;

/// What a context has before anything is selected.
std::array<nkGraphicsObject, nkdraw::kObjectKinds>& ownObjects() {
  static std::array<nkGraphicsObject, nkdraw::kObjectKinds> own = {
      nkGraphicsObject(ObjectKind::kFont), nkGraphicsObject(ObjectKind::kPen),
      nkGraphicsObject(ObjectKind::kBrush), nkGraphicsObject(ObjectKind::kBitmap)};
  return own;
}

bool isOwn(const nkGraphicsObject* object) {
  return std::ranges::any_of(ownObjects(), [object](const auto& own) { return &own == object; });
}

template <class Value>
Value exchange(nkDeviceContext* context, Value nkDeviceContext::*state, Value value) {
  return context == nullptr ? Value{} : std::exchange(context->*state, value);
}

}  // namespace

nkDeviceContext::nkDeviceContext() {
  std::ranges::transform(ownObjects(), selected.begin(), [](auto& own) { return &own; });
}

nkDeviceContext* CreateICA(const char* /*driver*/) {
  return nkdraw::tryMake<nkDeviceContext>();
}

nkDeviceContext* CreateCompatibleDC(nkDeviceContext* context) {
  return context == nullptr ? nullptr : nkdraw::tryMake<nkDeviceContext>();
}

int DeleteDC(nkDeviceContext* context) {
  const std::unique_ptr<nkDeviceContext> owned(context);
  return owned ? 1 : 0;
}

int GetDeviceCaps(nkDeviceContext* context, int /*index*/) {
  return context == nullptr ? 0 : -1;
}

nkGraphicsObject* CreatePen(int /*style*/, int /*width*/, std::uint32_t /*colour*/) {
  return nkdraw::tryMake<nkdraw::Pen>();
}

nkGraphicsObject* CreateSolidBrush(std::uint32_t colour) {
  return nkdraw::tryMake<nkdraw::Brush>(colour);
}

nkGraphicsObject* CreateCompatibleBitmap(nkDeviceContext* context, int width, int height) {
  if (context == nullptr || width <= 0 || height <= 0)
    return nullptr;
  return nkdraw::tryMake<nkdraw::Bitmap>(width, height);
}

nkGraphicsObject* SelectObject(nkDeviceContext* context, nkGraphicsObject* object) {
  if (context == nullptr || object == nullptr)
    return nullptr;
  return std::exchange(context->selected[static_cast<std::size_t>(object->kind)], object);
}

int DeleteObject(nkGraphicsObject* object) {
  if (object == nullptr || isOwn(object))
    return 0;
  const std::unique_ptr<nkGraphicsObject> owned(object);
  return 1;
}

std::uint32_t SetTextAlign(nkDeviceContext* context, std::uint32_t alignment) {
  return exchange(context, &nkDeviceContext::textAlignment, alignment);
}

std::uint32_t SetTextColor(nkDeviceContext* context, std::uint32_t colour) {
  return exchange(context, &nkDeviceContext::textColour, colour);
}

std::uint32_t SetBkColor(nkDeviceContext* context, std::uint32_t colour) {
  return exchange(context, &nkDeviceContext::backColour, colour);
}

int SetBkMode(nkDeviceContext* context, int mode) {
  return exchange(context, &nkDeviceContext::backMode, mode);
}

int MoveToEx(nkDeviceContext* context, int x, int y, tagPOINT* previous) {
  if (context == nullptr)
    return 0;
  const tagPOINT before = std::exchange(context->position, tagPOINT{x, y});
  if (previous != nullptr)
    *previous = before;
  return 1;
}

std::uint32_t GetPixel(nkDeviceContext* context, int x, int y) {
  const auto* const bitmap = nkdraw::selectedAs<nkdraw::Bitmap>(context, ObjectKind::kBitmap);
  if (bitmap == nullptr || x < 0 || y < 0 || x >= bitmap->width || y >= bitmap->height)
    return 0;
  return bitmap->pixels[bitmap->at(x, y)];
}

int lstrlenA(const char* text) {
  return text == nullptr ? 0 : static_cast<int>(std::strlen(text));
}

std::uint32_t GetLastError() {
  return 0;
}
