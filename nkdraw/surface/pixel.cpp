// SPDX-License-Identifier: BSD-2-Clause
//
// The surface object: its lifetime, its lock, its canvas.
#include <nkdraw/surface/pixel.h>

#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iterator>
#include <thread>

namespace {

/// The least pitch that SetCanvas accepts. Classes whose pixels share bytes check their own.
std::uint32_t leastPitch(pixelType type, std::uint32_t width) {
  const nkdraw::LayoutFacts* const facts = nkdraw::findFacts(type);
  const bool raised = facts != nullptr && facts->pitchRule == nkdraw::PitchRule::kRaised;
  return raised && facts->groupPixels == 1 ? width * facts->groupBytes : 0;
}

/// A field that threads read and write without the lock.
template <class Field>
std::atomic_ref<Field> shared(const Field& field) {
  return std::atomic_ref<Field>(const_cast<Field&>(field));
}

}  // namespace

NKPixel::NKPixel() : changeEvent(nkOSCreateEvent(nullptr, 0, 0, nullptr)) {
  nkOSInitializeCriticalSection(&lock);
}

NKPixel& NKPixel::operator=(NKPixel& other) {
  for (const bool foreground : {false, true}) {
    double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
    GetColorRGBA(r, g, b, a, foreground);
    other.SetColorRGBA(r, g, b, a, foreground);
  }
  return other;
}

NKPixel::~NKPixel() {
  if (changeEvent != nullptr)
    nkOSCloseEvent(changeEvent);
  changeEvent = nullptr;
  nkOSDeleteCriticalSection(&lock);
}

std::uint32_t NKPixel::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
  canvas = newCanvas;
  flipped = newHeight < 0;
  height = nkdraw::magnitude(newHeight);
  width = nkdraw::magnitude(newWidth);
  pitch = nkdraw::magnitude(newPitch == 0 ? GetPitch() : newPitch);
  pitch = std::max(pitch, leastPitch(pixelKind, width));
  return 0;
}

int NKPixel::GetPitch() {
  return static_cast<int>(pitch);
}

int NKPixel::PercentX(double fraction) {
  return nkdraw::truncateToInt32(width * fraction);
}

int NKPixel::PercentY(double fraction) {
  return nkdraw::truncateToInt32(height * fraction);
}

std::uint32_t NKPixel::Lock(std::uint32_t timeout) {
  if (timeout == 0 || timeout == NKForever) {
    nkOSEnterCriticalSection(&lock);
    return 0;
  }
  for (; timeout > 0; --timeout) {
    if (nkOSTryEnterCriticalSection(&lock) == 1)
      return NKLockTaken;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return 0;
}

std::uint32_t NKPixel::TryLock() {
  return nkOSTryEnterCriticalSection(&lock);
}

std::uint32_t NKPixel::Unlock() {
  nkOSLeaveCriticalSection(&lock);
  return 0;
}

std::int32_t NKPixel::AddRef() {
  Lock(NKForever);
  const std::int32_t count = nkdraw::wrappingAdd(refs, 1);
  shared(refs) = count;
  Unlock();
  return count;
}

std::int32_t NKPixel::Release() {
  Lock(NKForever);
  const std::int32_t count = refs < 1 ? 0 : refs - 1;
  shared(refs) = count;
  Unlock();
  return count;
}

std::int32_t NKPixel::Refs() const {
  return shared(refs);
}

void NKPixel::SetChangeEvent() {
  if (changeEvent != nullptr)
    nkOSSetEvent(changeEvent);
}

std::uint32_t NKPixel::WaitForChangeEvent(std::uint32_t timeout) {
  return nkOSWaitForEvent(changeEvent, timeout);
}

std::uint32_t NKPixel::LastChange(std::uint32_t value) {
  if (value != NKOnlyRead)
    shared(lastChange) = value;
  return shared(lastChange);
}

void NKPixel::CopyNKPixel(NKPixel& other) {
  std::copy(std::begin(other.foregroundPixel), std::end(other.foregroundPixel), foregroundPixel);
  foregroundAlpha = other.foregroundAlpha;
  std::copy(std::begin(other.backgroundPixel), std::end(other.backgroundPixel), backgroundPixel);
  backgroundAlpha = other.backgroundAlpha;
  transparencyOn = other.transparencyOn;
}
