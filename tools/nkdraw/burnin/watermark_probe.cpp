// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/watermark_probe.h"

#include "cli/library_log.h"
#include "media/failure.h"

#include <nkdraw/overlay/overlay.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/module.h>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>

namespace nkdraw::tool {
namespace {

class Probe : private CNkOverlay {
 public:
  /// Converts the picture for 32-bit RGB, since only then it is seen whether it could be read.
  explicit Probe(const std::string& path) {
    HZWVIDEO frames = {};
    frames.biSize = sizeof frames;
    frames.frameRate = frames.frameScale = 1;
    HZWSYSTEM host = {};
    host.size = sizeof host;
    WatermarkEnable = 1;
    SetWatermarkPath(path.c_str());
    Create(&frames, &host);
  }
  [[nodiscard]] bool found() const { return watermarkRGBA != nullptr; }
  [[nodiscard]] Point size() const {
    return {static_cast<int>(watermarkWidth), static_cast<int>(watermarkHeight)};
  }
};

void checkReader() {
  const nkHandle module = nkOSLoadLibrary(kMediaReader, 0);
  if (module == nullptr)
    throw Failure(ExitCode::kProcessing, "watermarks can't be read", "libclipIO.so",
                  "install this module of nkdraw beside its libraries");
  nkOSFreeLibrary(module);
}

}  // namespace

Point watermarkSize(const std::string& path) {
  struct stat facts = {};
  if (stat(path.c_str(), &facts) != 0)
    throw Failure(ExitCode::kInput, "cannot read the watermark", path,
                  std::string(std::strerror(errno)) + "; check the name");
  checkReader();
  const LibraryLog quiet;
  const Probe probe(path);
  if (!probe.found())
    throw Failure(ExitCode::kInput, "the watermark is no picture that can be read", path,
                  "name a picture or a clip; check it with ffprobe");
  return probe.size();
}

}  // namespace nkdraw::tool
