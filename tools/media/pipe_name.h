// SPDX-License-Identifier: BSD-2-Clause
//
// Names that are no files of their own: the standard streams and FIFOs, which are read or written
// once, from the beginning to the end.
#pragma once

#include <string>

namespace nkdraw::media {

/// Whether the input is read from a pipe: "-", unless that is a file, or the name of a FIFO,
/// /dev/stdin included.
[[nodiscard]] bool isPipedInput(const std::string& path);

/// Whether the output is written as a stream: "-", /dev/stdout, or the name of a FIFO.
[[nodiscard]] bool isPipedOutput(const std::string& path);

/// What FFmpeg opens for these names, of a pipe or a file.
[[nodiscard]] std::string inputUrl(const std::string& path);
[[nodiscard]] std::string outputUrl(const std::string& path);

/// The reader of a pipe has gone away, so no more can be written, and nobody waits for it.
class ReaderGone {};

}  // namespace nkdraw::media
