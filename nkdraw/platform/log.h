// SPDX-License-Identifier: BSD-2-Clause
//
// The error log: one line a message.
#pragma once

#include <nkdraw/export.h>

namespace nkdraw {

/// Takes a finished message, without a line end.
using LogSink = void (*)(const char* message, void* context);

/// Sends all messages to `sink` from now on; a null `sink` brings standard error back. Any thread
/// may call it. A message that another thread is in the middle of goes to the sink it started with.
NKDRAW_API void setLogSink(LogSink sink, void* context);

}  // namespace nkdraw

/// Formats a message as printf does and hands it to the sink; longer ones are cut at 1,023
/// characters, line ends inside become blanks, those at the end go. Blanks stay as they are. Any
/// thread may call it.
NKDRAW_API void ErrOut(const char* format, ...) __attribute__((format(printf, 1, 2)));
