// SPDX-License-Identifier: BSD-2-Clause
//
// Blocks of memory, and copies of them.
#include <nkdraw/platform/memory.h>

#include <cstring>
#include <new>

namespace {

/// The widest vector there is, and a cache line.
constexpr std::align_val_t kBlockAlignment{64};

}  // namespace

void* NKAlloc(std::uint32_t bytes) {
  return ::operator new(bytes, kBlockAlignment, std::nothrow);
}

void NKFree(void* block) {
  ::operator delete(block, kBlockAlignment);
}

void CopyMemoryFast(void* target, const void* source, std::uint32_t bytes) {
  if (bytes != 0)
    std::memcpy(target, source, bytes);
}

void nkOSCopyMemory(void* target, const void* source, std::uint32_t bytes) {
  CopyMemoryFast(target, source, bytes);
}

void nkOSZeroMemory(void* target, std::uint32_t bytes) {
  if (bytes != 0)
    std::memset(target, 0, bytes);
}
