// SPDX-License-Identifier: BSD-2-Clause
#include "media/container_streams.h"

#include "media/container_codecs.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace nkdraw::media {
namespace {

// What FFmpeg reads back from its own files. Its muxers accept more, which is then read as unknown
// data or as another codec.
constexpr AVCodecID kInMOV[] = {
    AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S16BE,    AV_CODEC_ID_PCM_S24LE, AV_CODEC_ID_PCM_S24BE,
    AV_CODEC_ID_PCM_S32LE, AV_CODEC_ID_PCM_S32BE,    AV_CODEC_ID_PCM_F32LE, AV_CODEC_ID_PCM_F32BE,
    AV_CODEC_ID_PCM_F64LE, AV_CODEC_ID_PCM_F64BE,    AV_CODEC_ID_PCM_U8,    AV_CODEC_ID_PCM_S8,
    AV_CODEC_ID_PCM_ALAW,  AV_CODEC_ID_PCM_MULAW,    AV_CODEC_ID_AAC,       AV_CODEC_ID_MP2,
    AV_CODEC_ID_MP3,       AV_CODEC_ID_AC3,          AV_CODEC_ID_EAC3,      AV_CODEC_ID_DTS,
    AV_CODEC_ID_ALAC,      AV_CODEC_ID_ADPCM_IMA_QT, AV_CODEC_ID_MOV_TEXT};
constexpr AVCodecID kInMP4[] = {
    AV_CODEC_ID_AAC, AV_CODEC_ID_MP2,  AV_CODEC_ID_MP3,    AV_CODEC_ID_AC3,  AV_CODEC_ID_EAC3,
    AV_CODEC_ID_DTS, AV_CODEC_ID_ALAC, AV_CODEC_ID_VORBIS, AV_CODEC_ID_OPUS, AV_CODEC_ID_MOV_TEXT};
constexpr AVCodecID kInIPod[] = {AV_CODEC_ID_AAC, AV_CODEC_ID_AC3, AV_CODEC_ID_ALAC,
                                 AV_CODEC_ID_MOV_TEXT};
constexpr AVCodecID kInMatroska[] = {
    AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S16BE,     AV_CODEC_ID_PCM_S24LE,
    AV_CODEC_ID_PCM_S24BE, AV_CODEC_ID_PCM_S32LE,     AV_CODEC_ID_PCM_S32BE,
    AV_CODEC_ID_PCM_F32LE, AV_CODEC_ID_PCM_F64LE,     AV_CODEC_ID_PCM_U8,
    AV_CODEC_ID_PCM_ALAW,  AV_CODEC_ID_PCM_MULAW,     AV_CODEC_ID_AAC,
    AV_CODEC_ID_MP2,       AV_CODEC_ID_MP3,           AV_CODEC_ID_AC3,
    AV_CODEC_ID_EAC3,      AV_CODEC_ID_DTS,           AV_CODEC_ID_TRUEHD,
    AV_CODEC_ID_FLAC,      AV_CODEC_ID_ALAC,          AV_CODEC_ID_OPUS,
    AV_CODEC_ID_VORBIS,    AV_CODEC_ID_WAVPACK,       AV_CODEC_ID_ADPCM_MS,
    AV_CODEC_ID_WMAV2,     AV_CODEC_ID_ADPCM_IMA_WAV, AV_CODEC_ID_SUBRIP,
    AV_CODEC_ID_ASS,       AV_CODEC_ID_WEBVTT,        AV_CODEC_ID_DVD_SUBTITLE,
    AV_CODEC_ID_TEXT,      AV_CODEC_ID_DVB_SUBTITLE,  AV_CODEC_ID_HDMV_PGS_SUBTITLE};
constexpr AVCodecID kInWebM[] = {AV_CODEC_ID_OPUS, AV_CODEC_ID_VORBIS, AV_CODEC_ID_WEBVTT};
constexpr AVCodecID kInMPEGTS[] = {
    AV_CODEC_ID_MP2,          AV_CODEC_ID_MP3,          AV_CODEC_ID_AAC,
    AV_CODEC_ID_AC3,          AV_CODEC_ID_EAC3,         AV_CODEC_ID_DTS,
    AV_CODEC_ID_TRUEHD,       AV_CODEC_ID_OPUS,         AV_CODEC_ID_S302M,
    AV_CODEC_ID_DVB_SUBTITLE, AV_CODEC_ID_DVB_TELETEXT, AV_CODEC_ID_HDMV_PGS_SUBTITLE,
    AV_CODEC_ID_MPEG1VIDEO,   AV_CODEC_ID_MPEG2VIDEO,   AV_CODEC_ID_MPEG4,
    AV_CODEC_ID_H264,         AV_CODEC_ID_HEVC,         AV_CODEC_ID_CAVS,
    AV_CODEC_ID_DIRAC,        AV_CODEC_ID_VC1};
constexpr AVCodecID kInMPEGPS[] = {
    AV_CODEC_ID_MP2,        AV_CODEC_ID_MP3,        AV_CODEC_ID_AC3,
    AV_CODEC_ID_EAC3,       AV_CODEC_ID_DTS,        AV_CODEC_ID_PCM_DVD,
    AV_CODEC_ID_MPEG1VIDEO, AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_DVD_SUBTITLE};
constexpr AVCodecID kInMXF[] = {AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S24LE};
constexpr AVCodecID kInAVI[] = {
    AV_CODEC_ID_PCM_S16LE, AV_CODEC_ID_PCM_S24LE, AV_CODEC_ID_PCM_S32LE, AV_CODEC_ID_PCM_F32LE,
    AV_CODEC_ID_PCM_F64LE, AV_CODEC_ID_PCM_U8,    AV_CODEC_ID_PCM_ALAW,  AV_CODEC_ID_PCM_MULAW,
    AV_CODEC_ID_AAC,       AV_CODEC_ID_MP2,       AV_CODEC_ID_MP3,       AV_CODEC_ID_AC3,
    AV_CODEC_ID_EAC3,      AV_CODEC_ID_DTS,       AV_CODEC_ID_ADPCM_MS,  AV_CODEC_ID_ADPCM_IMA_WAV,
    AV_CODEC_ID_VORBIS,    AV_CODEC_ID_WMAV2};
constexpr AVCodecID kInNUT[] = {
    AV_CODEC_ID_PCM_S16LE,    AV_CODEC_ID_PCM_S16BE, AV_CODEC_ID_PCM_S24LE, AV_CODEC_ID_PCM_S24BE,
    AV_CODEC_ID_PCM_S32LE,    AV_CODEC_ID_PCM_S32BE, AV_CODEC_ID_PCM_F32LE, AV_CODEC_ID_PCM_F32BE,
    AV_CODEC_ID_PCM_F64LE,    AV_CODEC_ID_PCM_F64BE, AV_CODEC_ID_PCM_U8,    AV_CODEC_ID_PCM_S8,
    AV_CODEC_ID_PCM_ALAW,     AV_CODEC_ID_PCM_MULAW, AV_CODEC_ID_AAC,       AV_CODEC_ID_MP2,
    AV_CODEC_ID_MP3,          AV_CODEC_ID_AC3,       AV_CODEC_ID_DTS,       AV_CODEC_ID_FLAC,
    AV_CODEC_ID_OPUS,         AV_CODEC_ID_VORBIS,    AV_CODEC_ID_WAVPACK,   AV_CODEC_ID_ADPCM_MS,
    AV_CODEC_ID_ADPCM_IMA_WAV};

constexpr AVCodecID kPCM = AV_CODEC_ID_PCM_S16LE;  // or of the depth that the track has
constexpr AVCodecID kNone = AV_CODEC_ID_NONE;

struct Container {
  std::string_view format;  // FFmpeg's muxer
  std::span<const AVCodecID> kept;
  bool ofVideo;     // whether the list is complete for video, too
  AVCodecID sound;  // for tracks that are not kept
  AVCodecID text;   // for text subtitles that are not kept
  int rate = 0;     // the only sample rate
  bool counts = false;
};
constexpr int kStudioRate = 48000;
constexpr Container kContainers[] = {
    {"mov", kInMOV, false, kPCM, AV_CODEC_ID_MOV_TEXT},
    {"mp4", kInMP4, false, AV_CODEC_ID_AAC, AV_CODEC_ID_MOV_TEXT},
    {"ipod", kInIPod, false, AV_CODEC_ID_AAC, AV_CODEC_ID_MOV_TEXT},
    {"matroska", kInMatroska, false, kPCM, AV_CODEC_ID_SUBRIP},
    {"webm", kInWebM, false, AV_CODEC_ID_OPUS, AV_CODEC_ID_WEBVTT},
    {"mpegts", kInMPEGTS, true, AV_CODEC_ID_AAC, kNone},
    {"mpeg", kInMPEGPS, true, AV_CODEC_ID_MP2, kNone},
    {"vob", kInMPEGPS, true, AV_CODEC_ID_MP2, kNone},
    {"mxf", kInMXF, false, kPCM, kNone, kStudioRate, true},
    {"avi", kInAVI, false, kPCM, kNone, 0, true},
    {"nut", kInNUT, false, kPCM, kNone},  // texts would lose their ends
};

const Container* containerFor(const AVOutputFormat& format) {
  const auto* const row = std::ranges::find(kContainers, format.name, &Container::format);
  return row != std::end(kContainers) ? row : nullptr;
}

/// PCM kinds by what a track decodes to, the one that loses nothing first.
struct PCMKind {
  AVSampleFormat samples;
  AVCodecID codec;
};
constexpr PCMKind kPCMKinds[] = {
    {AV_SAMPLE_FMT_U8, AV_CODEC_ID_PCM_S16LE},  {AV_SAMPLE_FMT_S16, AV_CODEC_ID_PCM_S16LE},
    {AV_SAMPLE_FMT_S32, AV_CODEC_ID_PCM_S32LE}, {AV_SAMPLE_FMT_FLT, AV_CODEC_ID_PCM_F32LE},
    {AV_SAMPLE_FMT_DBL, AV_CODEC_ID_PCM_F64LE},
};

bool isPCM(AVCodecID codec) {
  return std::string_view(avcodec_get_name(codec)).starts_with("pcm_");
}

/// For lossy codecs and samples of 24 bits, 24 bits are enough.
AVCodecID pcmOf(const AVOutputFormat& format, const AVCodecParameters& track) {
  constexpr int kEnough = 24;
  const auto samples = av_get_packed_sample_fmt(static_cast<AVSampleFormat>(track.format));
  const auto* const kind = std::ranges::find(kPCMKinds, samples, &PCMKind::samples);
  const bool deep = track.bits_per_raw_sample > kEnough ||
                    (isPCM(track.codec_id) && av_get_bits_per_sample(track.codec_id) > kEnough);
  const bool fits = kind != std::end(kPCMKinds) && keepsCodec(format, kind->codec);
  if (fits && (deep || kind->codec == AV_CODEC_ID_PCM_S16LE))
    return kind->codec;
  return AV_CODEC_ID_PCM_S24LE;
}

const AVCodec* encoderOf(AVCodecID codec) {
  return codec != kNone ? avcodec_find_encoder(codec) : nullptr;
}

}  // namespace

bool keepsCodec(const AVOutputFormat& format, AVCodecID codec) {
  const Container* const container = containerFor(format);
  const bool listed =
      container != nullptr && (container->ofVideo || avcodec_get_type(codec) != AVMEDIA_TYPE_VIDEO);
  if (listed)
    return std::ranges::find(container->kept, codec) != container->kept.end();
  if (avcodec_get_type(codec) == AVMEDIA_TYPE_VIDEO && refuses(format, codec))
    return false;
  const int answer = avformat_query_codec(&format, codec, FF_COMPLIANCE_NORMAL);
  // For video without an answer, writing will show.
  return avcodec_get_type(codec) == AVMEDIA_TYPE_VIDEO ? answer != 0 : answer == 1;
}

bool keepsStream(const AVOutputFormat& format, const AVCodecParameters& stream) {
  const int rate = soundRateOf(format);
  const bool fits =
      rate == 0 || stream.codec_type != AVMEDIA_TYPE_AUDIO || stream.sample_rate == rate;
  return fits && keepsCodec(format, stream.codec_id);
}

int soundRateOf(const AVOutputFormat& format) {
  const Container* const container = containerFor(format);
  return container != nullptr ? container->rate : 0;
}

bool countsSamples(const AVOutputFormat& format) {
  const Container* const container = containerFor(format);
  return container != nullptr && container->counts;
}

const AVCodec* usualSoundEncoder(const AVOutputFormat& format, const AVCodecParameters& track) {
  const Container* const container = containerFor(format);
  const AVCodecID usual = container != nullptr ? container->sound : format.audio_codec;
  return encoderOf(usual == kPCM ? pcmOf(format, track) : usual);
}

const AVCodec* usualTextEncoder(const AVOutputFormat& format) {
  const Container* const container = containerFor(format);
  return encoderOf(container != nullptr ? container->text : AV_CODEC_ID_NONE);
}

}  // namespace nkdraw::media
