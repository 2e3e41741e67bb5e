// SPDX-License-Identifier: BSD-2-Clause
//
// The test's own media reader, frame memory and error log, which replace the host's and record
// every call.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace nkdraw::test {

using Calls = std::vector<std::string>;

struct NotedReader {
  Calls calls;
  std::vector<std::string> messages;

  std::int32_t width = 0, height = 0;
  std::vector<std::uint8_t> picture;  ///< BGRA
  bool hasModule = true;
  std::string missingSymbol;
  bool opens = true;
  bool hasMemory = true;          ///< for frames
  bool hasPictureRoom = true;     ///< for converted pictures
  std::uint32_t tooFewBytes = 0;  ///< by which the size of a frame is told too small
  bool reads = true;

  std::string path;  ///< of the last file that was opened
  int loadedModules = 0, openFiles = 0, frames = 0;
  int surfaces = 0, surfacesWhenFreed = 0;  ///< those alive, now and when a frame was freed last
};

inline NotedReader notedReader;

/// The picture that is read from now on; pixels are seeded noise.
void usePicture(std::int32_t width, std::int32_t height, std::uint32_t seed);

}  // namespace nkdraw::test
