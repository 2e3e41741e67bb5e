// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The error log: one line a message.
#pragma once

#include <nkdraw/export.h>

namespace nkdraw {

/// Takes a finished message, without a line end. The text is valid during the call; `context` is
/// what setLogSink was given.
using LogSink = void (*)(const char* message, void* context);

/// Sends all messages to `sink` from now on, with `context`; null brings back standard error. Any
/// thread may call it. A message that another thread is writing goes to the sink it began with.
NKDRAW_API void setLogSink(LogSink sink, void* context);

}  // namespace nkdraw

/// Formats a message as printf does and hands it to the sink. Messages are cut after 1,023
/// characters; line ends inside become spaces, those at the end are removed. Any thread may call
/// it.
NKDRAW_API void ErrOut(const char* format, ...) __attribute__((format(printf, 1, 2)));
