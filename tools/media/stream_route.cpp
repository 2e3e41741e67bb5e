// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_route.h"

#include "media/container_streams.h"
#include "media/libav_log.h"
#include "media/packet_watch.h"
#include "media/pcm_cut.h"
#include "media/rising_times.h"
#include "media/sound_converter.h"
#include "media/stream_facts.h"
#include "media/subtitle_converter.h"

namespace nkdraw::media {
namespace {

/// What all routes do: they know the window, and write.
class RouteBase : public StreamRoute {
 public:
  explicit RouteBase(const RouteEnds& ends)
      : ends_(ends),
        times_(ends.output.format(), "stream " + std::to_string(ends.from.index) + " (" +
                                         describeStream(ends.from) + ")") {}

 protected:
  [[nodiscard]] const RouteEnds& ends() const { return ends_; }
  [[nodiscard]] const TimeWindow& window() const { return ends_.window; }
  [[nodiscard]] AVRational inputTime() const { return ends_.from.time_base; }

  /// Whether a packet begins before the window, or after it.
  [[nodiscard]] bool isBefore(const AVPacket& packet) const {
    return isTimed(packet) &&
           av_compare_ts(timeOf(packet), inputTime(), window().first, kMicroseconds) < 0;
  }
  [[nodiscard]] bool isAfter(const AVPacket& packet) const {
    return isTimed(packet) &&
           av_compare_ts(timeOf(packet), inputTime(), window().end, kMicroseconds) >= 0;
  }

  /// Cuts the time for which a subtitle is shown to the window.
  void cutToWindow(AVPacket& packet) const {
    if (window().isWhole() || packet.pts == AV_NOPTS_VALUE || packet.duration <= 0)
      return;
    const auto ticks = [&](std::int64_t time) {
      return av_rescale_q_rnd(time, kMicroseconds, inputTime(), AV_ROUND_UP);
    };
    const std::int64_t begin = std::max(packet.pts, ticks(window().first));
    const std::int64_t end = std::min(packet.pts + packet.duration, ticks(window().end));
    if (begin >= end)
      return;
    packet.pts = packet.dts = begin;
    packet.duration = end - begin;
  }

  /// Writes a packet whose times, in `timeBase`, are `later` microseconds less than the input's.
  void write(AVPacket& packet, AVRational timeBase, std::int64_t later) {
    place(packet, timeBase, later);
    ends_.output.write(packet, timeBase);
  }
  /// The same for a packet of the input's: FFmpeg's error if it can't be in such a file, else 0.
  [[nodiscard]] int tryWrite(AVPacket& packet) {
    place(packet, inputTime(), 0);
    av_packet_rescale_ts(&packet, inputTime(), ends_.to.time_base);
    times_.raise(packet);
    return ends_.output.tryWrite(packet, ends_.to.time_base);
  }

 private:
  static std::int64_t timeOf(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  }
  void place(AVPacket& packet, AVRational timeBase, std::int64_t later) {
    moveBy(later - window().shift, packet, timeBase);
    packet.stream_index = ends_.to.index;
  }
  [[nodiscard]] bool isTimed(const AVPacket& packet) const {
    return !window().isWhole() && timeOf(packet) != AV_NOPTS_VALUE;
  }

  RouteEnds ends_;
  RisingTimes times_;
};

class CopyRoute final : public RouteBase {
 public:
  explicit CopyRoute(const RouteEnds& ends)
      : RouteBase(ends),
        watch_(ends.input, ends.from, true),
        through_(ends.from.codecpar->codec_type != AVMEDIA_TYPE_AUDIO) {
    copyCodec(ends.from, ends.to, ends.output.format());
  }

  void take(AVPacket& packet) override {
    if (ends().from.codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE)
      cutToWindow(packet);
    if (isBefore(packet))
      return;
    if (isAfter(packet))
      through_ = true;
    else
      copy(packet);
  }
  /// Only sound is waited for.
  [[nodiscard]] bool isThrough() const override { return through_; }

 private:
  void copy(AVPacket& packet) {
    watch_.check(packet);
    const std::int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    forgetLibavErrors();
    if (const int error = tryWrite(packet); error < 0)
      watch_.note(time, explained(error, firstLibavError()) + ", left out");
  }

  PacketWatch watch_;
  bool through_;
};

class CutRoute final : public RouteBase {
 public:
  explicit CutRoute(const RouteEnds& ends)
      : RouteBase(ends),
        watch_(ends.input, ends.from, false),
        cut_(ends.from, ends.window, countsSamples(ends.output.format())) {
    copyCodec(ends.from, ends.to, ends.output.format());
  }

  void take(AVPacket& packet) override {
    if (!isBefore(packet) && !isAfter(packet))
      watch_.check(packet);
    cut_.cut(packet, [&](AVPacket& part) { write(part, cut_.timeBase(), window().first); });
  }
  [[nodiscard]] bool isThrough() const override { return cut_.isThrough(); }

 private:
  PacketWatch watch_;
  PCMCut cut_;
};

class SoundRoute final : public RouteBase {
 public:
  SoundRoute(const RouteEnds& ends, const CodecChoice& choice)
      : RouteBase(ends),
        watch_(ends.input, ends.from, false),
        converter_(ends.from, choice, ends.output.format(),
                   {ends.input.path(), "leave it out with --no-audio",
                    ends.window.hasFirst() ? ends.window.first : AV_NOPTS_VALUE,
                    [this](std::int64_t time, const std::string& why) { note(time, why); }},
                   ends.window.end) {
    converter_.describeTo(ends.to);
  }

  void take(AVPacket& packet) override {
    if (!isBefore(packet) && !isAfter(packet) && (packet.flags & AV_PKT_FLAG_CORRUPT) != 0)
      watch_.check(packet);
    converter_.convert(&packet, takePart_);
    if (isAfter(packet))
      through_ = true;
  }
  void finish() override { converter_.convert(nullptr, takePart_); }
  [[nodiscard]] bool isThrough() const override { return through_ || converter_.isThrough(); }

 private:
  /// Damage before or after the window does not matter.
  void note(std::int64_t time, const std::string& why) {
    const auto compare = [&](std::int64_t moment) {
      return av_compare_ts(time, inputTime(), moment, kMicroseconds);
    };
    if (time == AV_NOPTS_VALUE || window().isWhole() ||
        (compare(window().first) >= 0 && compare(window().end) < 0))
      watch_.note(time, why);
  }

  PacketWatch watch_;
  SoundConverter converter_;
  bool through_ = false;
  TakePacket takePart_ = [this](AVPacket& part) {
    write(part, converter_.timeBase(), converter_.origin());
  };
};

class SubtitleRoute final : public RouteBase {
 public:
  SubtitleRoute(const RouteEnds& ends, const CodecChoice& choice)
      : RouteBase(ends),
        converter_(ends.from, choice, ends.output.format(), ends.input.path(),
                   "leave them out with --no-subtitles") {
    converter_.describeTo(ends.to);
  }

  void take(AVPacket& packet) override {
    cutToWindow(packet);
    if (!isBefore(packet) && !isAfter(packet))
      converter_.convert(packet,
                         [&](AVPacket& text) { write(text, SubtitleConverter::timeBase(), 0); });
  }
  [[nodiscard]] bool isThrough() const override { return true; }

 private:
  SubtitleConverter converter_;
};

/// Formats that count samples need the place of the first one.
RouteEnds withFirst(const RouteEnds& ends) {
  RouteEnds same = ends;
  if (!same.window.hasFirst())
    same.window.first = same.window.shift;
  return same;
}

}  // namespace

std::unique_ptr<StreamRoute> routeFor(const RouteEnds& ends, const StreamPlan& plan) {
  const AVMediaType type = ends.from.codecpar->codec_type;
  const bool placed = !ends.window.isWhole() || countsSamples(ends.output.format());
  const RouteEnds sound = placed ? withFirst(ends) : ends;
  if (plan.action == StreamAction::kConvert && type == AVMEDIA_TYPE_AUDIO)
    return std::make_unique<SoundRoute>(sound, plan.codec);
  if (plan.action == StreamAction::kConvert)
    return std::make_unique<SubtitleRoute>(ends, plan.codec);
  if (placed && sampleBytes(*ends.from.codecpar))
    return std::make_unique<CutRoute>(sound);
  return std::make_unique<CopyRoute>(ends);
}

}  // namespace nkdraw::media
