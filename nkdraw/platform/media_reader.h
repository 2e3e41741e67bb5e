// SPDX-License-Identifier: BSD-2-Clause
//
// The entry points of the media reader, the run-time module "clipIO.dll". It reads the first frame
// of a picture or a clip.
#pragma once

#include <nkdraw/platform/records.h>
#include <nkdraw/platform/sync.h>

#include <cstdint>

inline constexpr const char* kMediaReader = "clipIO.dll";

/// Opens a file; null when it can't be read. The numbers ask for a file that is there, read-only
/// and shared, and are the same in every call.
using ciOpenRoutine = nkHandle (*)(const char* path, std::uint32_t access, std::uint32_t share,
                                   std::uint32_t security, std::uint32_t creation,
                                   std::uint32_t flags, std::uint32_t attributes);

/// Fills biWidth, biHeight and what else of `video` the reader knows; its biSize must be set. 0 on
/// success.
using ciGetFileInfoRoutine = std::uint32_t (*)(nkHandle* file, std::uint32_t stream,
                                               std::uint32_t first, HZWVIDEO* video,
                                               std::uint32_t second, std::uint32_t third);

/// The bytes of a frame for a null `frame`, 0 when there is none. Otherwise decodes the first frame
/// into its `frameBuffer` as packed 32-bit BGRA, top row first, with the picture's own alpha (255
/// without one); the bytes written, or 0.
using ciReadFrameUncRoutine = std::uint32_t (*)(nkHandle* file, std::uint32_t first,
                                                std::uint32_t second, std::uint32_t third,
                                                std::uint32_t fourth, QFRAME* frame,
                                                std::uint32_t fifth, std::uint32_t sixth);

/// Closes the file and sets the handle to null. 0.
using ciCloseRoutine = std::uint32_t (*)(nkHandle* file);
