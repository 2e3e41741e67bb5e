// SPDX-License-Identifier: BSD-2-Clause
//
// How the last look into the configuration store went. In a source of its own, so that a program
// with a store of its own need not bring this part of the service.
#pragma once

namespace nkdraw {

extern thread_local bool storeWasRead;

}  // namespace nkdraw
