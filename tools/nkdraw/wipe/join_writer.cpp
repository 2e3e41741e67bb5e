// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/join_writer.h"

#include "cli/note.h"
#include "media/kept_timecode.h"
#include "media/read_back.h"
#include "media/stream_facts.h"

namespace nkdraw::tool {

JoinWriter::JoinWriter(ClipPair& clips, const WipePlan& plan, const WipeOptions& options)
    : file_(options.output, options.overwrite),
      plan_(plan),
      output_(file_.temporary(), *plan.format, options.output),
      video_(output_.addStream()),
      sound_(clips, plan.audio, options.audio, {plan.at, plan.at + plan.duration}, output_),
      progress_(countOf(clips.b).frames > 0 ? plan.at + countOf(clips.b).frames : 0,
                options.progressForm()) {
  copyFacts(clips.a.video(), video_);
  av_dict_copy(&output_.file().metadata, clips.a.file().metadata, 0);
  if (plan.timecodeTag)
    setTimecodeTag(output_, video_, *plan.timecodeTag);
  keepTimecodeTag(output_, video_);
}

std::int64_t JoinWriter::placeOf(std::int64_t index) {
  progress_.advance();
  return places_.placeOf(index);
}

void JoinWriter::write(AVPacket& packet, AVRational timeBase) {
  packet.stream_index = video_.index;
  const std::int64_t end = packet.dts + 1;
  output_.write(packet, timeBase);
  sound_.advanceTo(end);
}

void JoinWriter::finish() {
  sound_.advanceTo(places_.next());
  sound_.finish();
  output_.finish();
  checkReadable(file_.temporary(), *plan_.format, file_.path());
  const std::string lost =
      foundLoss(file_.temporary(), file_.path(), *plan_.format, plan_.timecode);
  file_.commit();
  printNote(lost);
  printNote(plan_.note);
}

}  // namespace nkdraw::tool
