// SPDX-License-Identifier: BSD-2-Clause
#include "media/start_point.h"

#include "media/failure.h"
#include "media/pipe_name.h"
#include "media/timecode_source.h"
#include "media/video_decoder.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <string_view>

namespace nkdraw::media {
namespace {

/// The demuxers that find a packet by an index, and then give it the time that it always has.
struct IndexedKind {
  std::string_view format;  // prefix of the names of FFmpeg's demuxer
  bool ownPlaces;           // finds the packets of each stream at its own place in the file
};
constexpr IndexedKind kIndexedKinds[] = {{"mov", true},  {"matroska", false}, {"avi", false},
                                         {"nut", false}, {"mxf", false},      {"image2", true}};

// In interleaved files sound lies at most so far from the frames that it belongs to.
constexpr std::int64_t kInterleaving = 5;  // seconds
constexpr std::size_t kMostAttempts = 6;

const IndexedKind* indexedKind(const AVInputFormat& format) {
  const auto* const found = std::ranges::find_if(kIndexedKinds, [&](const IndexedKind& kind) {
    return std::string_view(format.name).starts_with(kind.format);
  });
  return found != std::end(kIndexedKinds) ? found : nullptr;
}

/// A subtitle may begin long before the frames that it is shown with.
bool hasSubtitles(const AVFormatContext& file) {
  const std::span streams(file.streams, file.nb_streams);
  return std::ranges::any_of(streams, [](const AVStream* stream) {
    return stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
  });
}

/// Tries start points on one clip.
class Search {
 public:
  Search(const MediaInput& input, AVRational rate)
      : rate_(rate),
        probe_(input.again()),
        first_(probe_.start().first),
        timeBase_(probe_.video().time_base) {}

  /// By the file's index; `limit` is the last frame that may be the first one read.
  [[nodiscard]] StartPoint byIndex(std::int64_t limit);
  /// By reading all packets up to that frame, without decoding them.
  [[nodiscard]] StartPoint byReading(std::int64_t limit);

 private:
  [[nodiscard]] std::int64_t numberOf(std::int64_t time) const {
    return FrameClock(timeBase_, rate_, first_).indexOf(time);
  }
  [[nodiscard]] bool showsBy(std::int64_t limit, MediaInput& input, AVPacket& key) const;
  [[nodiscard]] bool isGood(const StartPoint& start, std::int64_t limit) const;

  AVRational rate_;
  MediaInput probe_;
  std::int64_t first_;
  AVRational timeBase_;
};

/// Reads up to the video's next packet.
bool nextOfVideo(MediaInput& input, AVPacket& packet) {
  av_packet_unref(&packet);
  while (input.read(packet)) {
    if (input.isVideo(packet))
      return true;
    av_packet_unref(&packet);
  }
  return false;
}

/// Reads up to a key frame that has a time, counting the video's packets before it.
bool findKey(MediaInput& input, AVPacket& packet, std::int64_t& skipped) {
  for (skipped = 0; nextOfVideo(input, packet); ++skipped) {
    if ((packet.flags & AV_PKT_FLAG_KEY) != 0)
      return packet.pts != AV_NOPTS_VALUE || packet.dts != AV_NOPTS_VALUE;
  }
  return false;
}

/// Whether decoding from this key frame on gives a frame of this number or one before it. Streams
/// with gradual refresh begin to show frames later than at the key frame.
bool Search::showsBy(std::int64_t limit, MediaInput& input, AVPacket& key) const {
  const AVCodecParameters& codec = *input.video().codecpar;
  if (isIntraOnly(codec.codec_id))
    return true;
  if (key.pts == AV_NOPTS_VALUE)
    return false;
  VideoDecoder decoder(codec, timeBase_, input.path());
  std::optional<std::int64_t> shown;
  const auto note = [&](const AVFrame& frame) {
    if (!shown)
      shown = numberOf(frame.best_effort_timestamp);
  };
  for (bool more = true; !shown && more; more = nextOfVideo(input, key))
    decoder.decode(&key, note);
  // What only the end brings forth may lack frames: behind an open group FFmpeg's H.264 decoder
  // then drops all but the key frame.
  return shown && *shown <= limit;
}

StartPoint Search::byIndex(std::int64_t limit) {
  const Packet key = makePacket();
  std::int64_t time = first_ + av_rescale_q(limit, av_inv_q(rate_), timeBase_);
  std::int64_t step = std::max<std::int64_t>(av_rescale_q(1, {1, 1}, timeBase_), 1);
  for (std::size_t i = 0; i < kMostAttempts && time > first_; ++i) {
    StartPoint start{time, 0};
    probe_.startAt(start);
    if (!findKey(probe_, *key, start.skipped))
      return {};
    const std::int64_t shown = key->pts != AV_NOPTS_VALUE ? key->pts : key->dts;
    const std::int64_t place = key->dts != AV_NOPTS_VALUE ? key->dts : key->pts;
    if (numberOf(shown) <= limit && showsBy(limit, probe_, *key))
      return start;
    time = std::min(time - step, place - 1);
    step *= 4;
  }
  return {};
}

bool Search::isGood(const StartPoint& start, std::int64_t limit) const {
  MediaInput again = probe_.again();
  again.readOnly(again.video());
  again.startAt(start);
  const Packet packet = makePacket();
  return nextOfVideo(again, *packet) && showsBy(limit, again, *packet);
}

StartPoint Search::byReading(std::int64_t limit) {
  probe_.readOnly(probe_.video());
  std::deque<StartPoint> keys;  // the last ones
  const Packet packet = makePacket();
  std::int64_t last = std::numeric_limits<std::int64_t>::min();
  for (std::int64_t count = 0; nextOfVideo(probe_, *packet); ++count) {
    if (packet->dts == AV_NOPTS_VALUE || packet->dts < last || probe_.timesJumped())
      return {};
    last = packet->dts;
    if (numberOf(packet->dts) > limit)
      break;
    const bool isKey = (packet->flags & AV_PKT_FLAG_KEY) != 0 && packet->pts != AV_NOPTS_VALUE;
    if (isKey && numberOf(packet->pts) <= limit)
      keys.push_front({std::nullopt, count});
    if (keys.size() > kMostAttempts)
      keys.pop_back();
  }
  const auto good =
      std::ranges::find_if(keys, [&](const StartPoint& each) { return isGood(each, limit); });
  return good != keys.end() ? *good : StartPoint{};
}

}  // namespace

StartPoint startFor(MediaInput& input, const StartRequest& request) {
  const AVStream& video = input.video();
  const AVInputFormat& format = *input.file().iformat;
  if (request.frame == 0 || video.start_time == AV_NOPTS_VALUE || isPipedInput(input.path()) ||
      input.start().first == AV_NOPTS_VALUE)
    return {};
  // Two frames of a varying rate may have the same number.
  const bool even = av_cmp_q(video.r_frame_rate, video.avg_frame_rate) == 0;
  std::int64_t limit = request.frame - (even ? 0 : 1);
  try {
    const IndexedKind* const kind = indexedKind(format);
    const bool reads = request.otherStreams && hasSubtitles(input.file());
    if (kind != nullptr && (kind->ownPlaces || !reads)) {
      if (request.otherStreams && !kind->ownPlaces)
        limit -= av_rescale_q(kInterleaving, {1, 1}, av_inv_q(request.rate));
      return limit > 0 ? Search(input, request.rate).byIndex(limit) : StartPoint{};
    }
    if (kind != nullptr || (format.flags & AVFMT_TS_DISCONT) != 0)
      return Search(input, request.rate).byReading(limit);
  } catch (const Failure&) {
    // Reading from the beginning will tell, if it matters.
  }
  return {};
}

}  // namespace nkdraw::media
