// SPDX-License-Identifier: BSD-2-Clause
#include "media/sound_decoder.h"

#include "media/failure.h"
#include "media/libav_log.h"
#include "media/time_window.h"

#include <algorithm>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr std::int64_t kSmallestGap = 20000;  // files round their times
constexpr std::int64_t kRoundedTime = 1000;   // behind a packet that was lost

CodecContext openDecoder(const AVStream& stream, const std::string& path,
                         const std::string& advice) {
  const AVCodecParameters& track = *stream.codecpar;
  const AVCodec* const codec = avcodec_find_decoder(track.codec_id);
  auto decoder = owned<CodecContext>(avcodec_alloc_context3(codec));
  if (avcodec_parameters_to_context(decoder.get(), &track) < 0)
    throw std::bad_alloc();
  decoder->pkt_timebase = stream.time_base;
  const int error =
      codec != nullptr ? avcodec_open2(decoder.get(), codec, nullptr) : AVERROR_DECODER_NOT_FOUND;
  if (error < 0)
    throw Failure(ExitCode::kInput, "the sound can't be decoded", path,
                  std::string("its codec is ") + avcodec_get_name(track.codec_id) + "; " + advice);
  return decoder;
}

}  // namespace

SoundDecoder::SoundDecoder(const AVStream& stream, const AudioShape& shape, SoundSource source)
    : stream_(stream),
      shape_(shape),
      source_(std::move(source)),
      decoder_(openDecoder(stream_, source_.path, source_.advice)) {}

void SoundDecoder::failToConvert(int error) const {
  throw Failure(ExitCode::kProcessing, "the sound can't be converted", source_.path,
                explained(error) + "; " + source_.advice);
}

void SoundDecoder::openResampler(const AVFrame& frame) {
  AVChannelLayout from = frame.ch_layout;
  if (from.order == AV_CHANNEL_ORDER_UNSPEC)
    av_channel_layout_default(&from, frame.ch_layout.nb_channels);
  SwrContext* made = nullptr;
  int error =
      swr_alloc_set_opts2(&made, &shape_.layout, AV_SAMPLE_FMT_DBL, shape_.rate, &from,
                          static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
  resampler_.reset(made);
  if (error >= 0)
    error = swr_init(resampler_.get());
  if (error < 0)
    failToConvert(error);
}

/// Null flushes the resampler.
void SoundDecoder::convert(const AVFrame* frame) {
  if (resampler_ == nullptr && frame != nullptr)
    openResampler(*frame);
  if (resampler_ == nullptr)
    return;
  const int given = frame != nullptr ? frame->nb_samples : 0;
  const int most = swr_get_out_samples(resampler_.get(), given);
  const std::size_t before = ready_.size();
  ready_.resize(before + static_cast<std::size_t>(std::max(most, 0)) * shape_.channels());
  auto* out = reinterpret_cast<std::uint8_t*>(ready_.data() + before);
  const int made = swr_convert(
      resampler_.get(), &out, most,
      frame != nullptr ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr, given);
  if (made < 0)
    failToConvert(made);
  ready_.resize(before + static_cast<std::size_t>(made) * shape_.channels());
  skip(before);
}

/// Removes samples that come before the origin, from `begin` on.
void SoundDecoder::skip(std::size_t begin) {
  const std::size_t skipped = std::min(toSkip_, (ready_.size() - begin) / shape_.channels());
  toSkip_ -= skipped;
  const auto first = ready_.begin() + static_cast<std::ptrdiff_t>(begin);
  ready_.erase(first, first + static_cast<std::ptrdiff_t>(skipped * shape_.channels()));
}

/// Inserts silence before the next samples, or for a negative number skips samples.
void SoundDecoder::skipOrFill(std::int64_t moments) {
  if (moments < 0)
    toSkip_ += static_cast<std::size_t>(-moments);
  if (moments <= 0)
    return;
  const std::size_t skipped = std::min(toSkip_, static_cast<std::size_t>(moments));
  toSkip_ -= skipped;
  if (static_cast<std::size_t>(moments) == skipped)
    return;
  second_.resize(static_cast<std::size_t>(shape_.rate) * shape_.channels());
  silences_.push_back(
      {ready_.size(), (static_cast<std::size_t>(moments) - skipped) * shape_.channels()});
}

void SoundDecoder::append(const AVFrame& frame) {
  const AVRational moment = {1, shape_.rate};
  if (frame.best_effort_timestamp != AV_NOPTS_VALUE) {
    const std::int64_t time =
        av_rescale_q(frame.best_effort_timestamp, stream_.time_base, kMicroseconds);
    if (source_.origin == AV_NOPTS_VALUE)
      source_.origin = time;
    if (expected_ == AV_NOPTS_VALUE)
      skipOrFill(av_rescale_q(time - source_.origin, kMicroseconds, moment));
    else if (time - expected_ > (lost_ ? kRoundedTime : kSmallestGap))
      skipOrFill(av_rescale_q(time - expected_, kMicroseconds, moment));
    expected_ = time;
    lost_ = false;
  }
  if (expected_ != AV_NOPTS_VALUE)
    expected_ += av_rescale(frame.nb_samples, AV_TIME_BASE, frame.sample_rate);
  convert(&frame);
}

void SoundDecoder::complain(int error, const AVPacket* packet) {
  if (!source_.damaged)
    throw Failure(ExitCode::kProcessing, "the sound can't be decoded", source_.path,
                  explained(error) + "; " + source_.advice);
  const bool timed = packet != nullptr && packet->pts != AV_NOPTS_VALUE;
  lost_ = true;
  source_.damaged(timed ? packet->pts : AV_NOPTS_VALUE, "it can't be decoded");
}

void SoundDecoder::decode(const AVPacket* packet) {
  int error = avcodec_send_packet(decoder_.get(), packet);
  while (error >= 0) {
    error = avcodec_receive_frame(decoder_.get(), frame_.get());
    if (error >= 0)
      append(*frame_);
    av_frame_unref(frame_.get());
  }
  if (error != AVERROR(EAGAIN) && error != AVERROR_EOF)
    complain(error, packet);
  if (packet == nullptr)
    convert(nullptr);
}

std::span<const double> SoundDecoder::ready() const {
  if (isSilent())
    return std::span(second_).first(std::min(second_.size(), silences_.front().samples));
  const std::size_t end = silences_.empty() ? ready_.size() : silences_.front().place;
  return std::span(ready_).subspan(used_, end - used_);
}

void SoundDecoder::take(std::size_t samples) {
  if (!isSilent()) {
    used_ += samples;
    return dropUsed();
  }
  silences_.front().samples -= samples;
  if (silences_.front().samples == 0)
    silences_.pop_front();
}

void SoundDecoder::dropUsed() {
  constexpr std::size_t kMuch = 1U << 16;
  if (used_ < kMuch)
    return;
  ready_.erase(ready_.begin(), ready_.begin() + static_cast<std::ptrdiff_t>(used_));
  for (Silence& silence : silences_)
    silence.place -= used_;
  used_ = 0;
}

}  // namespace nkdraw::media
