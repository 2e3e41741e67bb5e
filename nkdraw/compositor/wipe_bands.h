// SPDX-License-Identifier: BSD-2-Clause
//
// A wipe on four threads, one for each quarter of the frame.
#pragma once

#include "row_queue.h"
#include "wipe_band.h"

#include <cstddef>
#include <memory>

namespace nkdraw {

/// How long a call waits for its workers, and what happens to a quarter whose worker could not be
/// started.
enum class WipeWait {
  kBounded,   ///< at most 50 pauses of two milliseconds; the quarter stays as it was
  kComplete,  ///< until all workers end; the caller draws the quarter
};

/// Runs `kernel` on the four quarters of `frame`, whose rectangle is not read. It starts four
/// threads at the time-critical priority and waits until the last of them ends.
/// A bounded wait may return while a worker still draws into `dst`. The worker owns everything else
/// that it needs, and shares `memory` until its kernel ends, so it may end at any time. If a thread
/// could not be started, a bounded wait lasts its full time. Without memory for the workers, all
/// four quarters are treated as if their threads could not start.
///
/// Returns 0, or NKStatusRefused if the host threw instead of starting a thread and the quarter
/// stays undrawn. Otherwise a host that throws counts as a thread that could not start.
std::uint32_t RunWipeBands(const WipeTask& frame, WipeKernel kernel, WipeWait wait,
                           const std::shared_ptr<const void>& memory = nullptr);

inline constexpr std::size_t kWipeWorkers = 4;

/// What became of a call of RunWipeRows.
struct WipeRowsRun {
  bool drawn = false;
  bool threw = false;        ///< the host, instead of starting a thread
  std::uint8_t started = 0;  ///< a bit for each worker
};

/// Draws the rows of `frame` from `top` up to, but not including, `bottom` on the calling thread
/// and `workers` of the four workers, with the same calls to the host and the same wait as
/// RunWipeBands; the workers share `memory` as there. With a bounded wait, the frame is drawn only
/// if all of them were started: else some of its rows may be, unless `kept` has room for all of
/// them. Whatever happens, no worker touches the frames after the return: one still busy after a
/// bounded wait is waited for until it has drawn the few rows that it has claimed.
WipeRowsRun RunWipeRows(const WipeTask& frame, DrawRows draw, WipeWait wait,
                        const std::shared_ptr<const void>& memory = nullptr,
                        const KeptRows& kept = {}, std::size_t workers = kWipeWorkers);

/// Draws the quarters of a mask's bits on the calling thread, as if their workers did.
void drawQuarters(const WipeTask& frame, const WipeKernel& kernel, std::uint8_t quarters);

/// The routine of a worker; only RunWipeBands and RunWipeRows pass its parameter. Returns the
/// result of the kernel.
std::uint32_t WipeBandThread(void* parameter);

}  // namespace nkdraw
