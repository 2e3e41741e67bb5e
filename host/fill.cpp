// SPDX-License-Identifier: BSD-2-Clause
//
// Filling memory with a 32-bit pattern, as fast as memset does with a byte: whole vectors at
// aligned addresses between one vector at the head and one at the tail, which overlap them.
#include <nkdraw/platform/memory.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

using Vector16 [[gnu::vector_size(16)]] = std::uint32_t;
using Vector32 [[gnu::vector_size(32)]] = std::uint32_t;

/// Runs below this many bytes are over before wider vectors pay.
constexpr std::size_t kWideRun = 256;

/// The pattern as it goes on behind `bytes` bytes of it.
constexpr std::uint32_t patternBehind(std::size_t bytes, std::uint32_t pattern) {
  const int bits = static_cast<int>(bytes % 4) * 8;
  return std::endian::native == std::endian::little ? std::rotr(pattern, bits)
                                                    : std::rotl(pattern, bits);
}

template <class Value>
[[gnu::always_inline]] inline void store(std::byte* at, const Value& value) {
  using Unaligned [[gnu::aligned(1), gnu::may_alias]] = Value;
  *reinterpret_cast<Unaligned*>(at) = value;
}

/// Fills at least sizeof(Vector) bytes.
template <class Vector>
[[gnu::always_inline]] inline void fillVectors(std::byte* first, std::uint32_t pattern,
                                               std::size_t bytes) {
  constexpr std::size_t kSize = sizeof(Vector);
  std::byte* const tail = first + bytes - kSize;
  store<Vector>(tail, Vector{} + patternBehind(bytes - kSize, pattern));
  store<Vector>(first, Vector{} + pattern);

  const std::size_t toAligned = kSize - std::bit_cast<std::uintptr_t>(first) % kSize;
  const Vector aligned = Vector{} + patternBehind(toAligned, pattern);
  std::byte* at = first + toAligned;
  for (; tail - at >= std::ptrdiff_t{4 * kSize}; at += 4 * kSize) {
    store(at, aligned);
    store(at + kSize, aligned);
    store(at + 2 * kSize, aligned);
    store(at + 3 * kSize, aligned);
  }
  for (; at < tail; at += kSize)
    store(at, aligned);
}

void fillShort(std::byte* at, std::uint32_t pattern, std::size_t bytes) {
  for (; bytes >= sizeof pattern; bytes -= sizeof pattern, at += sizeof pattern)
    store(at, pattern);
  for (; bytes > 0; --bytes, ++at, pattern = patternBehind(1, pattern))
    std::memcpy(at, &pattern, 1);
}

void fillMiddle(std::byte* first, std::uint32_t pattern, std::size_t bytes) {
  fillVectors<Vector16>(first, pattern, bytes);
}

#ifdef __x86_64__
[[gnu::target("avx2")]] void fillWide(std::byte* first, std::uint32_t pattern, std::size_t bytes) {
  fillVectors<Vector32>(first, pattern, bytes);
}
bool hasWideVectors() {
  return __builtin_cpu_supports("avx2");
}
#else
void fillWide(std::byte* first, std::uint32_t pattern, std::size_t bytes) {
  fillMiddle(first, pattern, bytes);
}
bool hasWideVectors() {
  return false;
}
#endif

}  // namespace

void SetMemoryFast(void* target, std::uint32_t value, std::uint32_t bytes) {
  auto* const first = static_cast<std::byte*>(target);
  if (bytes < sizeof(Vector16))
    fillShort(first, value, bytes);
  else if (bytes >= kWideRun && hasWideVectors())
    fillWide(first, value, bytes);
  else
    fillMiddle(first, value, bytes);
}
