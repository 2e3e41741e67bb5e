// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Every service that the library asks of its host, in one include. The default implementation is
/// the library nkdraw::host; a host framework may link its own in its place.
#pragma once

#include <nkdraw/platform/captions.h>
#include <nkdraw/platform/config.h>
#include <nkdraw/platform/flip.h>
#include <nkdraw/platform/frame_memory.h>
#include <nkdraw/platform/graphics.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/media_names.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/platform/module.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/platform/sync.h>
#include <nkdraw/platform/thread.h>
#include <nkdraw/platform/timecode.h>
