// SPDX-License-Identifier: BSD-2-Clause
#include "media/audio_join.h"

#include <algorithm>
#include <limits>

namespace nkdraw::media {
namespace {

constexpr std::size_t kMostAtOnce = 4096;

std::vector<int> audioStreams(MediaInput& input) {
  std::vector<int> streams;
  for (unsigned i = 0; i < input.file().nb_streams; ++i) {
    if (input.file().streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
      streams.push_back(static_cast<int>(i));
  }
  return streams;
}

std::optional<int> nth(const std::vector<int>& streams, std::size_t place) {
  return place < streams.size() ? std::optional(streams[place]) : std::nullopt;
}

std::unique_ptr<AudioReader> readerFor(MediaInput& input, std::optional<int> stream,
                                       const AudioShape& shape, const AudioRequest& request) {
  return stream ? std::make_unique<AudioReader>(input.path(), *stream, shape,
                                                "leave it out with " + request.silent)
                : nullptr;
}

/// The second clip's share of the sound; `moment` and `length` are relative to the overlap.
using Share = double (*)(std::int64_t moment, std::int64_t length);

double fadedShare(std::int64_t moment, std::int64_t length) {
  return (static_cast<double>(moment) + 0.5) / static_cast<double>(length);
}
double cutShare(std::int64_t moment, std::int64_t length) {
  return 2 * moment < length ? 0.0 : 1.0;
}

Share shareFor(AudioMode mode) {
  return mode == AudioMode::kCut ? cutShare : fadedShare;
}

}  // namespace

std::vector<AudioTrackPlan> planAudio(ClipPair& clips, const AudioRequest& request,
                                      const AVOutputFormat& format) {
  std::vector<AudioTrackPlan> tracks;
  if (request.mode == AudioMode::kNone)
    return tracks;
  const std::vector<int> a = audioStreams(clips.a), b = audioStreams(clips.b);
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    AudioTrackPlan track = {nth(a, i), nth(b, i), nullptr, {}};
    AVFormatContext& file = track.a ? clips.a.file() : clips.b.file();
    track.model = file.streams[track.a ? *track.a : *track.b]->codecpar;
    track.codec = chooseAudioCodec(request.codec, *track.model, format, request.silent);
    tracks.push_back(track);
  }
  return tracks;
}

class AudioJoin::Track {
 public:
  Track(ClipPair& clips, const AudioTrackPlan& plan, const AudioRequest& request, Overlap overlap,
        MediaOutput& output)
      : shape_(shapeFor(*plan.model, *plan.codec.codec, output.format())),
        a_(readerFor(clips.a, plan.a, shape_, request)),
        b_(readerFor(clips.b, plan.b, shape_, request)),
        encoder_(plan.codec, shape_, output.format()),
        output_(output),
        rate_(clips.frames.rate),
        share_(shareFor(request.mode)),
        overlapFirst_(momentOf(overlap.first)),
        overlapEnd_(momentOf(overlap.end)),
        soundA_(kMostAtOnce * shape_.channels()),
        soundB_(kMostAtOnce * shape_.channels()) {
    AVStream& stream = output.addStream();
    stream_ = stream.index;
    encoder_.describeTo(stream);
    if (plan.a) {
      AVStream& from = *clips.a.file().streams[*plan.a];
      stream.disposition = from.disposition;
      av_dict_copy(&stream.metadata, from.metadata, 0);
    }
  }

  void advanceTo(std::int64_t frame) {
    const std::int64_t end = momentOf(frame);
    while (position_ < end) {
      const std::size_t count = blockBefore(end);
      load(count);
      put(count);
    }
  }

  void finish() {
    while (b_ != nullptr && !bEnded_)
      put(load(blockBefore(std::numeric_limits<std::int64_t>::max())));
    encoder_.finish([this](AVPacket& packet) { take(packet); });
  }

 private:
  [[nodiscard]] std::int64_t momentOf(std::int64_t frame) const {
    return av_rescale_q(frame, av_inv_q(rate_), AVRational{1, shape_.rate});
  }

  /// The number of moments that can be treated alike.
  [[nodiscard]] std::size_t blockBefore(std::int64_t end) const {
    for (const std::int64_t border : {overlapFirst_, overlapEnd_}) {
      if (position_ < border)
        end = std::min(end, border);
    }
    return static_cast<std::size_t>(
        std::min<std::int64_t>(end - position_, static_cast<std::int64_t>(kMostAtOnce)));
  }

  /// Reads the next block of both clips. Returns how much of it the second clip had, or all of it
  /// if its end does not matter.
  std::size_t load(std::size_t count) {
    std::ranges::fill(soundA_, 0.0);
    std::ranges::fill(soundB_, 0.0);
    if (a_ != nullptr && position_ < overlapEnd_)
      static_cast<void>(a_->read(soundA_.data(), count));
    if (b_ == nullptr || position_ < overlapFirst_)
      return count;
    const std::size_t got = b_->read(soundB_.data(), count);
    bEnded_ = got < count;
    return got;
  }

  void put(std::size_t count) {
    mix(count);
    encoder_.encode(soundA_.data(), count, [this](AVPacket& packet) { take(packet); });
    position_ += static_cast<std::int64_t>(count);
  }

  void mix(std::size_t count) {
    const std::int64_t length = overlapEnd_ - overlapFirst_;
    for (std::size_t i = 0; i < count; ++i) {
      const std::int64_t moment = position_ + static_cast<std::int64_t>(i) - overlapFirst_;
      const double share = moment < 0 ? 0.0 : moment >= length ? 1.0 : share_(moment, length);
      for (std::size_t k = i * shape_.channels(); k < (i + 1) * shape_.channels(); ++k)
        soundA_[k] = soundA_[k] * (1.0 - share) + soundB_[k] * share;
    }
  }

  void take(AVPacket& packet) {
    packet.stream_index = stream_;
    output_.write(packet, encoder_.timeBase());
  }

  AudioShape shape_;
  std::unique_ptr<AudioReader> a_, b_;
  AudioEncoder encoder_;
  MediaOutput& output_;
  AVRational rate_;
  Share share_;
  std::int64_t overlapFirst_, overlapEnd_;  // in moments
  std::vector<double> soundA_, soundB_;
  std::int64_t position_ = 0;
  int stream_ = -1;
  bool bEnded_ = false;
};

AudioJoin::AudioJoin(ClipPair& clips, const std::vector<AudioTrackPlan>& plan,
                     const AudioRequest& request, Overlap overlap, MediaOutput& output) {
  for (const AudioTrackPlan& track : plan)
    tracks_.push_back(std::make_unique<Track>(clips, track, request, overlap, output));
}

AudioJoin::~AudioJoin() = default;

void AudioJoin::advanceTo(std::int64_t frame) {
  for (const auto& track : tracks_)
    track->advanceTo(frame);
}

void AudioJoin::finish() {
  for (const auto& track : tracks_)
    track->finish();
}

}  // namespace nkdraw::media
