// SPDX-License-Identifier: BSD-2-Clause
#include "media/codec_options.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr char kQuantizer2[] = "global_quality=236:flags=+qscale";  // 2 times FF_QP2LAMBDA

/// The source's bit rate, or `quality` where it says nothing, or is so low that texts would blur.
std::string rateOr(const EncoderTask& task, const std::string& quality) {
  constexpr double kLeastBits = 0.05;  // for a pixel
  const FrameKind& frames = task.source.frames;
  const double least =
      kLeastBits * frames.width * static_cast<double>(frames.height) * av_q2d(frames.rate);
  return task.sameCodec && static_cast<double>(task.source.bitRate) > least
             ? "b=" + std::to_string(task.source.bitRate)
             : quality;
}

/// Frames of half a second, as broadcast has it.
std::string halfSecond(const SourceVideo& source) {
  return std::to_string(std::max(1L, std::lround(av_q2d(source.frames.rate) / 2)));
}

std::string proRes(const EncoderTask& task) {
  constexpr int kHQ = 3, k4444 = 4;
  const bool hasAll = task.pixelFormat != AV_PIX_FMT_YUV422P10LE;
  int profile = task.sameCodec ? task.source.profile : FF_PROFILE_UNKNOWN;
  if (profile == FF_PROFILE_UNKNOWN || (profile >= k4444) != hasAll)
    profile = hasAll ? k4444 : kHQ;
  return "profile=" + std::to_string(profile) + ":vendor=apl0";
}

/// Whether the encoder opens with these options for frames like the source's.
bool opens(const EncoderTask& task, const std::string& text) {
  const auto encoder = owned<CodecContext>(avcodec_alloc_context3(&task.encoder));
  const FrameKind& frames = task.source.frames;
  encoder->width = frames.width;
  encoder->height = frames.height;
  encoder->pix_fmt = task.pixelFormat;
  encoder->time_base = av_inv_q(frames.rate);
  encoder->framerate = frames.rate;
  if (frames.interlaced)
    encoder->flags |= AV_CODEC_FLAG_INTERLACED_DCT;
  Options options;
  return av_dict_parse_string(options.get(), text.c_str(), "=", ":", 0) >= 0 &&
         av_opt_set_dict2(encoder.get(), options.get(), AV_OPT_SEARCH_CHILDREN) >= 0 &&
         avcodec_open2(encoder.get(), &task.encoder, options.get()) >= 0;
}

/// A DNxHD frame's size depends on the picture's size, its rate and its depth: the nearest of the
/// nominal rates, in Mbit/s, that fits.
std::string nominalDNxHD(const EncoderTask& task) {
  int rates[] = {36,  42,  45,  60,  63,  75,  80,  84,  85,  90,  100, 110, 115, 120,
                 145, 175, 180, 185, 220, 240, 290, 350, 365, 390, 440, 730, 880};
  constexpr double kUsualRate = 185;  // of 1080 lines in 10 bits
  const double wanted =
      task.sameCodec ? static_cast<double>(task.source.bitRate) / 1e6 : kUsualRate;
  std::ranges::sort(rates, {}, [&](int rate) { return std::abs(rate - wanted); });
  for (const int rate : rates) {
    std::string text = "profile=dnxhd:b=" + std::to_string(rate) + "M";
    if (opens(task, text))
      return text;
  }
  return {};
}

std::string dnx(const EncoderTask& task) {
  if (task.sameCodec && task.source.profile == FF_PROFILE_DNXHD && task.source.bitRate > 0) {
    if (std::string nominal = nominalDNxHD(task); !nominal.empty())
      return nominal;
  }
  if (task.sameCodec && task.source.profile > FF_PROFILE_DNXHD)
    return "profile=" + std::to_string(task.source.profile);
  // DNxHR has no fields.
  if (task.source.frames.interlaced)
    return nominalDNxHD(task);
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(task.pixelFormat);
  if (facts.log2_chroma_w == 0)
    return "profile=dnxhr_444";
  return facts.comp[0].depth > 8 ? "profile=dnxhr_hqx" : "profile=dnxhr_hq";
}

/// AVC-Intra by the tag that QuickTime files give it: ai5q, ai12.
struct IntraClass {
  char digit;  // the third letter
  int number;
};
constexpr IntraClass kIntraClasses[] = {{'5', 50}, {'1', 100}, {'2', 200}};

/// The class of AVC-Intra, whose frames all have the same size; 0 for other video.
int intraClass(const EncoderTask& task) {
  constexpr double kMost100 = 150e6 / 30;  // bits for a frame of class 100 and 1080 lines, or less
  const SourceVideo& source = task.source;
  const char digit = static_cast<char>(source.tag >> 16 & 0xFF);
  const auto* const tagged = std::ranges::find(kIntraClasses, digit, &IntraClass::digit);
  if ((source.tag & 0xFFFF) == MKTAG('a', 'i', 0, 0) && tagged != std::end(kIntraClasses))
    return tagged->number;
  if (!source.intra.sameSize || source.bitRate <= 0)
    return 0;
  if (task.pixelFormat == AV_PIX_FMT_YUV420P10LE)
    return 50;
  const double share = source.frames.height < 1080 ? 0.5 : 1.0;
  return static_cast<double>(source.bitRate) / av_q2d(source.frames.rate) > kMost100 * share ? 200
                                                                                             : 100;
}

/// AVC-Intra of the source's class, if x264 makes that for such frames.
std::string avcIntra(const EncoderTask& task) {
  const int number = task.sameCodec && task.source.intra.isIntra ? intraClass(task) : 0;
  const std::string text = "avcintra-class=" + std::to_string(number);
  return number > 0 && std::string_view(task.encoder.name) == "libx264" && opens(task, text)
             ? text
             : std::string();
}

/// Profiles below High, which x264 keeps for frames without fields.
struct LowProfile {
  int profile;
  const char* option;
};
constexpr LowProfile kLowProfiles[] = {{FF_PROFILE_H264_BASELINE, ":profile=baseline"},
                                       {FF_PROFILE_H264_CONSTRAINED_BASELINE, ":profile=baseline"},
                                       {FF_PROFILE_H264_MAIN, ":profile=main"}};

std::string lowProfile(const EncoderTask& task) {
  const auto* const low =
      std::ranges::find(kLowProfiles, task.source.profile, &LowProfile::profile);
  const bool fits =
      task.sameCodec && !task.source.frames.interlaced && task.pixelFormat == AV_PIX_FMT_YUV420P;
  return fits && low != std::end(kLowProfiles) ? low->option : "";
}

std::string h264(const EncoderTask& task) {
  const bool isNamed = task.source.profile != FF_PROFILE_UNKNOWN &&
                       (task.source.profile & FF_PROFILE_H264_INTRA) != 0;
  const bool isIntra = task.sameCodec && (isNamed || task.source.intra.isIntra);
  if (std::string intra = avcIntra(task); !intra.empty())
    return intra;
  return rateOr(task, "crf=18") + lowProfile(task) + (isIntra ? ":g=1" : "");
}

std::string hevc(const EncoderTask& task) {
  return rateOr(task, "crf=18");
}

/// IMX and other MPEG-2 without prediction, coded as the source. Frames of one size fill a buffer
/// of a frame each.
std::string intraMPEG2(const EncoderTask& task) {
  const IntraLook& look = task.source.intra;
  const auto flag = [](const char* key, bool on) {
    return std::string(":") + key + (on ? "=1" : "=0");
  };
  const std::string rate = std::to_string(task.source.bitRate);
  const std::string size = std::to_string(
      std::lround(static_cast<double>(task.source.bitRate) / av_q2d(task.source.frames.rate)));
  const bool fixed = look.sameSize && task.source.bitRate > 0;
  return ":g=1:bf=0:dc=" + std::to_string(look.precision) +
         flag("non_linear_quant", look.nonLinear) + flag("intra_vlc", look.intraTable) +
         flag("alternate_scan", look.alternateScan) +
         (fixed ? ":minrate=" + rate + ":bufsize=" + size + ":rc_init_occupancy=" + size +
                      ":rc_max_vbv_use=1:rc_min_vbv_use=1:qmin=1:qmax=28"
                : std::string());
}

/// MPEG-2 tells its largest rate, and a placeholder if that varies.
std::string mpeg2(const EncoderTask& task) {
  constexpr std::int64_t kAnyRate = 100'000'000;
  const std::int64_t rate = task.source.bitRate;
  const std::string text = std::to_string(rate);
  const std::string fields = task.source.frames.interlaced ? "+ildct+ilme" : "";
  const bool rated = task.sameCodec && rate > 0 && rate < kAnyRate;
  // A second entry of "flags" would replace the first.
  const std::string common = rated ? "b=" + text + ":maxrate=" + text + ":bufsize=" + text +
                                         (fields.empty() ? "" : ":flags=" + fields)
                                   : kQuantizer2 + fields;
  const bool reorders = !task.sameCodec || task.source.reorders;
  if (task.sameCodec && task.source.intra.isIntra)
    return common + intraMPEG2(task);
  return common + ":g=" + halfSecond(task.source) + ":bf=" + (reorders ? "2" : "0");
}

/// Bits that the picture has for each one that the source keeps; 1 is lossless.
std::string jpeg2000(const EncoderTask& task) {
  const FrameKind& frames = task.source.frames;
  const double raw = av_get_bits_per_pixel(av_pix_fmt_desc_get(task.pixelFormat)) *
                     static_cast<double>(frames.width) * frames.height * av_q2d(frames.rate);
  const auto ratio = task.sameCodec && task.source.bitRate > 0
                         ? static_cast<int>(raw / static_cast<double>(task.source.bitRate))
                         : 1;
  const bool isBare = std::string_view(task.format.name) == "mxf";
  const bool isOpen = std::string_view(task.encoder.name) == "libopenjpeg";
  constexpr int kNearLossless = 2;  // a clip that was kept without loss has hardly a larger ratio
  return std::string(isBare ? "format=j2k" : "format=jp2") +
         (isOpen && ratio > kNearLossless ? ":compression_level=" + std::to_string(ratio) : "");
}

std::string mjpeg(const EncoderTask& /*task*/) {
  return kQuantizer2;
}

std::string anyRate(const EncoderTask& task) {
  return rateOr(task, kQuantizer2);
}

std::string vp9(const EncoderTask& task) {
  return rateOr(task, "crf=20:b=0") + ":cpu-used=4:row-mt=1";
}

std::string av1(const EncoderTask& task) {
  const bool isSVT = std::string_view(task.encoder.name) == "libsvtav1";
  return rateOr(task, isSVT ? "crf=22" : "crf=22:b=0") +
         (isSVT ? ":preset=8" : ":cpu-used=6:row-mt=1");
}

std::string ffv1(const EncoderTask& /*task*/) {
  return "level=3:g=1";
}

std::string none(const EncoderTask& /*task*/) {
  return {};
}

struct Row {
  AVCodecID codec;
  const char* encoders[2];
  std::string (*options)(const EncoderTask& task);
};

constexpr Row kRows[] = {
    {AV_CODEC_ID_PRORES, {"prores_ks", nullptr}, proRes},
    {AV_CODEC_ID_DNXHD, {"dnxhd", nullptr}, dnx},
    {AV_CODEC_ID_H264, {"libx264", "libx264rgb"}, h264},
    {AV_CODEC_ID_HEVC, {"libx265", nullptr}, hevc},
    {AV_CODEC_ID_MPEG2VIDEO, {"mpeg2video", nullptr}, mpeg2},
    {AV_CODEC_ID_JPEG2000, {"libopenjpeg", "jpeg2000"}, jpeg2000},
    {AV_CODEC_ID_MJPEG, {"mjpeg", nullptr}, mjpeg},
    {AV_CODEC_ID_VP9, {"libvpx-vp9", nullptr}, vp9},
    {AV_CODEC_ID_AV1, {"libsvtav1", "libaom-av1"}, av1},
    {AV_CODEC_ID_FFV1, {"ffv1", nullptr}, ffv1},
    {AV_CODEC_ID_DVVIDEO, {"dvvideo", nullptr}, none},
};

const Row* rowOf(AVCodecID codec) {
  const Row* const found = std::ranges::find(kRows, codec, &Row::codec);
  return found != std::end(kRows) ? found : nullptr;
}

}  // namespace

std::span<const char* const> encoderNames(AVCodecID codec) {
  const Row* const row = rowOf(codec);
  if (row == nullptr)
    return {};
  return std::span(row->encoders).first(row->encoders[1] != nullptr ? 2 : 1);
}

bool takesSuch(const EncoderTask& task) {
  return task.encoder.id != AV_CODEC_ID_DNXHD || opens(task, codecOptions(task));
}

std::string codecOptions(const EncoderTask& task) {
  if (const Row* const row = rowOf(task.encoder.id))
    return row->options(task);
  const AVCodecDescriptor* const codec = avcodec_descriptor_get(task.encoder.id);
  const bool isLossy = codec != nullptr && (codec->props & AV_CODEC_PROP_LOSSLESS) == 0;
  return isLossy ? anyRate(task) : none(task);
}

std::string viewingOptions() {
  return "profile=high:crf=20";
}

}  // namespace nkdraw::media
