// SPDX-License-Identifier: BSD-2-Clause
//
// A wipe on four threads, one for each quarter of the frame.
#pragma once

#include "wipe_band.h"

#include <nkdraw/export.h>

#include <memory>

namespace nkdraw {

/// Runs `kernel` on the four quarters of `frame` (its rectangle is not read) on four threads of
/// its own at the time-critical priority, and waits for them: 50 pauses of two milliseconds at the
/// most, each of which ends early with the last worker. A worker that takes longer draws on after
/// the return, into `dst`; it owns what else it needs, and shares `memory` until its kernel is
/// through, so it may end at any time. The quarter of a thread that could not start stays as it
/// was, after the whole wait; so do all when there is no memory. 0 always.
std::uint32_t RunWipeBands(const WipeTask& frame, WipeKernel kernel,
                           const std::shared_ptr<const void>& memory = nullptr);

/// While one of these lives, the wipes that its thread calls wait for their workers without limit,
/// and draw themselves what no worker could be started for: the result is complete, whatever the
/// machine's load. For callers within this project who would rather be late than wrong.
class NKDRAW_API PatientWipes {
 public:
  PatientWipes();
  PatientWipes(const PatientWipes&) = delete;
  PatientWipes& operator=(const PatientWipes&) = delete;
  ~PatientWipes();
};

/// The routine of a worker; its parameter is for RunWipeBands alone to give. The kernel's result.
std::uint32_t WipeBandThread(void* parameter);

}  // namespace nkdraw
