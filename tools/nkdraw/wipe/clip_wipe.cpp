// SPDX-License-Identifier: BSD-2-Clause
#include "wipe/clip_wipe.h"

#include "media/drawn_format.h"
#include "media/failure.h"
#include "media/frame_cursor.h"
#include "media/output_file.h"
#include "media/packet_rows.h"
#include "media/raw_stream.h"
#include "media/stream_copy.h"
#include "media/video_feed.h"
#include "wipe/join_writer.h"
#include "wipe/wipe_plan.h"

namespace nkdraw::tool {
namespace {

/// The road of one output frame after the other. `pass` gets those of one clip alone, `mix` those
/// of the transition.
template <class Feed, class Pass, class Mix>
void join(ClipPair& clips, const WipePlan& plan, Pass pass, Mix mix) {
  Feed feedA(clips.a, clips.frames), feedB(clips.b, clips.frames);
  FrameCursor<Feed> a(feedA), b(feedB);
  a.passUntil(plan.at, [&](auto& frame, std::int64_t index) { pass(*frame, index, clips.a); });
  for (std::int64_t i = 0; i < plan.duration; ++i) {
    auto* const outgoing = a.shownAt(plan.at + i);
    if (outgoing == nullptr)
      failTooShort(clips.a, plan.at + plan.duration);
    auto* const incoming = b.shownAt(i);
    if (incoming == nullptr)
      failTooShort(clips.b, plan.duration);
    mix(**outgoing, **incoming, i);
  }
  b.passUntil(b.kEnd,
              [&](auto& frame, std::int64_t index) { pass(*frame, plan.at + index, clips.b); });
}

/// Packets are copied, and those of the transition made of two.
class NativeJoin {
 public:
  NativeJoin(ClipPair& clips, const WipePlan& plan, JoinWriter& writer)
      : clips_(clips),
        plan_(plan),
        writer_(writer),
        rowsA_(*clips.a.video().codecpar, *plan.layout),
        rowsB_(*clips.b.video().codecpar, *plan.layout),
        wiper_(*plan.layout, Storage::kPacked, clips.frames.width, clips.frames.height, plan.word),
        timeBase_(av_inv_q(clips.frames.rate)) {}

  void run() {
    AVStream& video = writer_.video();
    copyCodec(clips_.a.video(), video, *plan_.format);
    if (!plan_.sameRows)
      describeRaw(video, *plan_.layout, clips_.frames, *plan_.format);
    video.time_base = timeBase_;
    writer_.begin();
    join<PacketFeed>(
        clips_, plan_,
        [this](AVPacket& packet, std::int64_t index, MediaInput& clip) {
          pass(packet, index, clip);
        },
        [this](AVPacket& a, AVPacket& b, std::int64_t i) { mix(a, b, i); });
  }

 private:
  [[nodiscard]] PacketRows& rowsFor(const MediaInput& clip) {
    return &clip == &clips_.a ? rowsA_ : rowsB_;
  }

  Picture rowsOf(AVPacket& packet, const MediaInput& clip) {
    const Picture picture = rowsFor(clip).rowsOf(packet);
    if (picture.planes[0] == nullptr)
      throw Failure(
          ExitCode::kInput, "a frame is cut short", clip.path(),
          "a packet has " + std::to_string(packet.size) + " bytes; the input may be incomplete");
    return picture;
  }

  void pass(AVPacket& packet, std::int64_t index, MediaInput& clip) {
    const Picture picture = rowsOf(packet, clip);
    if (!plan_.sameRows)
      rowsFor(clip).makePlain(packet, picture);
    write(packet, index);
  }

  void mix(AVPacket& a, AVPacket& b, std::int64_t i) {
    const Packet made = owned<Packet>(av_packet_clone(&a));
    if (av_packet_make_writable(made.get()) < 0)
      throw std::bad_alloc();
    const Picture out = rowsOf(*made, clips_.a);
    wiper_.wipe(rowsOf(a, clips_.a), rowsOf(b, clips_.b), out, plan_.progressOf(i));
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

/// All frames are decoded, converted and encoded.
class ConvertedJoin {
 public:
  ConvertedJoin(ClipPair& clips, const WipePlan& plan, JoinWriter& writer)
      : clips_(clips),
        plan_(plan),
        writer_(writer),
        toDrawnA_(plan.drawn, clips.a.interlaced()),
        toDrawnB_(plan.drawn, clips.b.interlaced()),
        wiper_(*plan.layout,
               plan.drawn == AV_PIX_FMT_YUV422P10 ? Storage::kPlanes10 : Storage::kPacked,
               clips.frames.width, clips.frames.height, plan.word),
        encoder_(*plan.codec, *exampleOf(clips.a, plan.drawn), clips.frames, *plan.format) {}

  void run() {
    encoder_.describeTo(writer_.video());
    writer_.begin();
    join<DecodedFeed>(
        clips_, plan_,
        [this](AVFrame& frame, std::int64_t index, MediaInput& clip) {
          encode(toDrawn(clip).convert(frame), index);
        },
        [this](AVFrame& a, AVFrame& b, std::int64_t i) { mix(a, b, i); });
    encoder_.encode(nullptr, 0, take_);
  }

 private:
  [[nodiscard]] PictureConverter& toDrawn(const MediaInput& clip) {
    return &clip == &clips_.a ? toDrawnA_ : toDrawnB_;
  }

  void mix(AVFrame& a, AVFrame& b, std::int64_t i) {
    AVFrame& outgoing = toDrawnA_.convert(a);
    AVFrame& incoming = toDrawnB_.convert(b);
    Frame made = makeFrame();
    made->format = outgoing.format;
    made->width = outgoing.width;
    made->height = outgoing.height;
    if (av_frame_get_buffer(made.get(), 0) < 0 || av_frame_copy_props(made.get(), &outgoing) < 0)
      throw std::bad_alloc();
    wiper_.wipe(planesOf(outgoing), planesOf(incoming), planesOf(*made), plan_.progressOf(i));
    encode(*made, plan_.at + i);
  }

  void encode(AVFrame& picture, std::int64_t index) {
    encoder_.encode(&picture, writer_.placeOf(index), take_);
  }

  ClipPair& clips_;
  const WipePlan& plan_;
  JoinWriter& writer_;
  PictureConverter toDrawnA_, toDrawnB_;
  FrameWiper wiper_;
  VideoEncoder encoder_;
  VideoEncoder::TakePacket take_ = [this](AVPacket& packet) {
    writer_.write(packet, encoder_.timeBase());
  };
};

}  // namespace

void wipeClips(const WipeOptions& options) {
  ClipPair clips(options.a, options.b, options.output);
  const WipePlan plan = planWipe(clips, options);
  checkOutputName(options.output, options.overwrite);
  if (options.dryRun || options.verbose)
    describe(options.dryRun ? stdout : stderr, clips, plan, options);
  if (options.dryRun)
    return;
  JoinWriter writer(clips, plan, options);
  if (plan.isNative())
    NativeJoin(clips, plan, writer).run();
  else
    ConvertedJoin(clips, plan, writer).run();
  writer.finish();
}

}  // namespace nkdraw::tool
