// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/left_out.h"

#include "cli/note.h"
#include "media/stream_facts.h"
#include "wipe/wipe_options.h"
#include "wipe/wipe_plan.h"

namespace nkdraw::tool {
namespace {

/// The clip goes on in the output's timecode, and sound is left out on request only.
bool isExpected(const AVStream& stream, const WipeOptions& options) {
  const AVCodecParameters& codec = *stream.codecpar;
  return codec.codec_tag == MKTAG('t', 'm', 'c', 'd') ||
         (codec.codec_type == AVMEDIA_TYPE_AUDIO && options.audio.mode == AudioMode::kNone);
}

std::string lossOf(MediaInput& clip, const WipePlan& plan, const WipeOptions& options) {
  std::string loss;
  const auto add = [&](const std::string& what) { loss += (loss.empty() ? "" : "; ") + what; };
  for (const AVStream* const stream : leftOutOf(clip, plan)) {
    if (!isExpected(*stream, options))
      add("stream " + std::to_string(stream->index) + " (" + describeStream(*stream) + ")");
  }
  if (clip.file().nb_chapters > 0)
    add("chapters");
  return loss;
}

}  // namespace

std::vector<const AVStream*> leftOutOf(MediaInput& clip, const WipePlan& plan) {
  std::vector<const AVStream*> streams;
  for (unsigned i = 0; i < clip.file().nb_streams; ++i) {
    const AVStream* const stream = clip.file().streams[i];
    const bool isJoined = stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO && !plan.audio.empty();
    if (stream != &clip.video() && !isJoined)
      streams.push_back(stream);
  }
  return streams;
}

void noteLeftOut(const std::vector<MediaInput*>& clips, const WipePlan& plan,
                 const WipeOptions& options) {
  for (MediaInput* const clip : clips) {
    if (const std::string loss = lossOf(*clip, plan, options); !loss.empty())
      printNote("left out of " + clip->path() + ": " + loss);
  }
}

}  // namespace nkdraw::tool
