// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_output.h"

#include "cli/note.h"
#include "media/clip_facts.h"
#include "media/container_codecs.h"
#include "media/first_look.h"
#include "media/kept_timecode.h"
#include "media/light_levels.h"
#include "media/pipe_name.h"
#include "media/read_back.h"
#include "media/stream_facts.h"

#include <cstdlib>
#include <new>

namespace nkdraw::tool {
namespace {

/// Makes `to` another owner of the packet's data, with times of its own.
void share(const AVPacket& packet, AVPacket& to) {
  av_packet_unref(&to);
  if (av_packet_ref(&to, &packet) < 0)
    throw std::bad_alloc();
}

/// Frames that are drawn on while others are encoded.
constexpr std::size_t kMostWaiting = 2;

/// What all frames to encode are like.
Frame exampleFor(MediaInput& input, const ClipPlan& plan) {
  Frame example = exampleOf(input, plan.picture.drawn);
  if (plan.first != nullptr)
    completeFrom(*plan.first, input.video(), *example);
  return example;
}

}  // namespace

ClipOutput::ClipOutput(MediaInput& input, const ClipPlan& plan, const OutputPlan& output,
                       bool overwrite)
    : plan_(output),
      file_(output.request.path, overwrite),
      output_(file_.temporary(), *output.format, output.request.path),
      copier_(input, output_, output.streams, plan.window, plan.timecodeTag),
      prefix_(prefixOf(plan, output)) {}

void ClipOutput::begin() {
  output_.begin(muxerOptions(plan_.request, *plan_.format));
}

void ClipOutput::writeOther(const AVPacket& packet) {
  share(packet, *own_);
  copier_.write(*own_);
}

void ClipOutput::finish() {
  copier_.finish();
  noteSilence();
  output_.finish();
  checkReadable(file_.temporary(), *plan_.format, file_.path());
  lost_ = foundLoss(file_.temporary(), file_.path(), *plan_.format, plan_.timecode);
}

/// FFmpeg writes no empty tracks into these files, unless they are written in pieces.
void ClipOutput::noteSilence() {
  if (!isQuickTimeFamily(output_.format()) || isPipedOutput(plan_.request.path))
    return;
  for (const AVStream* const stream : copier_.silentStreams())
    silent_.push_back(prefix_ + "stream " + std::to_string(stream->index) + " (" +
                      describeStream(*stream) +
                      ") is left out: it has no sound in the frames that are written");
}

void ClipOutput::commit() {
  file_.commit();
  printNote(lost_);
  for (const std::string& note : silent_)
    printNote(note);
}

PacketSink::PacketSink(ClipOutput& output, MediaInput& input, const Job& job)
    : output_(output),
      video_(input.video()),
      job_(job),
      sameKind_(isSameKind(*input.file().iformat, *output.plan().format)) {
  AVStream& video = output.copier().video();
  const AVOutputFormat& format = *output.plan().format;
  copyCodec(input.video(), video, format);
  if (!sameKind_)
    describeRaw(video, *job.layout, job.frames, format);
  output.begin();
}

void PacketSink::write(const AVPacket& burnt, std::int64_t index, const InPlaceFrames& frames) {
  share(burnt, *own_);
  if (!sameKind_)
    frames.makePlain(*own_);
  if (!sameKind_ && isOnTheGrid(index))
    writeByNumber(index);
  else
    output_.copier().writeVideo(*own_);
}

/// Whether the packet's time is the exact time of its number, within the precision of the input's
/// time base, and no earlier packet has this time.
bool PacketSink::isOnTheGrid(std::int64_t index) const {
  if (own_->pts == AV_NOPTS_VALUE || video_.start_time == AV_NOPTS_VALUE || index < next_)
    return false;
  const std::int64_t exact =
      video_.start_time + av_rescale_q(index, av_inv_q(job_.frames.rate), video_.time_base);
  return std::abs(own_->pts - exact) <= 1;
}

/// Gives the packet its exact time, which Matroska rounds to milliseconds.
void PacketSink::writeByNumber(std::int64_t index) {
  next_ = index + 1;
  own_->pts = own_->dts = index - job_.range.first;
  own_->duration = 1;
  output_.copier().writeEncoded(*own_, av_inv_q(job_.frames.rate));
}

FrameSink::FrameSink(ClipOutput& output, MediaInput& input, const ClipPlan& plan)
    : output_(output),
      first_(plan.job.range.first),
      encoder_(*output.plan().codec, *exampleFor(input, plan), plan.job.frames,
               *output.plan().format),
      worker_(kMostWaiting, [this](PlacedFrame& next) { encodeNext(next); }) {
  AVStream& video = output.copier().video();
  encoder_.describeTo(video);
  video.codecpar->field_order =
      fieldOrderFor(input.video(), plan.first.get(), output.plan().codec->codec->id);
  if (plan.first != nullptr)
    copyLightLevels(*plan.first, video);
  output.begin();
}

void FrameSink::encodeNext(PlacedFrame& next) {
  encoder_.encode(next.frame.get(), next.place, [this](AVPacket& packet) {
    Packet taken = makePacket();
    av_packet_move_ref(taken.get(), &packet);
    const std::lock_guard hold(lock_);
    encoded_.push_back(std::move(taken));
  });
}

void FrameSink::writeEncoded() {
  std::vector<Packet> packets;
  {
    const std::lock_guard hold(lock_);
    packets.swap(encoded_);
  }
  for (const Packet& packet : packets)
    output_.copier().writeEncoded(*packet, encoder_.timeBase());
}

void FrameSink::encode(const AVFrame& frame, std::int64_t index) {
  Frame shared = owned<Frame>(av_frame_clone(&frame));
  worker_.push({std::move(shared), places_.placeOf(index - first_)});
  writeEncoded();
}

void FrameSink::finish() {
  worker_.push({nullptr, 0});
  worker_.finish();
  writeEncoded();
}

}  // namespace nkdraw::tool
