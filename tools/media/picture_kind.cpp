// SPDX-License-Identifier: BSD-2-Clause
#include "media/picture_kind.h"

#include "media/failure.h"
#include "media/format_match.h"
#include "media/image_sequence.h"
#include "media/video_encoder.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

constexpr PictureKind kKinds[] = {
    {"png", AV_CODEC_ID_PNG, true, true},     {"tif", AV_CODEC_ID_TIFF, true, true},
    {"tiff", AV_CODEC_ID_TIFF, true, true},   {"dpx", AV_CODEC_ID_DPX, true, true},
    {"exr", AV_CODEC_ID_EXR, false, true},    {"jpg", AV_CODEC_ID_MJPEG, true, false},
    {"jpeg", AV_CODEC_ID_MJPEG, true, false},
};

constexpr char kBestJPEG[] = "flags=+qscale:global_quality=236";  // FFmpeg's quality 2

/// What of a frame a form has to hold.
struct Need {
  int depth;
  bool colour, alpha;
};

Need needOf(AVPixelFormat format) {
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  const bool alpha = (facts.flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
  return {facts.comp[0].depth, facts.nb_components >= 3, alpha};
}

/// Grey or RGB whose samples are neither single bits nor indices.
bool isPlain(AVPixelFormat format) {
  constexpr std::uint64_t kOther = AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM;
  const AVPixFmtDescriptor& facts = *av_pix_fmt_desc_get(format);
  return (facts.flags & kOther) == 0 &&
         ((facts.flags & AV_PIX_FMT_FLAG_RGB) != 0 || facts.nb_components < 3);
}

bool meets(AVPixelFormat format, const Need& need) {
  const Need has = needOf(format);
  return isPlain(format) && has.depth >= need.depth && has.colour >= need.colour &&
         has.alpha >= need.alpha;
}

int bitsOf(AVPixelFormat format) {
  return av_get_bits_per_pixel(av_pix_fmt_desc_get(format));
}

/// The smallest of the encoder's forms; none if no form holds that much.
AVPixelFormat smallest(const AVCodec& codec, const Need& need) {
  AVPixelFormat found = AV_PIX_FMT_NONE;
  for (const AVPixelFormat* each = codec.pix_fmts; *each != AV_PIX_FMT_NONE; ++each) {
    if (meets(*each, need) && (found == AV_PIX_FMT_NONE || bitsOf(*each) < bitsOf(found)))
      found = *each;
  }
  return found;
}

AVPixelFormat formFor(const AVCodec& codec, AVPixelFormat drawn) {
  if (isPlain(drawn)) {
    if (const AVPixelFormat same = sameIn(codec.pix_fmts, drawn); same != AV_PIX_FMT_NONE)
      return same;
  }
  const AVPixelFormat found = smallest(codec, needOf(drawn));
  if (found == AV_PIX_FMT_NONE)
    throw Failure(ExitCode::kUsage, "this kind of picture does not hold such frames",
                  std::string(codec.name) + ", " + av_get_pix_fmt_name(drawn),
                  "write another kind, such as .png or .tif");
  return found;
}

const AVCodec& encoderFor(const PictureKind& kind) {
  const AVCodec* const codec = avcodec_find_encoder(kind.codec);
  if (codec == nullptr)
    throw Failure(ExitCode::kProcessing, "no encoder for such pictures", std::string(kind.suffix),
                  "install a full FFmpeg");
  return *codec;
}

CodecChoice askedCodec(const CodecRequest& request, const PictureKind& kind, AVPixelFormat drawn) {
  CodecChoice choice = chooseCodec(request, drawn, sequenceFormat());
  if (choice.codec->id != kind.codec)
    throw Failure(ExitCode::kUsage, "the encoder makes other pictures than the suffix says",
                  std::string(choice.codec->name) + ", ." + std::string(kind.suffix),
                  "choose another suffix or " + request.option);
  if (choice.options.find("pix_fmt=") == std::string::npos)
    choice.pixelFormat = formFor(*choice.codec, drawn);
  return choice;
}

}  // namespace

const PictureKind* pictureKindOf(const std::string& path) {
  for (const PictureKind& kind : kKinds) {
    if (av_match_ext(path.c_str(), kind.suffix.data()) != 0)
      return &kind;
  }
  return nullptr;
}

const PictureKind& stillKindOf(const std::string& path) {
  const PictureKind* const kind = pictureKindOf(path);
  return kind != nullptr ? *kind : kKinds[0];
}

CodecChoice sequenceCodec(const CodecRequest& request, AVPixelFormat drawn,
                          const std::string& path) {
  const PictureKind& kind = *pictureKindOf(path);
  if (!kind.sequence)
    throw Failure(ExitCode::kUsage, "no sequences of such pictures are written", path,
                  "write .dpx, .png, .tif or .exr");
  if (request.asked)
    return askedCodec(request, kind, drawn);
  const AVCodec& codec = encoderFor(kind);
  return {&codec, formFor(codec, drawn), {}, request.option};
}

CodecChoice stillCodec(const PictureKind& kind, AVPixelFormat drawn) {
  const AVCodec& codec = encoderFor(kind);
  if (kind.codec == AV_CODEC_ID_MJPEG)
    return {&codec, AV_PIX_FMT_YUVJ444P, kBestJPEG, "suffix"};
  return {&codec, smallest(codec, {std::min(needOf(drawn).depth, 16), true, false}), {}, "suffix"};
}

}  // namespace nkdraw::media
