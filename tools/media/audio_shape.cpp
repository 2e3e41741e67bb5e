// SPDX-License-Identifier: BSD-2-Clause
#include "media/audio_shape.h"

#include "media/container_streams.h"
#include "media/failure.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <tuple>

namespace nkdraw::media {
namespace {

constexpr int kBitsPerByte = 8;
constexpr int kEnough = 24;  // for what comes out of a lossy codec

/// Lossless encoders of FFmpeg that write fewer bits than their sample formats have.
struct Limit {
  AVCodecID codec;
  int bits;
};
constexpr Limit kLimits[] = {{AV_CODEC_ID_FLAC, 24}, {AV_CODEC_ID_ALAC, 24}, {AV_CODEC_ID_TTA, 24}};

bool isLossless(AVCodecID codec) {
  const AVCodecDescriptor* const facts = avcodec_descriptor_get(codec);
  return facts != nullptr && (facts->props & AV_CODEC_PROP_LOSSY) == 0;
}

bool isFloating(AVSampleFormat format) {
  const AVSampleFormat packed = av_get_packed_sample_fmt(format);
  return packed == AV_SAMPLE_FMT_FLT || packed == AV_SAMPLE_FMT_DBL;
}

/// The integers that a sample format holds, in bits.
int integerBits(AVSampleFormat format) {
  constexpr int kMantissa = 24;
  return av_get_packed_sample_fmt(format) == AV_SAMPLE_FMT_FLT
             ? kMantissa
             : av_get_bytes_per_sample(format) * kBitsPerByte;
}

int bitsOf(const AVCodecParameters& track) {
  const auto format = static_cast<AVSampleFormat>(track.format);
  const int depth = av_get_bytes_per_sample(format) * kBitsPerByte;
  if (isFloating(format))
    return isLossless(track.codec_id) ? depth : kEnough;
  const int told = track.bits_per_raw_sample;
  return told > 0 && told < depth ? told : depth;
}

std::span<const AVSampleFormat> formatsOf(const AVCodec& encoder) {
  static constexpr AVSampleFormat kAny[] = {AV_SAMPLE_FMT_S16};
  if (encoder.sample_fmts == nullptr)
    return kAny;
  const AVSampleFormat* end = encoder.sample_fmts;
  while (*end != AV_SAMPLE_FMT_NONE)
    ++end;
  return {encoder.sample_fmts, end};
}

/// The smaller, the better the format suits.
auto rankOf(AVSampleFormat format, const AudioShape& shape) {
  const bool floats = isFloating(format);
  const int bits = shape.isFloat && floats ? av_get_bytes_per_sample(format) * kBitsPerByte
                                           : integerBits(format);
  const bool holds = bits >= shape.bits && (floats || !shape.isFloat);
  return std::tuple(!holds, floats != shape.isFloat, holds ? bits : -bits);
}

/// The lowest rate that is not below, else the highest.
int rateFor(const AVCodec& encoder, int wanted) {
  int best = 0;
  for (const int* each = encoder.supported_samplerates; each != nullptr && *each != 0; ++each) {
    const bool holds = *each >= wanted, held = best >= wanted;
    if (best == 0 || (holds != held ? holds : holds ? *each < best : *each > best))
      best = *each;
  }
  return best != 0 ? best : wanted;
}

[[noreturn]] void refuseChannels(const AVCodec& encoder, const AudioShape& shape) {
  char text[64] = {};
  av_channel_layout_describe(&shape.layout, text, sizeof text);
  throw Failure(ExitCode::kUsage, "the encoder does not take these channels",
                std::string(encoder.name) + ", " + text,
                "choose another --audio-codec or kind of file, or --no-audio");
}

/// Takes the encoder's order of the channels if it lists those that it takes.
void fitChannels(const AVCodec& encoder, AudioShape& shape) {
  const AVChannelLayout* same = nullptr;
  for (const AVChannelLayout* each = encoder.ch_layouts; each != nullptr && each->nb_channels != 0;
       ++each) {
    if (av_channel_layout_compare(each, &shape.layout) == 0)
      return;
    if (same == nullptr && each->nb_channels == shape.layout.nb_channels)
      same = each;
  }
  if (encoder.ch_layouts == nullptr)
    return;
  if (same == nullptr)
    refuseChannels(encoder, shape);
  if (av_channel_layout_copy(&shape.layout, same) < 0)
    throw std::bad_alloc();
}

}  // namespace

AudioShape::AudioShape(const AVCodecParameters& track)
    : rate(track.sample_rate),
      bits(bitsOf(track)),
      isFloat(isFloating(static_cast<AVSampleFormat>(track.format))) {
  if (track.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
    av_channel_layout_default(&layout, track.ch_layout.nb_channels);
  else if (av_channel_layout_copy(&layout, &track.ch_layout) < 0)
    throw std::bad_alloc();
}

AudioShape::AudioShape(const AudioShape& other)
    : rate(other.rate), bits(other.bits), isFloat(other.isFloat) {
  if (av_channel_layout_copy(&layout, &other.layout) < 0)
    throw std::bad_alloc();
}

AudioShape::~AudioShape() {
  av_channel_layout_uninit(&layout);
}

AudioShape shapeFor(const AVCodecParameters& track, const AVCodec& encoder,
                    const AVOutputFormat& format) {
  AudioShape shape(track);
  const int only = soundRateOf(format);
  shape.rate = rateFor(encoder, only != 0 ? only : shape.rate);
  fitChannels(encoder, shape);
  return shape;
}

AVSampleFormat sampleFormatFor(const AVCodec& encoder, const AudioShape& shape) {
  return *std::ranges::min_element(formatsOf(encoder), {},
                                   [&](AVSampleFormat each) { return rankOf(each, shape); });
}

int fewerBits(const AVCodec& encoder, const AVCodecParameters& track) {
  const AudioShape shape(track);
  const AVSampleFormat format = sampleFormatFor(encoder, shape);
  if (!isLossless(encoder.id) || !isLossless(track.codec_id) ||
      (isFloating(format) && shape.isFloat))
    return 0;
  const auto* const limit = std::ranges::find(kLimits, encoder.id, &Limit::codec);
  const int coded = av_get_bits_per_sample(encoder.id);
  const int most = coded > 0                    ? coded
                   : limit != std::end(kLimits) ? std::min(limit->bits, integerBits(format))
                                                : integerBits(format);
  return most < shape.bits ? most : 0;
}

}  // namespace nkdraw::media
