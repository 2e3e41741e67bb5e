// SPDX-License-Identifier: BSD-2-Clause
#include "media/stream_route.h"

#include "media/container_streams.h"
#include "media/pcm_cut.h"
#include "media/sound_converter.h"
#include "media/stream_facts.h"
#include "media/subtitle_converter.h"

namespace nkdraw::media {
namespace {

/// What all routes do: they know the window, and write.
class RouteBase : public StreamRoute {
 public:
  explicit RouteBase(const RouteEnds& ends) : ends_(ends) {}

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

  /// Writes a packet whose times, in `timeBase`, are `later` microseconds less than the input's.
  void write(AVPacket& packet, AVRational timeBase, std::int64_t later) {
    moveBy(later - window().shift, packet, timeBase);
    packet.stream_index = ends_.to.index;
    ends_.output.write(packet, timeBase);
  }

 private:
  static std::int64_t timeOf(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  }
  [[nodiscard]] bool isTimed(const AVPacket& packet) const {
    return !window().isWhole() && timeOf(packet) != AV_NOPTS_VALUE;
  }

  RouteEnds ends_;
};

class CopyRoute final : public RouteBase {
 public:
  explicit CopyRoute(const RouteEnds& ends)
      : RouteBase(ends), through_(ends.from.codecpar->codec_type != AVMEDIA_TYPE_AUDIO) {
    copyCodec(ends.from, ends.to, ends.output.format());
  }

  void take(AVPacket& packet) override {
    if (isBefore(packet))
      return;
    if (isAfter(packet))
      through_ = true;
    else
      write(packet, inputTime(), 0);
  }
  /// Only sound is waited for.
  [[nodiscard]] bool isThrough() const override { return through_; }

 private:
  bool through_;
};

class CutRoute final : public RouteBase {
 public:
  explicit CutRoute(const RouteEnds& ends)
      : RouteBase(ends), cut_(ends.from, ends.window, countsSamples(ends.output.format())) {
    copyCodec(ends.from, ends.to, ends.output.format());
  }

  void take(AVPacket& packet) override {
    cut_.cut(packet, [&](AVPacket& part) { write(part, cut_.timeBase(), window().first); });
  }
  [[nodiscard]] bool isThrough() const override { return cut_.isThrough(); }

 private:
  PCMCut cut_;
};

class SoundRoute final : public RouteBase {
 public:
  SoundRoute(const RouteEnds& ends, const CodecChoice& choice)
      : RouteBase(ends),
        converter_(ends.from, choice, ends.output.format(),
                   {ends.input.path(), "leave it out with --no-audio",
                    ends.window.hasFirst() ? ends.window.first : AV_NOPTS_VALUE},
                   ends.window.end) {
    converter_.describeTo(ends.to);
  }

  void take(AVPacket& packet) override {
    converter_.convert(&packet, takePart_);
    if (isAfter(packet))
      through_ = true;
  }
  void finish() override { converter_.convert(nullptr, takePart_); }
  [[nodiscard]] bool isThrough() const override { return through_ || converter_.isThrough(); }

 private:
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
