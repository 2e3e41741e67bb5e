// SPDX-License-Identifier: BSD-2-Clause
//
// Burning a frame allocates nothing once the first frame is through. This program counts what its
// thread allocates.
#include "exposed_overlay.h"

#include <tests/support/caption_stream.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <vector>

namespace {

thread_local bool counting = false;
thread_local int allocations = 0;

void count() {
  if (counting)
    ++allocations;
}

}  // namespace

// The sanitizers bring a malloc of their own; there only operator new is counted.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);

__attribute__((visibility("default"))) void* malloc(std::size_t bytes) {
  count();
  return __libc_malloc(bytes);
}
__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t bytes) {
  count();
  return __libc_calloc(number, bytes);
}
__attribute__((visibility("default"))) void* realloc(void* block, std::size_t bytes) {
  count();
  return __libc_realloc(block, bytes);
}
}
#endif

// Not inlined: the compiler would take a free of what operator new gave for a mistake.
__attribute__((noinline)) void* operator new(std::size_t bytes) {
  count();
  if (void* const block = std::malloc(bytes == 0 ? 1 : bytes))
    return block;
  throw std::bad_alloc();
}
__attribute__((noinline)) void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  count();
  return std::malloc(bytes == 0 ? 1 : bytes);
}
__attribute__((noinline)) void operator delete(void* block) noexcept {
  std::free(block);
}
__attribute__((noinline)) void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace {

using namespace nkdraw::test;

TEST(Allocation, IsCountedHere) {
  counting = true;
  ::operator delete(::operator new(4));
  counting = false;
  EXPECT_GT(allocations, 0);
  allocations = 0;
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  counting = true;
  void* volatile block = std::malloc(10);
  counting = false;
  std::free(block);
  EXPECT_EQ(allocations, 1);
  allocations = 0;
#endif
}

TEST(Allocation, BurnInMakesNoneAfterTheFirstFrame) {
  for (const Stream& stream : kStreams) {
    SCOPED_TRACE(stream.name);
    Overlay o;
    o.Enabled = 1;
    o.TimeCodeLTCEnable = o.TimeCodeVITCEnable = o.TimeCodeVsyncEnable = 1;
    o.SourceFormatEnable = o.AudioEnable = o.WatermarkEnable = o.CaptionsEnable = 1;
    for (int slot = 0; slot < 10; ++slot)
      o.setText(slot, "A text of the operator");
    HZWVIDEO video = videoOf(stream);
    video.scanFlags = 0x100;
    const HZWSYSTEM system{};
    o.Create(&video, &system);
    BurnFrame frame;
    CaptionStream captions;
    captions.rollUp(3).carriageReturn().row(15).text("A caption ");
    std::vector<std::uint8_t> triplets;
    for (const CaptionPair& pair : captions.pairs())
      triplets.insert(triplets.end(), {0xFC, pair[0], pair[1]});
    frame.record.captionData = triplets.data();
    frame.record.captionBytes = static_cast<std::uint32_t>(triplets.size());
    allocations = 0;
    counting = true;
    o.BurnIn(&frame.record, nullptr, nullptr, 0);
    EXPECT_GT(allocations, 0);  // the surface: what the library allocates is seen
    allocations = 0;
    for (int i = 0; i < 20; ++i) {
      ++frame.record.ltcCount;
      o.BurnIn(&frame.record, nullptr, nullptr, 0);
    }
    counting = false;
    EXPECT_EQ(allocations, 0);
  }
}

}  // namespace
