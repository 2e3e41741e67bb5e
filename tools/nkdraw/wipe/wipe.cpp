// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"
#include "cli/note.h"
#include "cli/run_options.h"
#include "media/drawn_format.h"
#include "media/frame_converter.h"
#include "media/frame_cursor.h"
#include "media/packet_rows.h"
#include "media/stream_facts.h"
#include "media/video_feed.h"
#include "wipe/join_writer.h"
#include "wipe/left_out.h"
#include "wipe/wipe_description.h"
#include "wipe/wipe_names.h"
#include "wipe/wipe_plan.h"

#include <type_traits>
#include <utility>

namespace nkdraw::tool {
namespace {

/// Frame `index` of a clip.
template <class Data>
struct ClipFrame {
  Data& data;
  MediaInput& clip;
  std::int64_t index;
};

/// Reads both clips once, from the first output frame to the last. `pass` gets frames outside the
/// transition, with their number in the output; `mix` gets both clips' frames for frame i of the
/// transition.
template <class Feed, class Pass, class Mix>
void join(ClipPair& clips, const WipePlan& plan, Pass pass, Mix mix) {
  using Data = std::remove_reference_t<decltype(*std::declval<typename Feed::Unit&>())>;
  FrameCursor<Feed> a(clips.a, clips.frames, TakePacket(),
                      FrameRange{0, plan.at + plan.duration - 1});
  FrameCursor<Feed> b(clips.b, clips.frames);
  a.passUntil(plan.at, [&](auto& frame, std::int64_t index) {
    pass(ClipFrame<Data>{*frame, clips.a, index}, index);
  });
  for (std::int64_t i = 0; i < plan.duration; ++i) {
    auto* const outgoing = a.shownAt(plan.at + i);
    if (outgoing == nullptr)
      failTooShort(clips.a, plan.at + plan.duration);
    auto* const incoming = b.shownAt(i);
    if (incoming == nullptr)
      failTooShort(clips.b, plan.duration);
    mix(ClipFrame<Data>{**outgoing, clips.a, plan.at + i}, ClipFrame<Data>{**incoming, clips.b, i},
        i);
  }
  b.passUntil(b.kEnd, [&](auto& frame, std::int64_t index) {
    pass(ClipFrame<Data>{*frame, clips.b, index}, plan.at + index);
  });
}

/// Copies packets; a packet of the transition is made from two.
class InPlaceJoin {
 public:
  InPlaceJoin(ClipPair& clips, const WipePlan& plan, JoinWriter& writer)
      : clips_(clips),
        plan_(plan),
        writer_(writer),
        rowsA_(*clips.a.video().codecpar, *plan.layout),
        rowsB_(*clips.b.video().codecpar, *plan.layout),
        wiper_(*plan.layout, Storage::kPacked, clips.frames.width, clips.frames.height, plan.word,
               plan.way),
        timeBase_(av_inv_q(clips.frames.rate)) {}

  void run() {
    AVStream& video = writer_.video();
    copyCodec(clips_.a.video(), video, *plan_.format);
    if (!plan_.sameRows)
      describeRaw(video, *plan_.layout, clips_.frames, *plan_.format);
    video.time_base = timeBase_;
    writer_.begin();
    join<PacketFeed>(
        clips_, plan_, [this](const ClipPacket& frame, std::int64_t index) { pass(frame, index); },
        [this](const ClipPacket& a, const ClipPacket& b, std::int64_t i) { mix(a, b, i); });
  }

 private:
  using ClipPacket = ClipFrame<AVPacket>;

  [[nodiscard]] PacketRows& rowsFor(const MediaInput& clip) {
    return &clip == &clips_.a ? rowsA_ : rowsB_;
  }
  Picture rowsOf(const ClipPacket& frame) {
    return rowsFor(frame.clip).rowsOf(frame.data, frame.index, frame.clip);
  }

  void pass(const ClipPacket& frame, std::int64_t index) {
    const Picture rows = rowsOf(frame);
    if (!plan_.sameRows)
      rowsFor(frame.clip).makePlain(frame.data, rows);
    write(frame.data, index);
  }

  void mix(const ClipPacket& a, const ClipPacket& b, std::int64_t i) {
    const Packet made = owned<Packet>(av_packet_clone(&a.data));
    if (av_packet_make_writable(made.get()) < 0)
      throw std::bad_alloc();
    const Picture out = rowsOf({*made, a.clip, a.index});
    wiper_.wipe(rowsOf(a), rowsOf(b), out, plan_.progressOf(i));
    if (!plan_.sameRows)
      rowsA_.makePlain(*made, out);
    write(*made, plan_.at + i);
  }

  void write(AVPacket& packet, std::int64_t index) {
    packet.pts = packet.dts = writer_.placeOf(index);
    packet.duration = 1;
    writer_.write(packet, timeBase_);
  }

  ClipPair& clips_;
  const WipePlan& plan_;
  JoinWriter& writer_;
  PacketRows rowsA_, rowsB_;
  FrameWiper wiper_;
  AVRational timeBase_;
};

/// Decodes, converts and encodes all frames.
class TranscodeJoin {
 public:
  TranscodeJoin(ClipPair& clips, const WipePlan& plan, JoinWriter& writer)
      : clips_(clips),
        plan_(plan),
        writer_(writer),
        toDrawnA_(plan.drawn, clips.a.interlaced()),
        toDrawnB_(plan.drawn, clips.b.interlaced()),
        wiper_(*plan.layout, storageOf(plan.drawn), clips.frames.width, clips.frames.height,
               plan.word, plan.way),
        encoder_(*plan.codec, *exampleOf(clips.a, plan.drawn), clips.frames, *plan.format) {}

  void run() {
    encoder_.describeTo(writer_.video());
    writer_.begin();
    using Decoded = ClipFrame<AVFrame>;
    join<DecodedFeed>(
        clips_, plan_,
        [this](const Decoded& frame, std::int64_t index) {
          encode(toDrawn(frame.clip).convert(frame.data), index);
        },
        [this](const Decoded& a, const Decoded& b, std::int64_t i) { mix(a.data, b.data, i); });
    encoder_.encode(nullptr, 0, take_);
  }

 private:
  [[nodiscard]] FrameConverter& toDrawn(const MediaInput& clip) {
    return &clip == &clips_.a ? toDrawnA_ : toDrawnB_;
  }

  void mix(AVFrame& a, AVFrame& b, std::int64_t i) {
    AVFrame& outgoing = toDrawnA_.convert(a);
    AVFrame& incoming = toDrawnB_.convert(b);
    const Frame made = makeFrame(outgoing.format, outgoing.width, outgoing.height);
    if (av_frame_copy_props(made.get(), &outgoing) < 0)
      throw std::bad_alloc();
    wiper_.wipe(planesOf(outgoing), planesOf(incoming), planesOf(*made), plan_.progressOf(i));
    encode(*made, plan_.at + i);
  }

  void encode(AVFrame& frame, std::int64_t index) {
    encoder_.encode(&frame, writer_.placeOf(index), take_);
  }

  ClipPair& clips_;
  const WipePlan& plan_;
  JoinWriter& writer_;
  FrameConverter toDrawnA_, toDrawnB_;
  FrameWiper wiper_;
  VideoEncoder encoder_;
  TakePacket take_ = [this](AVPacket& packet) { writer_.write(packet, encoder_.timeBase()); };
};

void wipeClips(const WipeOptions& options) {
  ClipPair clips(options.a, options.b, options.output, options.inputShape);
  clips.beginDamage(options.onDamage);
  const WipePlan plan = planWipe(clips, options);
  checkOutput(options.output, options);
  if (!announce(options, [&](Description& to) { describe(to, clips, plan, options); }))
    return;
  JoinWriter writer(clips, plan, options);
  if (plan.isInPlace())
    InPlaceJoin(clips, plan, writer).run();
  else
    TranscodeJoin(clips, plan, writer).run();
  writer.finish();
  if (plan.codec)
    printNote(plan.codec->note);
  noteLeftOut({&clips.a, &clips.b}, plan, options);
  reportDamage({&clips.a.damage(), &clips.b.damage()});
}

void wipeOrList(const WipeOptions& options) {
  if (options.list)
    listWipes();
  else
    wipeClips(options);
}

}  // namespace

std::unique_ptr<Command> addWipe(CLI::App& app) {
  return std::make_unique<SubCommand<WipeArguments, wipeOrList>>(app, "wipe");
}

}  // namespace nkdraw::tool
