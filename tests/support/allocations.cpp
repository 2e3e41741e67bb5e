// SPDX-License-Identifier: BSD-2-Clause
//
// An allocator that counts, for the whole of a program.
#include "allocations.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

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

namespace nkdraw::test {

void countAllocations() {
  allocations = 0;
  counting = true;
}

int countedAllocations() {
  counting = false;
  return allocations;
}

namespace {

TEST(Allocation, IsCountedHere) {
  EXPECT_GT(allocationsOf([] { ::operator delete(::operator new(4)); }), 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  void* volatile block = nullptr;
  EXPECT_EQ(allocationsOf([&block] { block = std::malloc(10); }), 1);
  std::free(block);
#endif
}

}  // namespace
}  // namespace nkdraw::test
