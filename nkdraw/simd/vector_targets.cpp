// SPDX-License-Identifier: BSD-2-Clause
//
// What the processor supports, and stores past its caches.
#include <nkdraw/simd/vector_targets.h>

#include <hwy/cache_control.h>

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace nkdraw {
namespace {

#if HWY_ARCH_X86
/// The one feature that some compilers' __builtin_cpu_supports does not know.
bool hasHalfFloats() {
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  return __get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0 && (ecx & bit_F16C) != 0;
}
#endif

}  // namespace

std::int64_t runnableTargets() {
#if HWY_ARCH_X86
  __builtin_cpu_init();
  std::int64_t targets = 0;  // HWY_SSSE3 is not compiled
  if (__builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("pclmul") &&
      __builtin_cpu_supports("aes"))
    targets |= HWY_SSE4;
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
      __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") && hasHalfFloats())
    targets |= HWY_AVX2;
  if ((targets & HWY_AVX2) != 0 && __builtin_cpu_supports("avx512f") &&
      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
      __builtin_cpu_supports("avx512bw"))
    targets |= HWY_AVX3;
  return targets;
#else
  return 0;  // the baseline of the architecture is the form that is always compiled
#endif
}

void finishStreamedRows() {
  hwy::FlushStream();
}

}  // namespace nkdraw
