// SPDX-License-Identifier: BSD-2-Clause
//
// A wipe on four threads, one for each quarter of the frame.
#pragma once

#include "wipe_band.h"

#include <memory>

namespace nkdraw {

/// How long a call waits for its workers, and what becomes of the quarter of one that could not
/// be started.
enum class WipeWait {
  kBounded,   ///< 50 pauses of two milliseconds at the most; the quarter stays as it was
  kComplete,  ///< as long as it takes; the caller draws the quarter
};

/// Runs `kernel` on the four quarters of `frame` (its rectangle is not read) on four threads of
/// its own at the time-critical priority, and waits for them; the wait ends early with the last
/// worker. A worker that a bounded wait can't wait for draws on after the return, into `dst`; it
/// owns what else it needs, and shares `memory` until its kernel is through, so it may end at any
/// time. After a thread that could not start a bounded wait is as long as it may be. When there is
/// no memory for the workers, all four quarters go the way of those without a thread.
///
/// 0, or NKStatusRefused when the host threw in place of starting a thread and the quarter stays;
/// that is otherwise as if the thread could not start.
std::uint32_t RunWipeBands(const WipeTask& frame, WipeKernel kernel, WipeWait wait,
                           const std::shared_ptr<const void>& memory = nullptr);

/// The routine of a worker; its parameter is for RunWipeBands alone to give. The kernel's result.
std::uint32_t WipeBandThread(void* parameter);

}  // namespace nkdraw
