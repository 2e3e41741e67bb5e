// SPDX-License-Identifier: BSD-2-Clause
#include "cli/library_log.h"

#include <nkdraw/platform/log.h>

namespace nkdraw::tool {

LibraryLog::LibraryLog() {
  setLogSink(keep, this);
}

LibraryLog::~LibraryLog() {
  setLogSink(nullptr, nullptr);
}

void LibraryLog::keep(const char* message, void* log) {
  static_cast<LibraryLog*>(log)->last_ = message;
}

}  // namespace nkdraw::tool
