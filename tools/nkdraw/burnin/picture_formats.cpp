// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/picture_formats.h"

#include "media/drawn_format.h"
#include "media/format_match.h"

namespace nkdraw::tool {
namespace {

bool isKept(AVPixelFormat from, AVPixelFormat to) {
  return from == to || storeAlike(from, to) || holdTheSame(from, to);
}

std::string name(AVPixelFormat format) {
  return av_get_pix_fmt_name(format);
}

bool asksForFormat(const CodecChoice& codec) {
  return codec.options.find("pix_fmt=") != std::string::npos;
}

}  // namespace

PictureFormats formatsFor(AVPixelFormat decoded) {
  return {.decoded = decoded, .drawn = keptFormat(decoded)};
}

std::string pictureText(const PictureFormats& formats) {
  const std::string decoded = name(formats.decoded);
  return formats.drawn == formats.decoded ? decoded
                                          : decoded + ", drawn on in " + name(formats.drawn);
}

std::vector<std::string> formatNotes(const PictureFormats& formats,
                                     const std::optional<CodecChoice>& codec) {
  std::vector<std::string> notes;
  const auto [decoded, drawn] = formats;
  if (decoded == AV_PIX_FMT_NONE)
    return notes;
  if (!isKept(decoded, drawn))
    notes.push_back("frames in " + name(decoded) + " are drawn on in " + name(drawn));
  if (codec && !isKept(drawn, codec->pixelFormat) && !asksForFormat(*codec))
    notes.push_back("frames in " + name(drawn) + " become " + name(codec->pixelFormat) + ", for " +
                    codec->codec->name);
  return notes;
}

}  // namespace nkdraw::tool
