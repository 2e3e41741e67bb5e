// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/layer_sources.h"

#include "cli/library_log.h"
#include "media/failure.h"
#include "media/pipe_name.h"

#include <nkdraw/overlay/overlay.h>
#include <nkdraw/platform/media_reader.h>
#include <nkdraw/platform/module.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>

#include <sys/stat.h>

namespace nkdraw::tool {
namespace {

class Probe : private CNkOverlay {
 public:
  /// Converts the picture to 32-bit RGB: only then is it known whether it could be read.
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

std::shared_ptr<const CaptionTrack> captionsFor(const Job& job) {
  const auto& request = job.plan.request.captions;
  if (!request || !request->file)
    return nullptr;
  return std::make_shared<const CaptionTrack>(*request->file, job.frames.rate);
}

std::shared_ptr<const SoundTrack> soundOf(MediaInput& input) {
  if (isPipedInput(input.path()))
    throw Failure(ExitCode::kUsage, "meters can't be fed from a pipe", input.path(),
                  "give a file, or leave --meters out");
  const std::span streams(input.file().streams, input.file().nb_streams);
  const auto found = std::ranges::find_if(streams, [](const AVStream* stream) {
    return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
  });
  if (found == streams.end())
    throw Failure(ExitCode::kInput, "no sound in the clip", input.path(), "leave --meters out");
  const AVCodecParameters& track = *(*found)->codecpar;
  if (track.sample_rate <= 0 || track.ch_layout.nb_channels <= 0)
    throw Failure(ExitCode::kInput, "the sound can't be decoded", input.path(),
                  "leave --meters out");
  return std::make_shared<const SoundTrack>(
      SoundTrack{input.path(), (*found)->index, AudioShape(track)});
}

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
