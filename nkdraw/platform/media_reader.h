// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The entry points of the media reader, a module that reads the first frame of a picture or a
/// clip. Its symbols are ciOpen, ciGetFileInfo, ciReadFrameUnc and ciClose.
#pragma once

#include <nkdraw/platform/records.h>
#include <nkdraw/platform/sync.h>

#include <cstdint>

/// The module's name, for nkOSLoadLibrary.
inline constexpr const char* kMediaReader = "clipIO.dll";

/// ciOpen: opens a file; null when it can't be read. The numbers, the same in every call, ask for
/// an existing file, read-only and shared. Given back with ciClose.
using ciOpenRoutine = nkHandle (*)(const char* path, std::uint32_t access, std::uint32_t share,
                                   std::uint32_t security, std::uint32_t creation,
                                   std::uint32_t flags, std::uint32_t attributes);

/// ciGetFileInfo: fills in biWidth, biHeight and what else of `video` the reader knows; the caller
/// sets its biSize. Returns 0 on success.
using ciGetFileInfoRoutine = std::uint32_t (*)(nkHandle* file, std::uint32_t stream,
                                               std::uint32_t first, HZWVIDEO* video,
                                               std::uint32_t second, std::uint32_t third);

/// ciReadFrameUnc: returns the bytes of a frame when `frame` is null, 0 when there is none.
/// Otherwise decodes the first frame into its `frameBuffer` as packed 32-bit BGRA, top row first,
/// with the picture's own alpha (255 without one), and returns the bytes written, or 0.
using ciReadFrameUncRoutine = std::uint32_t (*)(nkHandle* file, std::uint32_t first,
                                                std::uint32_t second, std::uint32_t third,
                                                std::uint32_t fourth, QFRAME* frame,
                                                std::uint32_t fifth, std::uint32_t sixth);

/// ciClose: closes the file and sets the handle to null. Returns 0.
using ciCloseRoutine = std::uint32_t (*)(nkHandle* file);
