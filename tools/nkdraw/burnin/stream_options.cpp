// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/stream_options.h"

#include "cli/option_group.h"
#include "cli/option_values.h"
#include "media/failure.h"

namespace nkdraw::tool {

void StreamArguments::addTo(CLI::App& command) {
  OptionGroup group(command, "Sound, subtitles and data");
  group.add("--audio-codec", audioCodec_, "NAME[:KEY=VALUE...]",
            "Encode sound with this encoder of FFmpeg, or copy (what\n"
            "the file can't hold is converted, and the run says so)");
  group.addFlag("--no-audio", noAudio_, "Leave the sound out");
  group.addFlag("--no-subtitles", noSubtitles_, "Leave subtitles out");
  group.addFlag("--no-data", noData_, "Leave data, attachments and cover pictures out");
}

StreamRequest StreamArguments::read(bool hasStreams) const {
  if (audioCodec_ && audioCodec_->empty())
    badValue("--audio-codec", "", "see ffmpeg -encoders, or give copy");
  if (audioCodec_ && noAudio_)
    throw Failure(ExitCode::kUsage, "options that exclude each other",
                  "--audio-codec and --no-audio", "give one of them");
  if (!hasStreams && (audioCodec_ || noAudio_ || noSubtitles_ || noData_))
    throw Failure(ExitCode::kUsage, "a still and the test pattern have no other streams",
                  audioCodec_    ? "--audio-codec"
                  : noAudio_     ? "--no-audio"
                  : noSubtitles_ ? "--no-subtitles"
                                 : "--no-data",
                  "leave it out");
  StreamRequest request;
  request.audio.asked = audioCodec_;
  request.noAudio = noAudio_;
  request.noSubtitles = noSubtitles_;
  request.noData = noData_;
  return request;
}

}  // namespace nkdraw::tool
