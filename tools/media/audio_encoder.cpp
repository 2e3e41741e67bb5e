// SPDX-License-Identifier: BSD-2-Clause
#include "media/audio_encoder.h"

#include "media/container_streams.h"
#include "media/failure.h"
#include "media/libav_log.h"
#include "media/media_output.h"

#include <algorithm>
#include <string_view>

namespace nkdraw::media {
namespace {

bool isPCM(AVCodecID codec) {
  return std::string_view(avcodec_get_name(codec)).starts_with("pcm_");
}

/// PCM that loses nothing of the decoder's output; for lossy codecs 24 bits are enough.
AVCodecID pcmFor(const AVCodecParameters& track, const AVOutputFormat& format) {
  if (isPCM(track.codec_id) && keepsCodec(format, track.codec_id) &&
      avcodec_find_encoder(track.codec_id) != nullptr)
    return track.codec_id;
  const AVSampleFormat samples =
      av_get_packed_sample_fmt(static_cast<AVSampleFormat>(track.format));
  return samples == AV_SAMPLE_FMT_U8 || samples == AV_SAMPLE_FMT_S16 ? AV_CODEC_ID_PCM_S16LE
                                                                     : AV_CODEC_ID_PCM_S24LE;
}

}  // namespace

CodecChoice chooseAudioCodec(const CodecRequest& request, const AVCodecParameters& track,
                             const AVOutputFormat& format, const std::string& silent) {
  if (request.asked)
    return namedEncoder(request, AVMEDIA_TYPE_AUDIO, format);
  const AVCodecID id = pcmFor(track, format);
  const AVCodec* const usual = usualSoundEncoder(format, track);
  if (!keepsCodec(format, id) && usual != nullptr)
    return {usual, AV_PIX_FMT_NONE, {}, request.option};
  if (!keepsCodec(format, id))
    throw Failure(ExitCode::kUsage, "this kind of file does not hold uncompressed sound",
                  format.name, "choose an " + request.option + ", for example aac, or " + silent);
  return {avcodec_find_encoder(id), AV_PIX_FMT_NONE, {}, request.option};
}

AudioEncoder::AudioEncoder(const CodecChoice& choice, const AudioShape& shape,
                           const AVOutputFormat& format)
    : shape_(shape),
      choice_(choice),
      encoder_(owned<CodecContext>(avcodec_alloc_context3(choice.codec))) {
  open(format);
  prepareResampler();
}

void AudioEncoder::open(const AVOutputFormat& format) {
  encoder_->sample_rate = shape_.rate;
  encoder_->time_base = {1, shape_.rate};
  encoder_->sample_fmt = sampleFormatFor(*choice_.codec, shape_);
  if (av_get_packed_sample_fmt(encoder_->sample_fmt) == AV_SAMPLE_FMT_S32)
    encoder_->bits_per_raw_sample = shape_.bits;
  if (av_channel_layout_copy(&encoder_->ch_layout, &shape_.layout) < 0)
    throw std::bad_alloc();
  if ((format.flags & AVFMT_GLOBALHEADER) != 0)
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  Options options;
  readOptions(choice_, options);
  if (const int error = avcodec_open2(encoder_.get(), choice_.codec, options.get()); error < 0)
    throw Failure(ExitCode::kProcessing, "the encoder refuses the sound", choice_.codec->name,
                  explained(error) + "; choose another " + choice_.option);
  checkAllKnown(choice_, options);
}

void AudioEncoder::prepareResampler() {
  SwrContext* made = nullptr;
  const int error = swr_alloc_set_opts2(&made, &shape_.layout, encoder_->sample_fmt, shape_.rate,
                                        &shape_.layout, AV_SAMPLE_FMT_DBL, shape_.rate, 0, nullptr);
  resampler_.reset(made);
  if (error < 0 || swr_init(resampler_.get()) < 0)
    throw std::bad_alloc();
}

void AudioEncoder::describeTo(AVStream& stream) const {
  if (avcodec_parameters_from_context(stream.codecpar, encoder_.get()) < 0)
    throw std::bad_alloc();
  stream.time_base = encoder_->time_base;
}

void AudioEncoder::encode(const double* samples, std::size_t count, const TakePacket& take) {
  waiting_.insert(waiting_.end(), samples, samples + count * shape_.channels());
  // PCM encoders take frames of any length.
  const auto step = static_cast<std::size_t>(encoder_->frame_size);
  const std::size_t there = waiting_.size() / shape_.channels();
  const std::size_t each = step > 0 ? step : there;
  std::size_t first = 0;
  for (; there > first && there - first >= each; first += each)
    send(first, each, take);
  waiting_.erase(waiting_.begin(),
                 waiting_.begin() + static_cast<std::ptrdiff_t>(first * shape_.channels()));
}

void AudioEncoder::finish(const TakePacket& take) {
  if (!waiting_.empty())
    send(0, waiting_.size() / shape_.channels(), take);
  encode(nullptr, take);
}

/// Sends `count` moments of what waits, from `first` on.
void AudioEncoder::send(std::size_t first, std::size_t count, const TakePacket& take) {
  const Frame frame = makeFrame();
  frame->format = encoder_->sample_fmt;
  frame->nb_samples = static_cast<int>(count);
  frame->sample_rate = shape_.rate;
  if (av_channel_layout_copy(&frame->ch_layout, &shape_.layout) < 0 ||
      av_frame_get_buffer(frame.get(), 0) < 0)
    throw std::bad_alloc();
  const auto* from =
      reinterpret_cast<const std::uint8_t*>(waiting_.data() + first * shape_.channels());
  if (const int error = swr_convert(resampler_.get(), frame->extended_data, frame->nb_samples,
                                    &from, frame->nb_samples);
      error < 0)
    throw Failure(ExitCode::kProcessing, "the sound can't be converted", encoder_->codec->name,
                  explained(error) + "; choose another " + choice_.option);
  frame->pts = sent_;
  sent_ += frame->nb_samples;
  encode(frame.get(), take);
}

void AudioEncoder::encode(const AVFrame* frame, const TakePacket& take) {
  media::encode(*encoder_, frame, choice_, "the sound can't be encoded", take);
}

}  // namespace nkdraw::media
