// SPDX-License-Identifier: BSD-2-Clause
//
// Whether the last read of the configuration store succeeded. It has its own source file, so that a
// program with its own store need not link the rest of the service.
#pragma once

namespace nkdraw {

extern thread_local bool storeWasRead;

}  // namespace nkdraw
