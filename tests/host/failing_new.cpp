// SPDX-License-Identifier: BSD-2-Clause
//
// The program's own operator new, which can be told to fail.
#include "failing_new.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int kNoLimit = std::numeric_limits<int>::max();

thread_local int allowedCalls = kNoLimit;

bool mayAllocate() {
  if (allowedCalls == kNoLimit)
    return true;
  return allowedCalls > 0 && allowedCalls-- > 0;
}

void* allocate(std::size_t bytes, std::size_t alignment) {
  void* block = nullptr;
  const bool done =
      mayAllocate() && posix_memalign(&block, alignment, std::max<std::size_t>(bytes, 1)) == 0;
  return done ? block : nullptr;
}

constexpr std::size_t kUsualAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

}  // namespace

nkdraw::test::FailingNew::FailingNew(int allowed) {
  allowedCalls = allowed;
}
nkdraw::test::FailingNew::~FailingNew() {
  allowedCalls = kNoLimit;
}

void* operator new(std::size_t bytes) {
  if (void* const block = allocate(bytes, kUsualAlignment))
    return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t bytes, const std::nothrow_t& /*nothrow*/) noexcept {
  return allocate(bytes, kUsualAlignment);
}
void* operator new(std::size_t bytes, std::align_val_t alignment,
                   const std::nothrow_t& /*nothrow*/) noexcept {
  return allocate(bytes, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  if (void* const block = allocate(bytes, static_cast<std::size_t>(alignment)))
    return block;
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*bytes*/) noexcept {
  std::free(block);
}
void operator delete(void* block, const std::nothrow_t& /*nothrow*/) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*bytes*/, std::align_val_t /*alignment*/) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*nothrow*/) noexcept {
  std::free(block);
}
