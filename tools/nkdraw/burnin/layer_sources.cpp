// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/layer_sources.h"

#include "media/failure.h"

#include <algorithm>
#include <span>

namespace nkdraw::tool {

std::shared_ptr<const CaptionTrack> captionsFor(const Job& job) {
  const auto& request = job.plan.request.captions;
  if (!request || !request->file)
    return nullptr;
  return std::make_shared<const CaptionTrack>(*request->file, job.frames.rate);
}

std::shared_ptr<const SoundTrack> soundOf(MediaInput& input) {
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

}  // namespace nkdraw::tool
